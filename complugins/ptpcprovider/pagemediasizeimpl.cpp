// The page media size translator: the paper of a devmode and the feature "PageMediaSize" of a ticket. Its capabilities:
// pagemediasizecapabilities.cpp.
#include <windows.h>

#include <tvutil/bytebuffer.h>
#include <tvutil/executioncontext.h>
#include <tvutil/operatingsystem.h>
#include <tvutil/tavlencomexception.h>

#include "complugins/fixedtext.h"
#include "complugins/mscacheddevicecapabilities.h"
#include "complugins/ptpcprovider/deletenamed.h"
#include "complugins/ptpcprovider/pagemediasizeforms.h"
#include "complugins/ptpcprovider/pagemediasizeoptions.h"
#include "complugins/ptpcprovider/printticketxmldocument.h"
#include "complugins/ptpcprovider/tavlenptprovider.h"
#include "complugins/ptpcprovider/ticketoption.h"
#include "complugins/reconciledevmodepapersize.h"

namespace
{

using PageMediaSize::AskedSize;
using PageMediaSize::CustomOption;
using PageMediaSize::CustomProperty;
using PageMediaSize::Meaning;
using EntryRefs = PageSizeDictionary::EntryRefs;

constexpr WCHAR kSourceFile[] = W("complugins\\ptpcprovider\\pagemediasizeimpl");

constexpr ThrowSite kGetOptionName{W("TavlenPtProvider::GetMsPageMediaSizeOptionName"), kSourceFile};
constexpr ThrowSite kGetTicketSize{W("TavlenPtProvider::GetPrintTicketPaperSize"), kSourceFile};
constexpr ThrowSite kGetDevmodeSize{W("TavlenPtProvider::GetDevmodePaperSize"), kSourceFile};
constexpr ThrowSite kConvertToDevmode{W("TavlenPtProvider::ConvertPageMediaSizeToDevmode"), kSourceFile};
constexpr ThrowSite kConvertToTicket{W("TavlenPtProvider::ConvertDevmodeToPageMediaSize"), kSourceFile};

// Takes the place of a size that the ticket does not give, or that is none.
AskedSize DefaultSize()
{
    AskedSize asked;
    asked.valueId =
        OperatingSystem::UseEnglishPaperSizes() ? DataModelIds::Value::PageSizeLetter : DataModelIds::Value::PageSizeA4;
    return asked;
}

// Microns; 0 when the property is absent, no number or none above 0, and where a devmode, which takes 16 bits in tenths
// of a millimetre, would get 0 beside the other half of the size.
LONG ReadLength(const PrintTicketXmlDocument& ticket, const WCHAR* property)
{
    ULONG value = 0;
    if (ticket.GetScoredPropertyValue(PageMediaSize::kFeature, property, &value) == PrintTicketXmlDocument::kNotFound)
        return 0;
    const auto microns = static_cast<LONG>(value); // a negative number is one again
    return microns > 0 && static_cast<WORD>(PageMediaSize::TenthsOf(microns)) != 0 ? microns : 0;
}

// An option of that name in another maker's namespace is another option.
bool IsNamed(const PageSizeDictionaryEntry& entry, const TicketOption& option, const PrintTicketXmlDocument& ticket)
{
    const auto index = entry.IsPredefinedMsOptionName() ? PrintSchema::Keywords : PrintSchema::PrivateKeywords;
    return entry.GetMsPageMediaSizeOptionName() == option.name && ticket.GetNsPrefix(index) == option.prefix;
}

// The value of the option's name: among the entries of its size, else among all, the usual ones first.
std::optional<std::int32_t> FindValue(const PageSizeDictionary& dictionary, const AskedSize& asked,
                                      const TicketOption& option, const PrintTicketXmlDocument& ticket)
{
    const auto find = [&](const EntryRefs& entries) -> std::optional<std::int32_t>
    {
        for (const PageSizeDictionaryEntry& entry : entries)
            if (IsNamed(entry, option, ticket))
                return entry.GetValueId().GetValueEnum();
        return std::nullopt;
    };
    std::optional<std::int32_t> value = find(dictionary.GetPageSizeEntryRefs(
        Dimension(asked.width, Dimension::Microns), Dimension(asked.height, Dimension::Microns)));
    for (const auto type : {DataModelIds::PageSizeStandard, DataModelIds::PageSizeExtended})
        if (!value)
            value = find(dictionary.GetPageSizeEntryRefs(type));
    return value;
}

// Nothing when the ticket gives no usable size.
std::optional<AskedSize> ReadAskedSize(const PrintTicketXmlDocument& ticket, const PageSizeDictionary& dictionary)
{
    const std::optional<TicketOption> option = ReadTicketOption(ticket, PageMediaSize::kFeature);
    if (!option)
        return std::nullopt;
    const CustomOption* const custom = option->prefix == ticket.GetNsPrefix(PrintSchema::Keywords)
                                           ? PageMediaSize::FindCustomOption(option->name)
                                           : nullptr;
    const CustomOption& properties = custom != nullptr ? *custom : PageMediaSize::kCustomMediaSize;
    AskedSize asked;
    asked.isCustom = custom != nullptr;
    asked.width = ReadLength(ticket, PageMediaSize::PropertyOf(Meaning::Width, properties));
    asked.height = ReadLength(ticket, PageMediaSize::PropertyOf(Meaning::Height, properties));
    if (asked.width == 0 || asked.height == 0)
        return std::nullopt;
    if (!asked.isCustom)
        asked.valueId = FindValue(dictionary, asked, *option, ticket);
    return asked;
}

LONG ValueOf(const CustomProperty& property, LONG width, LONG height) noexcept
{
    switch (property.meaning)
    {
    case Meaning::Width:
        return width;
    case Meaning::Height:
        return height;
    case Meaning::Constant:
        break;
    }
    return property.constant;
}

// Another initialiser of the name, whoever refers to it, goes: of two, readers would take the older.
void WriteParameters(const PrintTicketXmlDocument& ticket, const CustomOption& option, LONG width, LONG height)
{
    const CXString prefix = ticket.GetNsPrefix(PrintSchema::Keywords);
    for (const CustomProperty& property : option.properties)
    {
        DeleteNamed(ticket, PrintSchema::kParameterInit, prefix + property.parameter);
        ticket.AppendIntegerParameterInit(prefix, property.parameter,
                                          static_cast<ULONG>(ValueOf(property, width, height)));
    }
}

} // namespace

