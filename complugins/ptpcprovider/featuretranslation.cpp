#include "complugins/ptpcprovider/featuretranslation.h"

#include "complugins/ptpcprovider/deletenamed.h"

std::optional<TicketOption> ReadTicketOption(const PrintTicketXmlDocument& ticket, const CXString& featureName)
{
    if (ticket.GetDocument() == nullptr)
        return std::nullopt;
    CComBSTR name;
    CComBSTR prefix;
    if (ticket.GetFeatureOption(featureName, name.Put(), prefix.Put()) == PrintSchemaXmlDocument::kNotFound)
        return std::nullopt;
    TicketOption option{CXString(name), OptionNamespace::Other};
    if (CXString(prefix) == ticket.GetNsPrefix(PrintSchema::Keywords))
        option.nameSpace = OptionNamespace::Keywords;
    else if (CXString(prefix) == ticket.GetNsPrefix(PrintSchema::PrivateKeywords))
        option.nameSpace = OptionNamespace::PrivateKeywords;
    return option;
}

void DeleteFeature(const PrintSchemaXmlDocument& document, const CXString& featureName)
{
    DeleteNamed(document, PrintSchema::kFeature, document.GetNsPrefix(PrintSchema::Keywords) + featureName);
}

void ReplaceFeature(const PrintSchemaXmlDocument& document, const CXString& featureName, IXMLDOMElement* feature)
{
    DeleteFeature(document, featureName);
    document.AppendChildToRootNode(feature);
}

void ReplaceTicketOption(const PrintTicketXmlDocument& ticket, const CXString& featureName, bool optionIsPublic,
                         const CXString& optionName)
{
    ComPtr<IXMLDOMElement> feature;
    ComPtr<IXMLDOMElement> option;
    ticket.CreateFeatureOptionPair(PrintSchema::Keywords, featureName, optionIsPublic, optionName, feature.Put(),
                                   option.Put());
    ReplaceFeature(ticket, featureName, feature.Get());
}
