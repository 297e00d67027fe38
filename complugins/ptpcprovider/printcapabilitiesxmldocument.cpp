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

} // namespace

// One property of a parameter definition, in the framework namespace.
struct PrintCapabilitiesXmlDocument::DefinitionProperty
{
    const WCHAR* name;
    const WCHAR* type;
    CXString value;
};

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
    Require({kMethod, kSourceFile}, feature != nullptr, !featureName.IsEmpty());
    ComPtr<IXMLDOMElement> created = CreateNamedElement(PrintSchema::kFeature, KeywordsPrefix() + featureName);
    AppendDisplayName(created.Get(), displayName);
    *feature = created.Detach();
    return S_OK;
}

HRESULT PrintCapabilitiesXmlDocument::CreatePickOneFeature(const CXString& featureName, const CXString& displayName,
                                                           IXMLDOMElement** feature) const
{
    constexpr const WCHAR* kMethod = W("PrintCapabilitiesXmlDocument::CreatePickOneFeature");
    Require({kMethod, kSourceFile}, feature != nullptr);
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
    Require({kMethod, kSourceFile}, option != nullptr, !localName.IsEmpty());
    ComPtr<IXMLDOMElement> created = CreateNamedElement(PrintSchema::kOption, namePrefix + localName);
    AppendDisplayName(created.Get(), displayName);
    if (!constraint.IsEmpty())
        AppendXMLAttribute(created.Get(), kConstrainedAttribute, CXString(), KeywordsPrefix() + constraint);
    *option = created.Detach();
    return S_OK;
}

ComPtr<IXMLDOMElement>
PrintCapabilitiesXmlDocument::CreateParameterDef(const CXString& name,
                                                 std::initializer_list<DefinitionProperty> properties) const
{
    ComPtr<IXMLDOMElement> created = CreateNamedElement(PrintSchema::kParameterDef, name);
    for (const DefinitionProperty& property : properties)
        AppendProperty(created.Get(), PrintSchema::Framework, property.name, property.type, property.value);
    return created;
}

HRESULT PrintCapabilitiesXmlDocument::CreateIntegerParameterDef(const CXString& namePrefix, const CXString& localName,
                                                                const IntegerParameter& parameter,
                                                                IXMLDOMElement** parameterDef) const
{
    constexpr const WCHAR* kMethod = W("PrintCapabilitiesXmlDocument::CreateIntegerParameterDef");
    Require({kMethod, kSourceFile}, parameterDef != nullptr, !localName.IsEmpty());
    ComPtr<IXMLDOMElement> created = CreateParameterDef(
        namePrefix + localName,
        {
            {W("DataType"), PrintSchema::kQNameType, XmlSchemaPrefix() + PrintSchema::kIntegerType},
            {W("DefaultValue"), PrintSchema::kIntegerType, CXString::FromInteger(parameter.defaultValue)},
            {W("MaxValue"), PrintSchema::kIntegerType, CXString::FromInteger(parameter.maximum)},
            {W("MinValue"), PrintSchema::kIntegerType, CXString::FromInteger(parameter.minimum)},
            {W("Mandatory"), PrintSchema::kQNameType, KeywordsPrefix() + parameter.mandatory},
            {W("UnitType"), PrintSchema::kStringType, parameter.unitType},
            {W("Multiple"), PrintSchema::kIntegerType, CXString::FromInteger(1)},
        });
    AppendDisplayName(created.Get(), parameter.displayName);
    *parameterDef = created.Detach();
    return S_OK;
}

HRESULT PrintCapabilitiesXmlDocument::CreateStringParameterDef(const CXString& namePrefix, const CXString& localName,
                                                               const StringParameter& parameter,
                                                               IXMLDOMElement** parameterDef) const
{
    constexpr const WCHAR* kMethod = W("PrintCapabilitiesXmlDocument::CreateStringParameterDef");
    Require({kMethod, kSourceFile}, parameterDef != nullptr, !localName.IsEmpty());
    // The default stands last here, unlike among an integer's properties; and there is never a display name.
    ComPtr<IXMLDOMElement> created = CreateParameterDef(
        namePrefix + localName,
        {
            {W("DataType"), PrintSchema::kQNameType, XmlSchemaPrefix() + PrintSchema::kStringType},
            {W("MaxLength"), PrintSchema::kIntegerType, CXString::FromInteger(parameter.maximumLength)},
            {W("MinLength"), PrintSchema::kIntegerType, CXString::FromInteger(0)},
            {W("Mandatory"), PrintSchema::kQNameType, KeywordsPrefix() + parameter.mandatory},
            {W("UnitType"), PrintSchema::kStringType, parameter.unitType},
            {W("DefaultValue"), PrintSchema::kStringType, parameter.defaultText},
        });
    *parameterDef = created.Detach();
    return S_OK;
}

HRESULT PrintCapabilitiesXmlDocument::GetParameterDefNodeIfExists(const CXString& namePrefix, const CXString& localName,
                                                                  IXMLDOMNode** parameterDef) const
{
    return FindNamed(&PrintTicketQueryBuilder::AddParameterDef, namePrefix, localName, parameterDef,
                     {W("PrintCapabilitiesXmlDocument::GetParameterDefNodeIfExists"), kSourceFile});
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
    Require({kMethod, kSourceFile}, featureOrOption != nullptr);
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
    Require({kMethod, kSourceFile}, feature != nullptr && options != nullptr);
    const CXString query = CXString::Format(kOwnOptions, {FrameworkPrefix()});
    Check(feature->selectNodes(MakeBstr(query, {kMethod, kSourceFile}).Get(), options), kMethod);
    return S_OK;
}

HRESULT PrintCapabilitiesXmlDocument::GetChildOptionNodeIfExists(IXMLDOMNode* feature, const CXString& optionPrefix,
                                                                 const CXString& optionName, IXMLDOMNode** option) const
{
    constexpr const WCHAR* kMethod = W("PrintCapabilitiesXmlDocument::GetChildOptionNodeIfExists");
    Require({kMethod, kSourceFile}, feature != nullptr && option != nullptr, !optionName.IsEmpty());
    PrintTicketQueryBuilder builder(FrameworkPrefix(), PrintTicketQueryBuilder::Start::ContextNode);
    builder.AddChildOptionName(optionPrefix, optionName);
    return SelectBelow(feature, builder, option, kMethod);
}

HRESULT PrintCapabilitiesXmlDocument::GetChildScoredPropertyValueAsString(IXMLDOMNode* option,
                                                                          const CXString& scoredPropertyName,
                                                                          BSTR* value) const
{
    constexpr const WCHAR* kMethod = W("PrintCapabilitiesXmlDocument::GetChildScoredPropertyValueAsString");
    Require({kMethod, kSourceFile}, option != nullptr && value != nullptr, !scoredPropertyName.IsEmpty());
    PrintTicketQueryBuilder builder(FrameworkPrefix(), PrintTicketQueryBuilder::Start::ContextNode);
    builder.AddScoredProperty(KeywordsPrefix(), scoredPropertyName);
    ComPtr<IXMLDOMNode> scoredProperty;
    Check(SelectBelow(option, builder, scoredProperty.Put(), kMethod) == S_FALSE ? E_FAIL : S_OK, kMethod);
    CComBSTR text;
    ReadContentValue(scoredProperty.Get(), text);
    Check(text.IsEmpty() ? E_FAIL : S_OK, kMethod);
    *value = text.Detach();
    return S_OK;
}