void TavlenPtProvider::GetMsPageMediaSizeOptionName(bool isCustom, const FormsInfoRecord& form, CXString* optionName,
                                                    PrintSchema::MsPrintTicketNamespacesEnum* namespaceIndex)
{
    ThrowIfFailed(optionName != nullptr && namespaceIndex != nullptr ? S_OK : E_POINTER, kGetOptionName);
    *namespaceIndex = PrintSchema::Keywords;
    if (isCustom)
        *optionName = CXString(PageMediaSize::CustomOptionOf(IsPostScriptDriver()).name);
    else if (const auto found = PageMediaSize::NameOfForm(form, GetPageSizeDictionary()))
    {
        *optionName = found->name;
        *namespaceIndex = found->namespaceIndex;
    }
}

bool TavlenPtProvider::GetPrintTicketPaperSize(PrintTicketXmlDocument& ticket, MsCachedDeviceCapabilities& capabilities,
                                               FormsInfoRecord* form)
{
    const ExecutionContextLifetime context(kGetTicketSize);
    ThrowIfFailed(form != nullptr ? S_OK : E_POINTER, kGetTicketSize);
    const std::optional<AskedSize> asked = ReadAskedSize(ticket, GetPageSizeDictionary());
    *form = PageMediaSize::FormForTicket(asked.value_or(DefaultSize()), PageMediaSize::ReadForms(capabilities));
    return !asked.has_value();
}

