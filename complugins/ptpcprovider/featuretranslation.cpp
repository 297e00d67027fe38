#include "complugins/ptpcprovider/featuretranslation.h"

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
    const CXString prefix = document.GetNsPrefix(PrintSchema::Keywords);
    while (document.DeleteFeatureNodeIfExists(prefix, featureName) == S_OK)
    {
        // Any of that name goes, also a second one.
    }
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
