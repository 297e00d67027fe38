// A program of its own for a test, on Windows: the first operations of a process or of a thread, while the n-th
// allocation of the driver's modules fails.
//
//     out_of_memory_probe OPERATION WHERE NTH    with the printer's name in the environment, as TVPT_PROBE_PRINTER
//         OPERATION  bind, convert, or refuse: a binding to what is no printer, which is an exception by itself
//         WHERE      process: the first operation of this process. thread: each time the first of a new thread, with
//                    NTH and then every number after it, until nothing fails any more
//
// Prints a line "<nth> <fired or through> <result in hexadecimal>" for each operation. Ends with 0; with 1 to 9 when it
// cannot begin; a process that does not survive an operation ends with what the platform makes of it.
#include <windows.h>
#include <winspool.h>

#include <msxml2.h>
#include <objbase.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

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

const char* const kModules[] = {"tvptpc_B.dll", "tvutil_B.dll", "tvcore_B.dll", "tvwftu_B.dll"};

std::atomic<DWORD> g_failingThread{0};
std::atomic<unsigned long> g_countdown{0}; // to the allocation that fails; 0: none

bool MustFail()
{
    return GetCurrentThreadId() == g_failingThread.load() && g_countdown.load() != 0 && --g_countdown == 0;
}

void* FailingMalloc(std::size_t size)
{
    return MustFail() ? nullptr : std::malloc(size);
}

void* FailingCalloc(std::size_t count, std::size_t size)
{
    return MustFail() ? nullptr : std::calloc(count, size);
}

void* FailingRealloc(void* block, std::size_t size)
{
    return MustFail() ? nullptr : std::realloc(block, size);
}

struct Replacement
{
    const char* name;
    void* ours;
};

const Replacement kReplacements[] = {
    {"malloc", reinterpret_cast<void*>(&FailingMalloc)},
    {"calloc", reinterpret_cast<void*>(&FailingCalloc)},
    {"realloc", reinterpret_cast<void*>(&FailingRealloc)},
};

// In the module's table of imported addresses.
bool Replace(BYTE* module, const void* former, void* ours)
{
    const auto* const headers =
        reinterpret_cast<const IMAGE_NT_HEADERS*>(module + reinterpret_cast<const IMAGE_DOS_HEADER*>(module)->e_lfanew);
    const IMAGE_DATA_DIRECTORY& table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(module + table.VirtualAddress);
         library->FirstThunk != 0; ++library)
        for (auto* entry = reinterpret_cast<void**>(module + library->FirstThunk); *entry != nullptr; ++entry)
            if (*entry == former)
            {
                DWORD protection = 0;
                VirtualProtect(entry, sizeof(*entry), PAGE_READWRITE, &protection);
                *entry = ours;
                return true;
            }
    return false;
}

void ReplaceAllocations()
{
    HMODULE const runtime = GetModuleHandleA("msvcrt.dll");
    for (const char* const name : kModules)
    {
        auto* const module = reinterpret_cast<BYTE*>(LoadLibraryA(name));
        if (module == nullptr)
            std::exit(5);
        for (const Replacement& replacement : kReplacements)
        {
            const auto address = GetProcAddress(runtime, replacement.name);
            const bool isReplaced = Replace(module, reinterpret_cast<const void*>(address), replacement.ours);
            if (!isReplaced && std::strcmp(replacement.name, "malloc") == 0)
                std::exit(6); // nothing would fail
        }
    }
}

using CreateProvider = HRESULT (*)(IPrintOemPrintTicketProvider**);

struct Setting
{
    std::string operation;
    unsigned long nth = 0;
    HANDLE printer = nullptr;
    CreateProvider create = nullptr;
    ComPtr<IPrintOemPrintTicketProvider> provider; // a new one for each operation
};

HRESULT Bind(IPrintOemPrintTicketProvider& provider, HANDLE printer)
{
    OEMPTOPTS options = OEMPT_DEFAULT;
    INT count = 0;
    BSTR* namespaces = nullptr; // the process ends: nothing is freed
    return provider.BindPrinter(printer, 1, &options, &count, &namespaces);
}

