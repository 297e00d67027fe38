#include "providerhost.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

#include "driverpackage.h"
#include "failure.h"
#include "filebytes.h"
#include "utilitiesstaticlib/ccombstr.h"
#include "utilitiesstaticlib/cotaskmemptr.h"
#include "utilitiesstaticlib/findfunction.h"

namespace
{

constexpr char kEntryPoint[] = "CreateTavlenPtProvider";
constexpr char kReportSinkEntryPoint[] = "TavlenSetReportSink";
constexpr INT kInterfaceVersion = 1;

WStringView FolderOf(WStringView file)
{
    const std::size_t separator = file.find_last_of(W("/\\"));
    return separator == WStringView::npos ? WStringView() : file.substr(0, separator + 1);
}

bool HasFileName(const CXString& file, std::string_view name)
{
    return CXString(file.View().substr(FolderOf(file.View()).size())).CompareNoCase(CXString::FromUtf8(name)) == 0;
}

// The provider would name no missing sibling, or only at the first use of it: whoever asks for a conversion gets a
// printer that is whole, or learns which of its files to install again.
void RequireEveryFile(const DriverSummary& driver)
{
    std::vector<CXString> files = driver.dependentFiles;
    files.insert(files.end(), {driver.driverFile, driver.configFile, driver.dataFile});
    for (const CXString& file : files)
        if (!DriverFileExists(PathFromUtf8(file.ToUtf8())))
            FailWithWin32Error("loading the driver \"" + driver.name.ToUtf8() + "\"", file.ToUtf8(),
                               ERROR_FILE_NOT_FOUND);
}

CXString FindProviderModule(const PrinterHandle& printer, const std::string& printerName)
{
    const DriverSummary driver = DescribeDriver(printer, printerName);
    RequireEveryFile(driver);
    const auto found = std::find_if(driver.dependentFiles.begin(), driver.dependentFiles.end(),
                                    [](const CXString& file) { return HasFileName(file, kProviderModule); });
    if (found == driver.dependentFiles.end())
        Fail("finding the provider", driver.name.ToUtf8(),
             "the driver has no file named " + std::string(kProviderModule));
    return *found;
}

// The utility library that the provider uses: the one in its own folder or, when a module of that name was already
// loaded, that one, since the loader tells modules apart by name.
HMODULE FindUtilityModule(const CXString& providerFile)
{
    const CXString name = CXString::FromUtf8(kUtilityModule);
    const CXString beside = CXString(FolderOf(providerFile.View())) + name.View();
    HMODULE const module = GetModuleHandleW(beside.c_str());
    return module != nullptr ? module : GetModuleHandleW(name.c_str());
}

// The BSTRs of an array that BindPrinter allocated.
class NamespaceArray
{
public:
    NamespaceArray() = default;
    NamespaceArray(const NamespaceArray&) = delete;
    NamespaceArray& operator=(const NamespaceArray&) = delete;

    ~NamespaceArray()
    {
        for (INT index = 0; texts != nullptr && index < count; ++index)
            SysFreeString(texts[index]);
        CoTaskMemFree(texts);
    }

    INT count = 0;
    BSTR* texts = nullptr;
};

// Text in a room of fixed size, cut to it.
class BoundedText
{
public:
    explicit BoundedText(std::span<char> room) noexcept : m_room(room)
    {
        m_room[0] = '\0';
    }

    void Append(char character) noexcept
    {
        if (m_length + 1 >= m_room.size())
            return;
        m_room[m_length++] = character;
        m_room[m_length] = '\0';
    }

    void Append(std::string_view text) noexcept
    {
        for (const char character : text)
            Append(character);
    }

    void AppendAscii(const WCHAR* text) noexcept
    {
        for (; text != nullptr && *text != WCHAR(); ++text)
            Append(*text < 0x80 ? static_cast<char>(*text) : '?');
    }

private:
    std::span<char> m_room;
    std::size_t m_length = 0;
};

} // namespace

ProviderHost::Module::Module(const CXString& file)
    : m_module(LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH))
{
    if (m_module == nullptr)
        FailWithWin32Error("loading the provider", file.ToUtf8(), GetLastError());
}

ProviderHost::Module::~Module()
{
    FreeLibrary(m_module);
}

HMODULE ProviderHost::Module::Get() const noexcept
{
    return m_module;
}

ProviderHost::ProviderHost(const PrinterHandle& printer, const std::string& printerName, IUnknown* coreHelper)
    : m_printerName(printerName), m_moduleFile(FindProviderModule(printer, printerName)), m_module(m_moduleFile)
{
    using CreateProvider = HRESULT (*)(IPrintOemPrintTicketProvider**);
    const auto create = FindFunction<CreateProvider>(m_module.Get(), kEntryPoint);
    if (create == nullptr)
        FailWithWin32Error("finding the provider's entry point", m_moduleFile.ToUtf8(), GetLastError());
    ReceiveReports();
    Require(create(m_provider.Put()), "creating the provider", m_moduleFile.ToUtf8());
    Bind(printer);
    if (coreHelper != nullptr)
        Require(m_provider->PublishPrintTicketHelperInterface(coreHelper), "publishing the core driver's helper",
                m_printerName);
    QueryDefaultNamespace();
}

