// PrintCapabilitiesXmlDocument: the PrintCapabilities flavour of PrintSchemaXmlDocument.
//
// Builds the features, options and parameter definitions with which the provider completes a PrintCapabilities
// document, with the child properties that the Print Schema requires, and replaces display names.
//
// Results as in the base; a display name that is not there is returned as HRESULT_FROM_WIN32(ERROR_NOT_FOUND). New
// elements are handed out detached; when a step fails, nothing is.
#pragma once

#include <initializer_list>

#include "complugins/ptpcprovider/printschemaxmldocument.h"

class PrintCapabilitiesXmlDocument : public PrintSchemaXmlDocument
{
public:
    explicit PrintCapabilitiesXmlDocument(IXMLDOMDocument2* document);
    ~PrintCapabilitiesXmlDocument() override;

    // --- Features and options. An empty display name or constraint is left out.

    HRESULT CreateFeature(const CXString& featureName, const CXString& displayName, IXMLDOMElement** feature) const;
    HRESULT CreatePickOneFeature(const CXString& featureName, const CXString& displayName,
                                 IXMLDOMElement** feature) const;
    // The constraint is a public keyword: "PrintTicketSettings".
    HRESULT CreateOption(const CXString& namePrefix, const CXString& localName, const CXString& displayName,
                         const CXString& constraint, IXMLDOMElement** option) const;

    // --- Parameter definitions; the properties stand in a fixed order, each builder's own.

    struct IntegerParameter
    {
        CXString mandatory; // a public keyword: "Unconditional"
        CXString displayName;
        LONG defaultValue;
        LONG minimum;
        LONG maximum;
        LONG multiple; // accepted and not used, on purpose: always written as 1
        CXString unitType;
    };

    struct StringParameter
    {
        CXString mandatory;
        CXString displayName; // accepted and never written, on purpose
        CXString defaultText;
        LONG minimumLength; // accepted and not used, on purpose: a string may always be empty
        LONG maximumLength;
        CXString unitType;
    };

    HRESULT CreateIntegerParameterDef(const CXString& namePrefix, const CXString& localName,
                                      const IntegerParameter& parameter, IXMLDOMElement** parameterDef) const;
    HRESULT CreateStringParameterDef(const CXString& namePrefix, const CXString& localName,
                                     const StringParameter& parameter, IXMLDOMElement** parameterDef) const;
    HRESULT GetParameterDefNodeIfExists(const CXString& namePrefix, const CXString& localName,
                                        IXMLDOMNode** parameterDef) const;
    HRESULT DeleteParameterDefNodeIfExists(const CXString& namePrefix, const CXString& localName) const;

    // --- Display names

    HRESULT ReplaceDisplayNamePropertyValue(IXMLDOMNode* featureOrOption, const CXString& displayName) const;
    HRESULT ReplaceOptionDisplayNamePropertyValue(IXMLDOMNode* feature, const CXString& optionPrefix,
                                                  const CXString& optionName, const CXString& displayName) const;

    // --- Options of a feature

    // The feature's own, in document order.
    HRESULT GetChildOptionNodes(IXMLDOMNode* feature, IXMLDOMNodeList** options) const;
    HRESULT GetChildOptionNodeIfExists(IXMLDOMNode* feature, const CXString& optionPrefix, const CXString& optionName,
                                       IXMLDOMNode** option) const;
    // At any depth below the option; a missing property and an empty value are both E_FAIL.
    HRESULT GetChildScoredPropertyValueAsString(IXMLDOMNode* option, const CXString& scoredPropertyName,
                                                BSTR* value) const;

private:
    struct DefinitionProperty;

    // Detached, with these properties in this order.
    ComPtr<IXMLDOMElement> CreateParameterDef(const CXString& name,
                                              std::initializer_list<DefinitionProperty> properties) const;
    void AppendProperty(IXMLDOMElement* parent, ULONG namespaceIndex, const CXString& localName,
                        const CXString& typeName, const CXString& value) const;
    void AppendDisplayName(IXMLDOMElement* parent, const CXString& displayName) const;
    HRESULT SelectBelow(IXMLDOMNode* node, const PrintTicketQueryBuilder& builder, IXMLDOMNode** found,
                        const WCHAR* method) const;
};