HRESULT Operate(const Setting& setting)
{
    static int noPrinter;
    if (setting.operation != "convert")
        return Bind(*setting.provider.Get(), setting.operation == "bind" ? setting.printer : &noPrinter);
    DEVMODEW devmode = {};
    devmode.dmSize = sizeof(devmode);
    devmode.dmCopies = 3;
    ComPtr<IXMLDOMDocument2> ticket;
    VARIANT_BOOL isLoaded = VARIANT_FALSE;
    if (FAILED(CoCreateInstance(kDomDocumentClassId, nullptr, CLSCTX_INPROC_SERVER, IidOf<IXMLDOMDocument2>::Value(),
                                ticket.PutVoid())) ||
        FAILED(ticket->loadXML(CComBSTR(kTicket).Get(), &isLoaded)) || isLoaded == VARIANT_FALSE)
        return E_UNEXPECTED;
    return setting.provider->ConvertDevModeToPrintTicket(sizeof(devmode), &devmode, 0, nullptr, ticket.Get());
}

// True when an allocation failed.
DWORD WINAPI OperateOutOfMemory(void* parameter)
{
    const Setting& setting = *static_cast<const Setting*>(parameter);
    if (FAILED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)))
        return FALSE;
    g_failingThread = GetCurrentThreadId();
    g_countdown = setting.nth;
    const HRESULT result = Operate(setting);
    const bool isFired = g_countdown.exchange(0) == 0;
    std::printf("%lu %s %lx\n", setting.nth, isFired ? "fired" : "through", static_cast<unsigned long>(result));
    std::fflush(stdout);
    CoUninitialize();
    return isFired ? TRUE : FALSE;
}

// The provider comes from this thread, so that the operation is the other's first; a conversion has its product then.
bool OperateInNewThread(Setting& setting)
{
    if (FAILED(setting.create(setting.provider.Put())) ||
        (setting.operation == "convert" && FAILED(Bind(*setting.provider.Get(), setting.printer))))
        std::exit(7);
    HANDLE const thread = CreateThread(nullptr, 0, OperateOutOfMemory, &setting, 0, nullptr);
    DWORD isFired = FALSE;
    WaitForSingleObject(thread, INFINITE);
    GetExitCodeThread(thread, &isFired);
    CloseHandle(thread);
    return isFired != FALSE;
}

LONG WINAPI EndQuietly(EXCEPTION_POINTERS*)
{
    TerminateProcess(GetCurrentProcess(), 99);
    return EXCEPTION_EXECUTE_HANDLER;
}

} // namespace

int main(int argc, char** argv)
{
    SetUnhandledExceptionFilter(EndQuietly);
    if (argc != 4 || FAILED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)))
        return 2;
    Setting setting;
    setting.operation = argv[1];
    setting.nth = std::strtoul(argv[3], nullptr, 10);
    std::wstring name(MAX_PATH, L'\0');
    name.resize(GetEnvironmentVariableW(L"TVPT_PROBE_PRINTER", name.data(), MAX_PATH));
    if (!OpenPrinterW(name.data(), &setting.printer, nullptr))
        return 3;
    HMODULE const module = LoadLibraryA("tvptpc_B.dll");
    setting.create = module != nullptr ? FindFunction<CreateProvider>(module, "CreateTavlenPtProvider") : nullptr;
    if (setting.create == nullptr || FAILED(setting.create(setting.provider.Put())))
        return 4;
    if (setting.operation == "convert" && FAILED(Bind(*setting.provider.Get(), setting.printer)))
        return 8; // without a printer there are no forms
    ReplaceAllocations();
    if (std::strcmp(argv[2], "process") == 0)
        OperateOutOfMemory(&setting);
    else
        while (OperateInNewThread(setting))
            ++setting.nth;
    return 0;
}
