#include "complugins/ptpcprovider/documentdump.h"

#include <windows.h>

#include <tvutil/cxstring.h>

#include <array>
#include <atomic>

#include "complugins/ptpcprovider/domhelpers.h"

namespace
{

[[maybe_unused]] CXString DumpFolder()
{
    std::array<WCHAR, MAX_PATH> folder = {};
    const DWORD length =
        GetEnvironmentVariableW(W("TVPT_DUMP_FOLDER"), folder.data(), static_cast<DWORD>(folder.size()));
    return length < folder.size() ? CXString(WStringView(folder.data(), length)) : CXString();
}

[[maybe_unused]] void WriteDump(IXMLDOMDocument2* document, const WCHAR* label, const WCHAR* prefix)
{
    static std::atomic<ULONG> sequence{0};
    const CXString folder = DumpFolder();
    if (folder.IsEmpty())
        return;
    const CXString path = CXString::Format(W("%s/%s%s_%u_%u.xml"),
                                           {folder, prefix, label, ULONG{GetCurrentProcessId()}, ULONG{++sequence}});
    const CComBSTR target(path.View());
    document->save(BorrowAsVariant(target));
}

} // namespace

void DumpDocument([[maybe_unused]] IXMLDOMDocument2* document, [[maybe_unused]] const WCHAR* label,
                  [[maybe_unused]] const WCHAR* prefix) noexcept
{
    if constexpr (TVPT_DOCUMENT_DUMPS != 0)
    {
        try
        {
            WriteDump(document, label, prefix);
        }
        catch (...)
        {
            // A dump is a help; without memory for it the conversion goes on.
        }
    }
}
