#include "complugins/ptpcprovider/printcapabilitiesxmldocument.h"

#include <tvutil/tavlencomexception.h>

#include "complugins/ptpcprovider/domhelpers.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\ptpcprovider\\printcapabilitiesxmldocument");

constexpr WCHAR kDisplayName[] = W("DisplayName");
constexpr WCHAR kSelectionType[] = W("SelectionType");
constexpr WCHAR kPickOne[] = W("PickOne");
constexpr WCHAR kConstrainedAttribute[] = W("constrained");
constexpr WStringView kOwnOptions = W("./%sOption");

constexpr FailureCheck Check(kSourceFile);

// One property of a parameter definition, in the framework namespace.
struct DefinitionProperty
{
    const WCHAR* name;
    const WCHAR* type;
    CXString value;
};

} // namespace

PrintCapabilitiesXmlDocument::PrintCapabilitiesXmlDocument(IXMLDOMDocument2* document)
    : PrintSchemaXmlDocument(PrintSchema::kPrintCapabilities, document)
{
}

PrintCapabilitiesXmlDocument::~PrintCapabilitiesXmlDocument() = default;

void PrintCapabilitiesXmlDocument::AppendProperty(IXMLDOMElement* parent, ULONG namespaceIndex,
                                                  const CXString& localName, const CXString& typeName,
                                                  const CXString& value) const
{
    ComPtr<IXMLDOMElement> property;
    CreateProperty(namespaceIndex, localName, typeName, value, property.Put());
    AppendChild(parent, property.Get());
}

void PrintCapabilitiesXmlDocument::AppendDisplayName(IXMLDOMElement* parent, const CXString& displayName) const
{
    if (!displayName.IsEmpty())
        AppendProperty(parent, PrintSchema::Keywords, kDisplayName, PrintSchema::kStringType, displayName);
}

HRESULT PrintCapabilitiesXmlDocument::CreateFeature(const CXString& featureName, const CXString& displayName,
                                                    IXMLDOMElement** feature) const
{
    constexpr const WCHAR* kMethod = W("PrintCapabilitiesXmlDocument::CreateFeature");
    RequireDocument(kMethod);
    Check(PointerResult(feature != nullptr), kMethod);
    Check(featureName.IsEmpty() ? E_INVALIDARG : S_OK, kMethod);
    ComPtr<IXMLDOMElement> created = CreateNamedElement(PrintSchema::kFeature, KeywordsPrefix() + featureName);
    AppendDisplayName(created.Get(), displayName);
    *feature = created.Detach();
    return S_OK;
}

HRESULT PrintCapabilitiesXmlDocument::CreatePickOneFeature(const CXString& featureName, const CXString& displayName,
                                                           IXMLDOMElement** feature) const
{
    constexpr const WCHAR* kMethod = W("PrintCapabilitiesXmlDocument::CreatePickOneFeature");
    RequireDocument(kMethod);
    Check(PointerResult(feature != nullptr), kMethod);
    ComPtr<IXMLDOMElement> created;
    CreateFeature(featureName, displayName, created.Put());
    AppendProperty(created.Get(), PrintSchema::Framework, kSelectionType, PrintSchema::kQNameType,
                   KeywordsPrefix() + kPickOne);
    *feature = created.Detach();
    return S_OK;
}

HRESULT PrintCapabilitiesXmlDocument::CreateOption(const CXString& namePrefix, const CXString& localName,
                                                   const CXString& displayName, const CXString& constraint,
                                                   IXMLDOMElement** option) const
{
    constexpr const WCHAR* kMethod = W("PrintCapabilitiesXmlDocument::CreateOption");
    RequireDocument(kMethod);
    Check(PointerResult(option != nullptr), kMethod);
    Check(localName.IsEmpty() ? E_INVALIDARG : S_OK, kMethod);
    ComPtr<IXMLDOMElement> created = CreateNamedElement(PrintSchema::kOption, namePrefix + localName);
    AppendDisplayName(created.Get(), displayName);
    if (!constraint.IsEmpty())
        AppendXMLAttribute(created.Get(), kConstrainedAttribute, CXString(), KeywordsPrefix() + constraint);
    *option = created.Detach();
    return S_OK;
}

