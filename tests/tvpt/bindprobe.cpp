// A program of its own for a test: does with a printer what a print service does, from wherever it was started, and
// tells after each step where the core library lies in the process, or nothing.
//
//     bind_probe PRINTER PROVIDER    lines "<step>: <result in hexadecimal> <file>"
#include <windows.h>
#include <winspool.h>

#include <objbase.h>

#include <cstdio>
#include <string>

#include "complugins/ptpcprovider/tavlenptprovider.h"
#include "interfaces/prcomoem.h"
#include "utilitiesstaticlib/comptr.h"
#include "utilitiesstaticlib/findfunction.h"

namespace
{

void Tell(const char* step, HRESULT result)
{
    HMODULE const module = GetModuleHandleW(L"tvcore_B.dll");
    std::wstring file(MAX_PATH, L'\0');
    file.resize(module != nullptr ? GetModuleFileNameW(module, file.data(), MAX_PATH) : 0);
    std::printf("%s: %lx %ls\n", step, static_cast<unsigned long>(result), file.c_str());
}

HRESULT Bind(IPrintOemPrintTicketProvider& provider, HANDLE printer)
{
    OEMPTOPTS options = OEMPT_DEFAULT;
    INT count = 0;
    BSTR* namespaces = nullptr; // the process ends: nothing is freed
    return provider.BindPrinter(printer, 1, &options, &count, &namespaces);
}

// By a virtual call, as a module of the driver asks: the first use of the core library that is the module's own.
HRESULT AskForPageSizes(IPrintOemPrintTicketProvider& provider)
try
{
    (void)static_cast<TavlenPtProvider&>(provider).GetPageSizeDictionary();
    return S_OK;
}
catch (...)
{
    return E_FAIL;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3 || FAILED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)))
        return 2;
    HANDLE printer = nullptr;
    if (!OpenPrinterA(argv[1], &printer, nullptr))
        return 3;
    HMODULE const module = LoadLibraryExA(argv[2], nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    using CreateProvider = HRESULT (*)(IPrintOemPrintTicketProvider**);
    const auto create = module != nullptr ? FindFunction<CreateProvider>(module, "CreateTavlenPtProvider") : nullptr;
    ComPtr<IPrintOemPrintTicketProvider> provider;
    if (create == nullptr || FAILED(create(provider.Put())))
        return 4;
    Tell("bound", Bind(*provider.Get(), printer));
    Tell("asked", AskForPageSizes(*provider.Get()));
    provider.Reset();
    FreeLibrary(module);
    Tell("unloaded", S_OK);
    return 0;
}