// What is read is the copy, which the check has made to agree with the form list.
bool TavlenPtProvider::GetDevmodePaperSize(DEVMODEW* devmode, MsCachedDeviceCapabilities& capabilities,
                                           FormsInfoRecord* form)
{
    const ExecutionContextLifetime context(kGetDevmodeSize);
    ThrowIfFailed(devmode != nullptr && form != nullptr ? S_OK : E_POINTER, kGetDevmodeSize);
    const std::vector<FormsInfoRecord> forms = PageMediaSize::ReadForms(capabilities);
    ByteBuffer copy(devmode, std::size_t{devmode->dmSize} + devmode->dmDriverExtra);
    auto* const checked = reinterpret_cast<DEVMODEW*>(copy.data());
    const bool isMatched = ReconcileDevmodePaperSize(m_printerHandle, checked, GetMSDeviceCapabilities());
    *form = PageMediaSize::FormForDevmode(*checked, forms);
    return !isMatched;
}

// DM_FORMNAME is cleared although the name is written, on purpose: the paper number rules.
HRESULT TavlenPtProvider::ConvertPageMediaSizeToDevmode(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                                        MsCachedDeviceCapabilities& capabilities)
{
    const ExecutionContextLifetime context(kConvertToDevmode);
    FormsInfoRecord form;
    GetPrintTicketPaperSize(ticket, capabilities, &form);
    const WORD number = PageMediaSize::DevmodeNumberOf(form);
    devmode->dmPaperSize = static_cast<short>(number);
    devmode->dmPaperWidth = static_cast<short>(form.width); // the low 16 bits
    devmode->dmPaperLength = static_cast<short>(form.length);
    SetFixedText(devmode->dmFormName, form.GetName());

    devmode->dmFields &= ~DWORD{DM_FORMNAME | DM_PAPERLENGTH | DM_PAPERWIDTH};
    devmode->dmFields |= DM_PAPERSIZE;
    if (number == DMPAPER_USER)
        devmode->dmFields |= DM_PAPERLENGTH | DM_PAPERWIDTH;
    return S_OK;
}

// The new feature is complete before the old one goes: a form that has no option leaves the ticket as it was.
HRESULT TavlenPtProvider::ConvertDevmodeToPageMediaSize(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                                        MsCachedDeviceCapabilities& capabilities)
{
    const ExecutionContextLifetime context(kConvertToTicket);
    FormsInfoRecord form;
    GetDevmodePaperSize(devmode, capabilities, &form);
    const bool isCustom = form.paperId == DMPAPER_USER;
    const CustomOption& custom = PageMediaSize::CustomOptionOf(IsPostScriptDriver());
    CXString name;
    auto namespaceIndex = PrintSchema::Keywords;
    GetMsPageMediaSizeOptionName(isCustom, form, &name, &namespaceIndex);

    ComPtr<IXMLDOMElement> feature;
    ComPtr<IXMLDOMElement> option;
    ticket.CreateFeatureOptionPair(PrintSchema::Keywords, PageMediaSize::kFeature,
                                   namespaceIndex == PrintSchema::Keywords, name, feature.Put(), option.Put());
    PageMediaSize::AppendSizeProperties(ticket, option.Get(), isCustom ? &custom : nullptr, form);
    const CXString prefix = ticket.GetNsPrefix(PrintSchema::Keywords);
    DeleteNamed(ticket, PrintSchema::kFeature, prefix + PageMediaSize::kFeature, 1);
    ticket.DeleteFeatureAndOrphanParameterInitsIfExists(prefix, PageMediaSize::kFeature);
    ticket.AppendChildToRootNode(feature.Get());
    if (isCustom)
        WriteParameters(ticket, custom, PageMediaSize::MicronsOf(form.width), PageMediaSize::MicronsOf(form.length));
    return S_OK;
}
