// The feature "PageMediaSize" of the capabilities, made anew from the printer's form list.
#include <windows.h>

#include <tvutil/application.h>
#include <tvutil/executioncontext.h>

#include <unordered_set>
#include <vector>

#include "complugins/mscacheddevicecapabilities.h"
#include "complugins/ptpcprovider/deletenamed.h"
#include "complugins/ptpcprovider/domhelpers.h"
#include "complugins/ptpcprovider/pagemediasizeextents.h"
#include "complugins/ptpcprovider/pagemediasizeforms.h"
#include "complugins/ptpcprovider/pagemediasizeoptions.h"
#include "complugins/ptpcprovider/printcapabilitiesxmldocument.h"
#include "complugins/ptpcprovider/tavlenptprovider.h"

namespace
{

using PageMediaSize::CustomOption;
using PageMediaSize::CustomProperty;
using PageMediaSize::Extents;
using PageMediaSize::Meaning;

constexpr ThrowSite kReplace{W("TavlenPtProvider::ReplacePageMediaSizeCapabilities"),
                             W("complugins\\ptpcprovider\\pagemediasizeimpl")};

constexpr std::int32_t kFeatureDisplayName = 41034; // product string

void DeleteParameterDefs(const PrintCapabilitiesXmlDocument& document)
{
    const CXString prefix = document.GetNsPrefix(PrintSchema::Keywords);
    for (const CustomOption* const option :
         {&PageMediaSize::kPostScriptCustomMediaSize, &PageMediaSize::kCustomMediaSize})
        for (const CustomProperty& property : option->properties)
            DeleteNamed(document, PrintSchema::kParameterDef, prefix + property.parameter);
}

// The orientation's unit is microns like the others', on purpose.
PrintCapabilitiesXmlDocument::IntegerParameter DefinitionOf(const CustomProperty& property, const Extents& extents)
{
    const auto between = [](LONG least, LONG most)
    {
        return PrintCapabilitiesXmlDocument::IntegerParameter{W("Unconditional"), CXString(), least, least, most, 1,
                                                              W("microns")};
    };
    switch (property.meaning)
    {
    case Meaning::Width:
        return between(PageMediaSize::MicronsOf(extents.least.width), PageMediaSize::MicronsOf(extents.most.width));
    case Meaning::Height:
        return between(PageMediaSize::MicronsOf(extents.least.length), PageMediaSize::MicronsOf(extents.most.length));
    case Meaning::Constant:
        break;
    }
    return between(property.constant, property.constant);
}

void AppendParameterDefs(const PrintCapabilitiesXmlDocument& document, const CustomOption& option,
                         const Extents& extents)
{
    for (const CustomProperty& property : option.properties)
    {
        ComPtr<IXMLDOMElement> definition;
        document.CreateIntegerParameterDef(document.GetNsPrefix(PrintSchema::Keywords), property.parameter,
                                           DefinitionOf(property, extents), definition.Put());
        document.AppendChildToRootNode(definition.Get());
    }
}

} // namespace

// Where the driver does not say between which lengths a custom size may be, there are no parameters that one could
// refer to, and so no custom size.
HRESULT TavlenPtProvider::ReplacePageMediaSizeCapabilities(PrintCapabilitiesXmlDocument& document,
                                                           PrintTicketXmlDocument& /*ticket*/,
                                                           MsCachedDeviceCapabilities& capabilities)
{
    const ExecutionContextLifetime context(kReplace);
    const std::optional<Extents> extents = PageMediaSize::AskExtents(m_printer, capabilities.GetCachedDevmode());
    const CustomOption& custom = PageMediaSize::CustomOptionOf(IsPostScriptDriver());
    const bool offersCustomSize =
        extents && !Application::DoesApplicationNeedCustomSizeRemovedFromPrintCapabilitiesXml();

    ComPtr<IXMLDOMElement> feature;
    document.CreatePickOneFeature(PageMediaSize::kFeature, GetProductStringLoader().LoadStringW(kFeatureDisplayName),
                                  feature.Put());
    std::unordered_set<WideString> names; // two custom sizes may share a number: the first of a name is the option
    for (const FormsInfoRecord& form :
         PageMediaSize::OfferedForms(PageMediaSize::ReadForms(capabilities), offersCustomSize))
    {
        const bool isCustom = form.paperId == DMPAPER_USER;
        CXString name;
        auto namespaceIndex = PrintSchema::Keywords;
        GetMsPageMediaSizeOptionName(isCustom, form, &name, &namespaceIndex);
        const CXString prefix = document.GetNsPrefix(namespaceIndex);
        if (!names.emplace(prefix + name).second)
            continue;
        ComPtr<IXMLDOMElement> option;
        document.CreateOption(prefix, name, TextForDocument(form.GetName()), W("None"), option.Put());
        PageMediaSize::AppendSizeProperties(document, option.Get(), isCustom ? &custom : nullptr, form);
        document.AppendChild(feature.Get(), option.Get());
    }
    DeleteNamed(document, PrintSchema::kFeature, document.GetNsPrefix(PrintSchema::Keywords) + PageMediaSize::kFeature);
    document.AppendChildToRootNode(feature.Get());
    DeleteParameterDefs(document);
    if (extents)
        AppendParameterDefs(document, custom, *extents);
    return S_OK;
}
