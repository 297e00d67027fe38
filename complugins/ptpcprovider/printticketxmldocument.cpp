#include "complugins/ptpcprovider/printticketxmldocument.h"

#include <tvutil/tavlencomexception.h>

#include <unordered_set>
#include <utility>

#include "complugins/ptpcprovider/domhelpers.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\ptpcprovider\\printticketxmldocument");

constexpr FailureCheck Check(kSourceFile);

// The names that references give. A missing name counts as one of its own: two missing names are equal.
struct ReferencedNames
{
    std::unordered_set<WideString> names;
    bool oneIsMissing = false;
};

} // namespace

PrintTicketXmlDocument::PrintTicketXmlDocument(IXMLDOMDocument2* document)
    : PrintSchemaXmlDocument(PrintSchema::kPrintTicket, document)
{
}

PrintTicketXmlDocument::~PrintTicketXmlDocument() = default;

HRESULT PrintTicketXmlDocument::GetFeatureOption(const CXString& featureName, BSTR* optionName,
                                                 BSTR* optionPrefix) const
{
    constexpr const WCHAR* kMethod = W("PrintTicketXmlDocument::GetFeatureOption");
    Require({kMethod, kSourceFile}, optionName != nullptr && optionPrefix != nullptr, !featureName.IsEmpty());

    PrintTicketQueryBuilder builder(FrameworkPrefix());
    builder.AddFeature(KeywordsPrefix(), featureName);
    builder.AddOption(KeywordsPrefix());
    ComPtr<IXMLDOMNode> node;
    if (GetNode(QueryOf(builder), node.Put()) == S_FALSE)
        return kNotFound;

    // An Option has its name in the attribute; the value of an "OptionName" property is the name.
    CComBSTR text;
    if (GetAttributeValue(node.Get(), PrintSchema::kNameAttribute, text.Put()) == S_FALSE)
        ReadTypedValue(node.Get(), text);
    const CXString fullName(text);
    const std::size_t colon = fullName.Find(W(":"));
    Check(colon == CXString::npos ? E_FAIL : S_OK, kMethod);
    CComBSTR name = MakeBstr(fullName.Mid(colon + 1), {kMethod, kSourceFile});
    *optionPrefix = MakeBstr(fullName.Mid(0, colon + 1), {kMethod, kSourceFile}).Detach();
    *optionName = name.Detach();
    return S_OK;
}

HRESULT PrintTicketXmlDocument::GetScoredPropertyValue(const CXString& featureName, const CXString& scoredPropertyName,
                                                       BSTR* value) const
{
    constexpr const WCHAR* kMethod = W("PrintTicketXmlDocument::GetScoredPropertyValue");
    Require({kMethod, kSourceFile}, value != nullptr, !featureName.IsEmpty() && !scoredPropertyName.IsEmpty());
    PrintTicketQueryBuilder builder(FrameworkPrefix());
    builder.AddFeature(KeywordsPrefix(), featureName);
    builder.AddScoredProperty(KeywordsPrefix(), scoredPropertyName);
    const HRESULT result = GetNodeValue(QueryOf(builder), value);
    return result == S_FALSE ? kNotFound : result;
}

HRESULT PrintTicketXmlDocument::GetScoredPropertyValue(const CXString& featureName, const CXString& scoredPropertyName,
                                                       ULONG* value) const
{
    constexpr const WCHAR* kMethod = W("PrintTicketXmlDocument::GetScoredPropertyValue");
    Require({kMethod, kSourceFile}, value != nullptr);
    CComBSTR text;
    const HRESULT result = GetScoredPropertyValue(featureName, scoredPropertyName, text.Put());
    if (result == kNotFound)
        return result;
    *value = static_cast<ULONG>(_wtoi(CXString(text).c_str()));
    return result;
}

HRESULT PrintTicketXmlDocument::GetParameterInitNodeIfExists(const CXString& namePrefix, const CXString& localName,
                                                             IXMLDOMNode** parameterInit) const
{
    return FindNamed(&PrintTicketQueryBuilder::AddParameterInit, namePrefix, localName, parameterInit,
                     {W("PrintTicketXmlDocument::GetParameterInitNodeIfExists"), kSourceFile});
}