ProviderHost::~ProviderHost() = default;

ProviderHost::ReportRegistration::~ReportRegistration()
{
    if (m_setReportSink != nullptr)
        m_setReportSink(nullptr, nullptr);
}

void ProviderHost::ReportRegistration::Register(HMODULE utilityLibrary, LastReport& report) noexcept
{
    m_setReportSink = FindFunction<decltype(m_setReportSink)>(utilityLibrary, kReportSinkEntryPoint);
    if (m_setReportSink != nullptr)
        m_setReportSink(&ProviderHost::KeepReport, &report);
}

const CXString& ProviderHost::DefaultNamespace() const noexcept
{
    return m_defaultNamespace;
}

void ProviderHost::ConvertDevModeToPrintTicket(Devmode& devmode, IXMLDOMDocument2& ticket, const std::string& file)
{
    Require(m_provider->ConvertDevModeToPrintTicket(devmode.Size(), devmode.Raw(), 0, nullptr, &ticket),
            "converting the devmode to a ticket", file);
}

void ProviderHost::ConvertPrintTicketToDevMode(IXMLDOMDocument2& ticket, Devmode& devmode, const std::string& file)
{
    Require(m_provider->ConvertPrintTicketToDevMode(&ticket, devmode.Size(), devmode.Raw(), 0, nullptr),
            "converting the ticket to a devmode", file);
    static_cast<void>(Devmode::FromBytes(devmode.Bytes(), "the converted devmode")); // it wrote into the bytes
}

void ProviderHost::CompletePrintCapabilities(IXMLDOMDocument2& ticket, IXMLDOMDocument2& capabilities,
                                             const std::string& file)
{
    Require(m_provider->CompletePrintCapabilities(&ticket, &capabilities), "completing the capabilities", file);
}

void ProviderHost::ValidatePrintTicket(IXMLDOMDocument2& ticket, const std::string& file)
{
    Require(m_provider->ValidatePrintTicket(&ticket), "validating the ticket", file);
}

void ProviderHost::ExpandIntentOptions(IXMLDOMDocument2& ticket, const std::string& file)
{
    Require(m_provider->ExpandIntentOptions(&ticket), "expanding the ticket's intents", file);
}

// The module reports on the thread that called it, so there is no race for the text. It must neither throw nor
// allocate: what it reports may be that there is no memory.
void ProviderHost::KeepReport(const TavlenException::Report& report, void* context)
{
    BoundedText text(static_cast<LastReport*>(context)->text);
    const auto* const own = dynamic_cast<const TavlenException*>(report.exception);
    text.AppendAscii(own != nullptr ? own->GetSite().method : report.site.method);
    const char* const what = report.exception != nullptr ? report.exception->what() : "an unknown exception";
    if (what == nullptr || *what == '\0')
        return;
    text.Append(": ");
    text.Append(what);
}

void ProviderHost::ReceiveReports()
{
    HMODULE const utility = FindUtilityModule(m_moduleFile);
    if (utility == nullptr)
        return; // reports then go where the library sends them by itself
    m_registration.Register(utility, m_report);
}

void ProviderHost::Bind(const PrinterHandle& printer)
{
    INT count = 0;
    CoTaskMemPtr<INT> versions;
    INT* answered = nullptr;
    const HRESULT asked = m_provider->GetSupportedVersions(printer.Get(), &answered, &count);
    versions.reset(answered);
    Require(asked, "asking the provider for its versions", m_printerName);
    const std::span<const INT> known(versions.get(),
                                     versions != nullptr && count > 0 ? static_cast<std::size_t>(count) : 0);
    if (std::find(known.begin(), known.end(), kInterfaceVersion) == known.end())
        Fail("binding the printer", m_printerName, "the provider does not support version 1 of its interface");

    OEMPTOPTS options = OEMPT_DEFAULT;
    NamespaceArray namespaces;
    Require(m_provider->BindPrinter(printer.Get(), kInterfaceVersion, &options, &namespaces.count, &namespaces.texts),
            "binding the printer", m_printerName);
}

void ProviderHost::QueryDefaultNamespace()
{
    CComBSTR uri;
    const HRESULT result = m_provider->QueryDeviceDefaultNamespace(uri.Put());
    if (result == E_NOTIMPL) // the provider has no namespace of its own for this printer
        return;
    Require(result, "asking the provider for its namespace", m_printerName);
    m_defaultNamespace = CXString(uri.View());
}

void ProviderHost::Require(HRESULT result, const char* what, const std::string& which) const
{
    if (FAILED(result))
        FailWithHresult(what, which, result, m_report.text);
}