HRESULT PrintCapabilitiesXmlDocument::CreateIntegerParameterDef(const CXString& namePrefix, const CXString& localName,
                                                                const IntegerParameter& parameter,
                                                                IXMLDOMElement** parameterDef) const
{
    constexpr const WCHAR* kMethod = W("PrintCapabilitiesXmlDocument::CreateIntegerParameterDef");
    RequireDocument(kMethod);
    Check(PointerResult(parameterDef != nullptr), kMethod);
    Check(localName.IsEmpty() ? E_INVALIDARG : S_OK, kMethod);

    const DefinitionProperty properties[] = {
        {W("DataType"), PrintSchema::kQNameType, XmlSchemaPrefix() + PrintSchema::kIntegerType},
        {W("DefaultValue"), PrintSchema::kIntegerType, CXString::FromInteger(parameter.defaultValue)},
        {W("MaxValue"), PrintSchema::kIntegerType, CXString::FromInteger(parameter.maximum)},
        {W("MinValue"), PrintSchema::kIntegerType, CXString::FromInteger(parameter.minimum)},
        {W("Mandatory"), PrintSchema::kQNameType, KeywordsPrefix() + parameter.mandatory},
        {W("UnitType"), PrintSchema::kStringType, parameter.unitType},
        {W("Multiple"), PrintSchema::kIntegerType, CXString::FromInteger(1)},
    };
    ComPtr<IXMLDOMElement> created = CreateNamedElement(PrintSchema::kParameterDef, namePrefix + localName);
    for (const DefinitionProperty& property : properties)
        AppendProperty(created.Get(), PrintSchema::Framework, property.name, property.type, property.value);
    AppendDisplayName(created.Get(), parameter.displayName);
    *parameterDef = created.Detach();
    return S_OK;
}

HRESULT PrintCapabilitiesXmlDocument::CreateStringParameterDef(const CXString& namePrefix, const CXString& localName,
                                                               const StringParameter& parameter,
                                                               IXMLDOMElement** parameterDef) const
{
    constexpr const WCHAR* kMethod = W("PrintCapabilitiesXmlDocument::CreateStringParameterDef");
    RequireDocument(kMethod);
    Check(PointerResult(parameterDef != nullptr), kMethod);
    Check(localName.IsEmpty() ? E_INVALIDARG : S_OK, kMethod);

    // The default stands last here, unlike among an integer's properties; and there is never a display name.
    const DefinitionProperty properties[] = {
        {W("DataType"), PrintSchema::kQNameType, XmlSchemaPrefix() + PrintSchema::kStringType},
        {W("MaxLength"), PrintSchema::kIntegerType, CXString::FromInteger(parameter.maximumLength)},
        {W("MinLength"), PrintSchema::kIntegerType, CXString::FromInteger(0)},
        {W("Mandatory"), PrintSchema::kQNameType, KeywordsPrefix() + parameter.mandatory},
        {W("UnitType"), PrintSchema::kStringType, parameter.unitType},
        {W("DefaultValue"), PrintSchema::kStringType, parameter.defaultText},
    };
    ComPtr<IXMLDOMElement> created = CreateNamedElement(PrintSchema::kParameterDef, namePrefix + localName);
    for (const DefinitionProperty& property : properties)
        AppendProperty(created.Get(), PrintSchema::Framework, property.name, property.type, property.value);
    *parameterDef = created.Detach();
    return S_OK;
}

HRESULT PrintCapabilitiesXmlDocument::GetParameterDefNodeIfExists(const CXString& namePrefix, const CXString& localName,
                                                                  IXMLDOMNode** parameterDef) const
{
    constexpr const WCHAR* kMethod = W("PrintCapabilitiesXmlDocument::GetParameterDefNodeIfExists");
    RequireDocument(kMethod);
    Check(PointerResult(parameterDef != nullptr), kMethod);
    Check(localName.IsEmpty() ? E_INVALIDARG : S_OK, kMethod);
    PrintTicketQueryBuilder builder(FrameworkPrefix());
    builder.AddParameterDef(namePrefix, localName);
    return GetNode(QueryOf(builder), parameterDef);
}

HRESULT PrintCapabilitiesXmlDocument::DeleteParameterDefNodeIfExists(const CXString& namePrefix,
                                                                     const CXString& localName) const
{
    ComPtr<IXMLDOMNode> parameterDef;
    const HRESULT result = GetParameterDefNodeIfExists(namePrefix, localName, parameterDef.Put());
    return result == S_OK ? DeleteNode(parameterDef.Get()) : result;
}

