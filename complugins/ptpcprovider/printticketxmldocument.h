// PrintTicketXmlDocument: the PrintTicket flavour of PrintSchemaXmlDocument.
//
// Reads the user's choices (feature to option, scored properties, parameter values) and writes the driver's: new
// feature/option pairs and parameter initialisers. What a deleted feature alone referenced goes with it.
//
// Results as in the base. Where a choice is read, absence is returned as HRESULT_FROM_WIN32(ERROR_NOT_FOUND), so that
// callers can tell it from a failure; failures are thrown.
#pragma once

#include "complugins/ptpcprovider/printschemaxmldocument.h"

class PrintTicketXmlDocument : public PrintSchemaXmlDocument
{
public:
    explicit PrintTicketXmlDocument(IXMLDOMDocument2* document);
    ~PrintTicketXmlDocument() override;

    // --- Reading

    // The chosen option of a public feature, from its Option element or its "OptionName" scored property: "psk:ISOA4"
    // gives "ISOA4" and "psk:". A name without a prefix is E_FAIL.
    HRESULT GetFeatureOption(const CXString& featureName, BSTR* optionName, BSTR* optionPrefix) const;
    // In and out, as GetNodeValue.
    HRESULT GetScoredPropertyValue(const CXString& featureName, const CXString& scoredPropertyName, BSTR* value) const;
    // As _wtoi reads the text: no leading number is 0.
    HRESULT GetScoredPropertyValue(const CXString& featureName, const CXString& scoredPropertyName, ULONG* value) const;
    HRESULT GetParameterInitNodeIfExists(const CXString& namePrefix, const CXString& localName,
                                         IXMLDOMNode** parameterInit) const;
    // The Value element of the initialiser.
    HRESULT GetParameterInitValueNodeIfExists(const CXString& namePrefix, const CXString& localName,
                                              IXMLDOMNode** value) const;

    // --- Creating, detached. The namespace index is accepted and ignored, on purpose: features are public keywords.

    HRESULT CreateFeatureOptionPair(ULONG namespaceIndex, const CXString& featureName, IXMLDOMElement** feature,
                                    IXMLDOMElement** option) const;
    HRESULT CreateFeatureOptionPair(ULONG namespaceIndex, const CXString& featureName, bool optionIsPublic,
                                    const CXString& optionName, IXMLDOMElement** feature,
                                    IXMLDOMElement** option) const;
    HRESULT CreateStringParameterInit(const CXString& namePrefix, const CXString& localName, const CXString& value,
                                      IXMLDOMElement** parameterInit) const;
    // Unsigned decimal ("%u"), unlike the signed integers of scored properties: sizes and counts.
    HRESULT CreateIntegerParameterInit(const CXString& namePrefix, const CXString& localName, ULONG value,
                                       IXMLDOMElement** parameterInit) const;
    // As the last child of the root.
    HRESULT AppendIntegerParameterInit(const CXString& namePrefix, const CXString& localName, ULONG value) const;

    // --- Deleting. A deletion that fails part way leaves the nodes already deleted deleted.

    HRESULT DeleteParameterInitNodeIfExists(const CXString& namePrefix, const CXString& localName) const;
    // Also deletes every initialiser of the ticket that no remaining reference names, on purpose: not only those that
    // the deleted feature referenced.
    HRESULT DeleteFeatureAndOrphanParameterInitsIfExists(const CXString& namePrefix, const CXString& localName) const;
    HRESULT DeleteParamInitOrphans(IXMLDOMNodeList* parameterRefs, IXMLDOMNodeList* parameterInits) const;
    HRESULT DeleteNodeList(IXMLDOMNodeList* nodes) const;

private:
    HRESULT CreateParameterInit(const CXString& namePrefix, const CXString& localName, const WCHAR* typeName,
                                const CXString& value, IXMLDOMElement** parameterInit) const;
};
