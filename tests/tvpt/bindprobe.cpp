// A program of its own for a test: binds a printer as a print service does, from wherever it was started, and tells
// where the core library was before that and after.
//
//     bind_probe PRINTER  ->  "bound: <result>", "before: <file or nothing>", "after: <file or nothing>"
#include <windows.h>
#include <winspool.h>

#include <cstdio>
#include <string>
#include <vector>

#include "interfaces/prcomoem.h"
#include "utilitiesstaticlib/comptr.h"
#include "utilitiesstaticlib/findfunction.h"

namespace
{

std::wstring CoreLibrary()
{
    HMODULE const module = GetModuleHandleW(L"tvcore_B.dll");
    std::wstring file(MAX_PATH, L'\0');
    file.resize(module != nullptr ? GetModuleFileNameW(module, file.data(), MAX_PATH) : 0);
    return file;
}

std::wstring ProviderOf(HANDLE printer)
{
    DWORD needed = 0;
    GetPrinterDriverW(printer, nullptr, 3, nullptr, 0, &needed);
    std::vector<BYTE> room(needed);
    if (!GetPrinterDriverW(printer, nullptr, 3, room.data(), needed, &needed))
        return {};
    const auto& driver = *reinterpret_cast<const DRIVER_INFO_3W*>(room.data());
    const std::wstring configuration = driver.pConfigFile;
    return configuration.substr(0, configuration.find_last_of(L"\\/") + 1) + L"tvptpc_B.dll";
}

HRESULT Bind(IPrintOemPrintTicketProvider& provider, HANDLE printer)
{
    OEMPTOPTS options = OEMPT_DEFAULT;
    INT count = 0;
    BSTR* namespaces = nullptr; // the process ends: nothing is freed
    return provider.BindPrinter(printer, 1, &options, &count, &namespaces);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
        return 2;
    std::string given = argv[1];
    std::wstring name(given.begin(), given.end());
    HANDLE printer = nullptr;
    if (!OpenPrinterW(name.data(), &printer, nullptr))
        return 3;
    HMODULE const module = LoadLibraryExW(ProviderOf(printer).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    using CreateProvider = HRESULT (*)(IPrintOemPrintTicketProvider**);
    const auto create = module != nullptr ? FindFunction<CreateProvider>(module, "CreateTavlenPtProvider") : nullptr;
    ComPtr<IPrintOemPrintTicketProvider> provider;
    if (create == nullptr || FAILED(create(provider.Put())))
        return 4;
    const std::wstring before = CoreLibrary();
    const HRESULT bound = Bind(*provider.Get(), printer);
    std::printf("bound: %ld\nbefore: %ls\nafter: %ls\n", static_cast<long>(bound), before.c_str(),
                CoreLibrary().c_str());
    return 0;
}
