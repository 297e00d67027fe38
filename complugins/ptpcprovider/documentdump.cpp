#include "complugins/ptpcprovider/documentdump.h"

#include <tvutil/cxstring.h>

#include <array>
#include <atomic>

#include "complugins/ptpcprovider/domhelpers.h"

namespace
{

CXString DumpFolder()
{
    std::array<WCHAR, MAX_PATH> folder = {};
    const DWORD length =
        GetEnvironmentVariableW(W("TVPT_DUMP_FOLDER"), folder.data(), static_cast<DWORD>(folder.size()));
    return length < folder.size() ? CXString(WStringView(folder.data(), length)) : CXString();
}

} // namespace

void DumpDocument([[maybe_unused]] IXMLDOMDocument2* document, [[maybe_unused]] const WCHAR* label,
                  [[maybe_unused]] const WCHAR* prefix)
{
    if constexpr (TVPT_DOCUMENT_DUMPS != 0)
    {
        static std::atomic<ULONG> sequence{0};
        const CXString folder = DumpFolder();
        if (folder.IsEmpty())
            return;
        const CXString path = CXString::Format(W("%s/%s%s%u.xml"), {folder, prefix, label, ULONG{++sequence}});
        const CComBSTR target = MakeBstr(path);
        document->save(BorrowAsVariant(target));
    }
}