// Runs a relative query on the node; S_FALSE when it finds nothing.
HRESULT PrintCapabilitiesXmlDocument::SelectBelow(IXMLDOMNode* node, const PrintTicketQueryBuilder& builder,
                                                  IXMLDOMNode** found, const WCHAR* method) const
{
    ComPtr<IXMLDOMNode> selected;
    const CComBSTR query = MakeBstr(QueryOf(builder), {method, kSourceFile});
    const HRESULT result = node->selectSingleNode(query.Get(), selected.Put());
    Check(result, method);
    if (result == S_OK)
        *found = selected.Detach();
    return result;
}

HRESULT PrintCapabilitiesXmlDocument::ReplaceDisplayNamePropertyValue(IXMLDOMNode* featureOrOption,
                                                                      const CXString& displayName) const
{
    constexpr const WCHAR* kMethod = W("PrintCapabilitiesXmlDocument::ReplaceDisplayNamePropertyValue");
    RequireDocument(kMethod);
    Check(PointerResult(featureOrOption != nullptr), kMethod);
    PrintTicketQueryBuilder builder(FrameworkPrefix(), PrintTicketQueryBuilder::Start::ContextNode);
    builder.AddChildPropertyValue(KeywordsPrefix(), kDisplayName);
    ComPtr<IXMLDOMNode> value;
    if (SelectBelow(featureOrOption, builder, value.Put(), kMethod) == S_FALSE)
        return kNotFound;
    Check(value->put_text(MakeBstr(displayName, {kMethod, kSourceFile}).Get()), kMethod);
    return S_OK;
}

HRESULT PrintCapabilitiesXmlDocument::ReplaceOptionDisplayNamePropertyValue(IXMLDOMNode* feature,
                                                                            const CXString& optionPrefix,
                                                                            const CXString& optionName,
                                                                            const CXString& displayName) const
{
    ComPtr<IXMLDOMNode> option;
    const HRESULT result = GetChildOptionNodeIfExists(feature, optionPrefix, optionName, option.Put());
    return result == S_OK ? ReplaceDisplayNamePropertyValue(option.Get(), displayName) : result;
}

HRESULT PrintCapabilitiesXmlDocument::GetChildOptionNodes(IXMLDOMNode* feature, IXMLDOMNodeList** options) const
{
    constexpr const WCHAR* kMethod = W("PrintCapabilitiesXmlDocument::GetChildOptionNodes");
    RequireDocument(kMethod);
    Check(PointerResult(feature != nullptr && options != nullptr), kMethod);
    const CXString query = CXString::Format(kOwnOptions, {FrameworkPrefix()});
    Check(feature->selectNodes(MakeBstr(query, {kMethod, kSourceFile}).Get(), options), kMethod);
    return S_OK;
}

HRESULT PrintCapabilitiesXmlDocument::GetChildOptionNodeIfExists(IXMLDOMNode* feature, const CXString& optionPrefix,
                                                                 const CXString& optionName, IXMLDOMNode** option) const
{
    constexpr const WCHAR* kMethod = W("PrintCapabilitiesXmlDocument::GetChildOptionNodeIfExists");
    RequireDocument(kMethod);
    Check(PointerResult(feature != nullptr && option != nullptr), kMethod);
    Check(optionName.IsEmpty() ? E_INVALIDARG : S_OK, kMethod);
    PrintTicketQueryBuilder builder(FrameworkPrefix(), PrintTicketQueryBuilder::Start::ContextNode);
    builder.AddChildOptionName(optionPrefix, optionName);
    return SelectBelow(feature, builder, option, kMethod);
}

HRESULT PrintCapabilitiesXmlDocument::GetChildScoredPropertyValueAsString(IXMLDOMNode* option,
                                                                          const CXString& scoredPropertyName,
                                                                          BSTR* value) const
{
    constexpr const WCHAR* kMethod = W("PrintCapabilitiesXmlDocument::GetChildScoredPropertyValueAsString");
    RequireDocument(kMethod);
    Check(PointerResult(option != nullptr && value != nullptr), kMethod);
    Check(scoredPropertyName.IsEmpty() ? E_INVALIDARG : S_OK, kMethod);
    PrintTicketQueryBuilder builder(FrameworkPrefix(), PrintTicketQueryBuilder::Start::ContextNode);
    builder.AddScoredProperty(KeywordsPrefix(), scoredPropertyName);
    ComPtr<IXMLDOMNode> scoredProperty;
    Check(SelectBelow(option, builder, scoredProperty.Put(), kMethod) == S_FALSE ? E_FAIL : S_OK, kMethod);
    CComBSTR text;
    ReadTypedValue(scoredProperty.Get(), text);
    Check(text.IsEmpty() ? E_FAIL : S_OK, kMethod);
    *value = text.Detach();
    return S_OK;
}