HRESULT PrintTicketXmlDocument::GetParameterInitValueNodeIfExists(const CXString& namePrefix, const CXString& localName,
                                                                  IXMLDOMNode** value) const
{
    constexpr const WCHAR* kMethod = W("PrintTicketXmlDocument::GetParameterInitValueNodeIfExists");
    Require({kMethod, kSourceFile}, value != nullptr, !localName.IsEmpty());
    PrintTicketQueryBuilder builder(FrameworkPrefix());
    builder.AddParameterInit(namePrefix, localName);
    builder.AddValue();
    return GetNode(QueryOf(builder), value);
}

HRESULT PrintTicketXmlDocument::CreateFeatureOptionPair(ULONG /*namespaceIndex*/, const CXString& featureName,
                                                        IXMLDOMElement** feature, IXMLDOMElement** option) const
{
    constexpr const WCHAR* kMethod = W("PrintTicketXmlDocument::CreateFeatureOptionPair");
    Require({kMethod, kSourceFile}, feature != nullptr && option != nullptr, !featureName.IsEmpty());
    ComPtr<IXMLDOMElement> newFeature = CreateNamedElement(PrintSchema::kFeature, KeywordsPrefix() + featureName);
    ComPtr<IXMLDOMElement> newOption;
    CreateXMLElement(FrameworkPrefix() + PrintSchema::kOption, newOption.Put());
    AppendChild(newFeature.Get(), newOption.Get());
    *feature = newFeature.Detach();
    *option = newOption.Detach();
    return S_OK;
}

HRESULT PrintTicketXmlDocument::CreateFeatureOptionPair(ULONG namespaceIndex, const CXString& featureName,
                                                        bool optionIsPublic, const CXString& optionName,
                                                        IXMLDOMElement** feature, IXMLDOMElement** option) const
{
    constexpr const WCHAR* kMethod = W("PrintTicketXmlDocument::CreateFeatureOptionPair");
    Require({kMethod, kSourceFile}, feature != nullptr && option != nullptr,
            !featureName.IsEmpty() && !optionName.IsEmpty());
    ComPtr<IXMLDOMElement> newFeature;
    ComPtr<IXMLDOMElement> newOption;
    CreateFeatureOptionPair(namespaceIndex, featureName, newFeature.Put(), newOption.Put());
    AppendXMLAttribute(newOption.Get(), PrintSchema::kNameAttribute, CXString(),
                       (optionIsPublic ? KeywordsPrefix() : PrivateKeywordsPrefix()) + optionName);
    *feature = newFeature.Detach();
    *option = newOption.Detach();
    return S_OK;
}

HRESULT PrintTicketXmlDocument::CreateParameterInit(const CXString& namePrefix, const CXString& localName,
                                                    const WCHAR* typeName, const CXString& value,
                                                    IXMLDOMElement** parameterInit) const
{
    ComPtr<IXMLDOMElement> created = CreateNamedElement(PrintSchema::kParameterInit, namePrefix + localName);
    AppendTypedValue(created.Get(), typeName, value);
    *parameterInit = created.Detach();
    return S_OK;
}

HRESULT PrintTicketXmlDocument::CreateStringParameterInit(const CXString& namePrefix, const CXString& localName,
                                                          const CXString& value, IXMLDOMElement** parameterInit) const
{
    constexpr const WCHAR* kMethod = W("PrintTicketXmlDocument::CreateStringParameterInit");
    Require({kMethod, kSourceFile}, parameterInit != nullptr,
            !namePrefix.IsEmpty() && !localName.IsEmpty() && !value.IsEmpty());
    return CreateParameterInit(namePrefix, localName, PrintSchema::kStringType, value, parameterInit);
}

HRESULT PrintTicketXmlDocument::CreateIntegerParameterInit(const CXString& namePrefix, const CXString& localName,
                                                           ULONG value, IXMLDOMElement** parameterInit) const
{
    constexpr const WCHAR* kMethod = W("PrintTicketXmlDocument::CreateIntegerParameterInit");
    Require({kMethod, kSourceFile}, parameterInit != nullptr);
    // A ticket without the keywords namespace has names without a prefix: only the local name must be there.
    Check(localName.IsEmpty() ? E_INVALIDARG : S_OK, kMethod);
    return CreateParameterInit(namePrefix, localName, PrintSchema::kIntegerType, CXString::FromUnsigned(value),
                               parameterInit);
}

