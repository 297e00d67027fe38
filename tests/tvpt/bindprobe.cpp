// A program of its own for a test: does with a printer what a print service does, from wherever it was started, and
// tells after each step where the core library lies in the process, or nothing.
//
//     bind_probe PRINTER    lines "<step>: <result in hexadecimal> <file>"
#include <windows.h>
#include <winspool.h>

#include <msxml2.h>
#include <objbase.h>

#include <cstdio>
#include <string>
#include <vector>

#include "complugins/ptpcprovider/tavlenptprovider.h"
#include "interfaces/prcomoem.h"
#include "utilitiesstaticlib/ccombstr.h"
#include "utilitiesstaticlib/comptr.h"
#include "utilitiesstaticlib/domclassid.h"
#include "utilitiesstaticlib/domiids.h"
#include "utilitiesstaticlib/findfunction.h"

namespace
{

constexpr WCHAR kTicket[] =
    L"<psf:PrintTicket xmlns:psf='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework' "
    L"xmlns:psk='http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords' version='1'/>";

void Tell(const char* step, HRESULT result)
{
    HMODULE const module = GetModuleHandleW(L"tvcore_B.dll");
    std::wstring file(MAX_PATH, L'\0');
    file.resize(module != nullptr ? GetModuleFileNameW(module, file.data(), MAX_PATH) : 0);
    std::printf("%s: %lx %ls\n", step, static_cast<unsigned long>(result), file.c_str());
}

// A spooler's answer: the structure with its texts behind it; empty when it has none.
template <class Call>
std::vector<BYTE> Ask(Call call)
{
    DWORD needed = 0;
    call(nullptr, 0, &needed);
    std::vector<BYTE> room(needed);
    return call(room.data(), needed, &needed) ? room : std::vector<BYTE>();
}

std::wstring ProviderOf(HANDLE printer)
{
    const auto room = Ask([printer](LPBYTE bytes, DWORD size, LPDWORD needed)
                          { return GetPrinterDriverW(printer, nullptr, 3, bytes, size, needed); });
    if (room.empty())
        return {};
    const std::wstring configuration = reinterpret_cast<const DRIVER_INFO_3W*>(room.data())->pConfigFile;
    return configuration.substr(0, configuration.find_last_of(L"\\/") + 1) + L"tvptpc_B.dll";
}

HRESULT Bind(IPrintOemPrintTicketProvider& provider, HANDLE printer)
{
    OEMPTOPTS options = OEMPT_DEFAULT;
    INT count = 0;
    BSTR* namespaces = nullptr; // the process ends: nothing is freed
    return provider.BindPrinter(printer, 1, &options, &count, &namespaces);
}

HRESULT Convert(IPrintOemPrintTicketProvider& provider, HANDLE printer)
{
    auto room = Ask([printer](LPBYTE bytes, DWORD size, LPDWORD needed)
                    { return GetPrinterW(printer, 2, bytes, size, needed); });
    DEVMODEW* const devmode = room.empty() ? nullptr : reinterpret_cast<PRINTER_INFO_2W*>(room.data())->pDevMode;
    ComPtr<IXMLDOMDocument2> ticket;
    VARIANT_BOOL isLoaded = VARIANT_FALSE;
    if (devmode == nullptr ||
        FAILED(CoCreateInstance(kDomDocumentClassId, nullptr, CLSCTX_INPROC_SERVER, IidOf<IXMLDOMDocument2>::Value(),
                                ticket.PutVoid())) ||
        FAILED(ticket->loadXML(CComBSTR(kTicket).Get(), &isLoaded)) || isLoaded == VARIANT_FALSE)
        return E_UNEXPECTED;
    return provider.ConvertDevModeToPrintTicket(ULONG{devmode->dmSize} + devmode->dmDriverExtra, devmode, 0, nullptr,
                                                ticket.Get());
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
    if (argc != 2 || FAILED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)))
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
    Tell("created", S_OK);
    Tell("bound", Bind(*provider.Get(), printer));
    Tell("converted", Convert(*provider.Get(), printer));
    Tell("asked", AskForPageSizes(*provider.Get()));
    provider.Reset();
    FreeLibrary(module);
    Tell("unloaded", S_OK);
    return 0;
}