HRESULT PrintTicketXmlDocument::AppendIntegerParameterInit(const CXString& namePrefix, const CXString& localName,
                                                           ULONG value) const
{
    ComPtr<IXMLDOMElement> parameterInit;
    CreateIntegerParameterInit(namePrefix, localName, value, parameterInit.Put());
    return AppendChildToRootNode(parameterInit.Get());
}

HRESULT PrintTicketXmlDocument::DeleteParameterInitNodeIfExists(const CXString& namePrefix,
                                                                const CXString& localName) const
{
    ComPtr<IXMLDOMNode> parameterInit;
    const HRESULT result = GetParameterInitNodeIfExists(namePrefix, localName, parameterInit.Put());
    return result == S_OK ? DeleteNode(parameterInit.Get()) : result;
}

HRESULT PrintTicketXmlDocument::DeleteFeatureAndOrphanParameterInitsIfExists(const CXString& namePrefix,
                                                                             const CXString& localName) const
{
    constexpr const WCHAR* kMethod = W("PrintTicketXmlDocument::DeleteFeatureAndOrphanParameterInitsIfExists");
    Require({kMethod, kSourceFile}, true, !localName.IsEmpty());
    ComPtr<IXMLDOMNode> feature;
    if (GetFeatureNodeIfExists(namePrefix, localName, feature.Put()) == S_FALSE)
        return S_FALSE;
    DeleteNode(feature.Get());
    ComPtr<IXMLDOMNodeList> parameterInits;
    GetNodes(PrintSchema::kParameterInit, parameterInits.Put());
    ComPtr<IXMLDOMNodeList> parameterRefs;
    GetNodes(PrintSchema::kParameterRef, parameterRefs.Put());
    return DeleteParamInitOrphans(parameterRefs.Get(), parameterInits.Get());
}

HRESULT PrintTicketXmlDocument::DeleteParamInitOrphans(IXMLDOMNodeList* parameterRefs,
                                                       IXMLDOMNodeList* parameterInits) const
{
    constexpr const WCHAR* kMethod = W("PrintTicketXmlDocument::DeleteParamInitOrphans");
    Require({kMethod, kSourceFile}, parameterRefs != nullptr && parameterInits != nullptr);
    LONG referenceCount = 0;
    Check(parameterRefs->get_length(&referenceCount), kMethod);
    if (referenceCount == 0) // without any reference every initialiser goes
        return DeleteNodeList(parameterInits);

    ReferencedNames referenced;
    for (const ComPtr<IXMLDOMNode>& reference : NodesOf(parameterRefs, {kMethod, kSourceFile}))
    {
        CComBSTR name;
        if (GetAttributeValue(reference.Get(), PrintSchema::kNameAttribute, name.Put()) == S_OK)
            referenced.names.emplace(name.View());
        else
            referenced.oneIsMissing = true;
    }
    for (const ComPtr<IXMLDOMNode>& initialiser : NodesOf(parameterInits, {kMethod, kSourceFile}))
    {
        CComBSTR name;
        const bool hasName = GetAttributeValue(initialiser.Get(), PrintSchema::kNameAttribute, name.Put()) == S_OK;
        const bool isReferenced =
            hasName ? referenced.names.contains(WideString(name.View())) : referenced.oneIsMissing;
        if (!isReferenced)
            DeleteNode(initialiser.Get());
    }
    return S_OK;
}

HRESULT PrintTicketXmlDocument::DeleteNodeList(IXMLDOMNodeList* nodes) const
{
    constexpr const WCHAR* kMethod = W("PrintTicketXmlDocument::DeleteNodeList");
    Require({kMethod, kSourceFile}, nodes != nullptr);
    for (const ComPtr<IXMLDOMNode>& node : NodesOf(nodes, {kMethod, kSourceFile}))
        DeleteNode(node.Get());
    return S_OK;
}
