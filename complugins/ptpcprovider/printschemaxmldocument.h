// PrintSchemaXmlDocument: the wrapper over a DOM document that holds a PrintTicket or a PrintCapabilities document.
//
// It sets the document up for XPath, finds the prefixes that the document itself declares, normalises the private one
// to "tk:", and offers small, strict operations to find, create, append and delete Print Schema elements.
//
// Lifetime: the wrapper holds one reference to the document, which the caller may keep and use beside it. Nodes and
// strings that are handed out belong to the caller. One thread at a time.
//
// Results: S_OK; S_FALSE for absence, with the output left as it was. Every failure of the DOM, a null output
// (E_POINTER) or an empty name or attribute value (E_INVALIDARG) is thrown as TavlenComException with an empty message;
// only a string of our own that finds no memory is std::bad_alloc. A wrapper of a null document is empty: every
// operation throws E_POINTER.
//
// Names in "name" attributes are compared as text, spelled with the root's prefixes. A prefix that an inner element
// binds anew still counts as the root's here: no DOM tells what is bound at an element at a price that a hostile
// document could not drive up. The host refuses such a document.
//
// New elements are created detached and appended last, so no failure leaves a half-built element in the document.
#pragma once

#include <windows.h>

#include <tvutil/cxstring.h>
#include <tvutil/tavlencomexception.h>

#include "complugins/ptpcprovider/printschemanamespaces.h"
#include "complugins/ptpcprovider/printticketquerybuilder.h"
#include "utilitiesstaticlib/ccombstr.h"
#include "utilitiesstaticlib/comptr.h"
#include "utilitiesstaticlib/domiids.h"

class PrintSchemaXmlDocument
{
public:
    // HRESULT_FROM_WIN32(ERROR_NOT_FOUND): absence, where callers must be able to tell it from every other result.
    static constexpr HRESULT kNotFound = static_cast<HRESULT>(0x80070490u);

    // Throws S_FALSE when the document has no root element of that name in the framework namespace.
    PrintSchemaXmlDocument(const CXString& rootElementName, IXMLDOMDocument2* document);
    virtual ~PrintSchemaXmlDocument();
    PrintSchemaXmlDocument(const PrintSchemaXmlDocument&) = delete;
    PrintSchemaXmlDocument& operator=(const PrintSchemaXmlDocument&) = delete;

    // --- Prefixes, with their colon; empty when the root element does not declare the namespace.

    // By PrintSchema::MsPrintTicketNamespacesEnum; any other index throws E_INVALIDARG.
    [[nodiscard]] CXString GetNsPrefix(ULONG namespaceIndex) const;
    // Searches the root element's own declarations. A default declaration is E_FAIL.
    HRESULT GetPrefixFromURI(const CXString& namespaceUri, BSTR* prefix) const;

    // --- Finding

    HRESULT GetNode(const CXString& query, IXMLDOMNode** node) const;
    // Every element of that local name in the framework namespace, in document order.
    HRESULT GetNodes(const CXString& elementName, IXMLDOMNodeList** nodes) const;
    HRESULT GetFeatureNodeIfExists(const CXString& namePrefix, const CXString& localName, IXMLDOMNode** feature) const;
    // Absence is E_FAIL.
    HRESULT GetFeatureNode(const CXString& namePrefix, const CXString& localName, IXMLDOMNode** feature) const;

    // --- Reading

    // The Value child of the element that the query finds, or the initialiser that its ParameterRef child names. An
    // empty value is S_OK with a null string. In and out: what `value` holds, null or a string, is freed first.
    HRESULT GetNodeValue(const CXString& query, BSTR* value) const;
    HRESULT GetAttributeValue(IXMLDOMNode* node, const CXString& attributeName, BSTR* value) const;

    // --- Deleting

    HRESULT DeleteNode(IXMLDOMNode* node) const; // a node without parent is S_FALSE
    HRESULT DeleteFeatureNodeIfExists(const CXString& namePrefix, const CXString& localName) const;
    // Of two or more features of the name, only the first in document order goes.
    HRESULT DeleteFeatureNodeIfADuplicateExists(const CXString& namePrefix, const CXString& localName) const;
    HRESULT DeletePropertyNodesIfExist(const CXString& namePrefix, const CXString& localName) const;

    // --- Appending. A node that the document does not take is the failure of `site`; without one, of AppendChild.

    HRESULT AppendChildToRootNode(IXMLDOMNode* node, const ThrowSite* site = nullptr) const;
    HRESULT AppendChild(IXMLDOMNode* parent, IXMLDOMNode* child, const ThrowSite* site = nullptr) const;

    // --- Creating. "Full" names are prefixed already; types are names of XML Schema ("integer").

    HRESULT CreateXMLElement(const CXString& qualifiedName, IXMLDOMElement** element) const;
    HRESULT AppendXMLAttribute(IXMLDOMElement* element, const CXString& qualifiedName, const CXString& namespaceUri,
                               const CXString& value) const;
    HRESULT CreateProperty(ULONG namespaceIndex, const CXString& localName, IXMLDOMElement** property) const;
    HRESULT CreateProperty(ULONG namespaceIndex, const CXString& localName, const CXString& typeName,
                           const CXString& value, IXMLDOMElement** property) const;
    HRESULT CreateScoredProperty(const CXString& fullName, IXMLDOMElement** scoredProperty) const;
    HRESULT CreateScoredProperty(const CXString& fullName, const CXString& typeName, const CXString& value,
                                 IXMLDOMElement** scoredProperty) const;
    HRESULT CreateIntegerScoredProperty(const CXString& fullName, LONG value, IXMLDOMElement** scoredProperty) const;
    HRESULT CreateParameterRef(const CXString& parameterName, IXMLDOMElement** parameterRef) const;
    HRESULT CreateParameterRefScoredProperty(const CXString& scoredPropertyName, const CXString& parameterName,
                                             IXMLDOMElement** scoredProperty) const;

    // The index is accepted and ignored, on purpose: the property is always a public keyword.
    HRESULT AppendChildIntegerProperty(IXMLDOMNode* parent, ULONG namespaceIndex, const CXString& localName,
                                       LONG value) const;
    HRESULT AppendChildIntegerScoredProperty(IXMLDOMNode* parent, const CXString& fullName, LONG value) const;
    HRESULT AppendChildQNameScoredProperty(IXMLDOMNode* parent, const CXString& fullName,
                                           const CXString& qualifiedValue) const;
    HRESULT AppendChildParameterRefScoredProperty(IXMLDOMNode* parent, const CXString& scoredPropertyName,
                                                  const CXString& parameterName, IXMLDOMElement** scoredProperty) const;

    // The document as it was given; null for an empty wrapper. Borrowed.
    [[nodiscard]] IXMLDOMDocument2* GetDocument() const noexcept;

protected:
    // In these, the site and the `method` are the operation's that asks, as failures name it.

    // What every operation asks first: an empty wrapper and a missing pointer are E_POINTER, an empty text that must
    // not be is E_INVALIDARG.
    void Require(ThrowSite site, bool pointersGiven = true, bool textsGiven = true) const
    {
        if (!m_document || !pointersGiven)
            ThrowComException(E_POINTER, site);
        if (!textsGiven)
            ThrowComException(E_INVALIDARG, site);
    }

    // The first element that a fragment of the query builder finds in the document; the local name must not be empty.
    using NamedFragment = void (PrintTicketQueryBuilder::*)(const CXString& namePrefix, const CXString& localName);
    HRESULT FindNamed(NamedFragment fragment, const CXString& namePrefix, const CXString& localName, IXMLDOMNode** node,
                      ThrowSite site) const;

    HRESULT SelectNodes(const CXString& query, IXMLDOMNodeList** nodes, const WCHAR* method) const;
    // A typed value or, failing that, the text: empty is a null string.
    void ReadTypedValue(IXMLDOMNode* node, CComBSTR& value) const;
    // That of the element's Value child or, failing that, its own: a document that keeps its blanks has some around the
    // child.
    void ReadContentValue(IXMLDOMNode* element, CComBSTR& value) const;
    // An element of the framework namespace with its name attribute.
    ComPtr<IXMLDOMElement> CreateNamedElement(const CXString& elementName, const CXString& name) const;
    // Adds a Value child with its xsi:type.
    void AppendTypedValue(IXMLDOMElement* parent, const CXString& typeName, const CXString& value) const;

    [[nodiscard]] const CXString& FrameworkPrefix() const noexcept;
    [[nodiscard]] const CXString& KeywordsPrefix() const noexcept;
    [[nodiscard]] const CXString& PrivateKeywordsPrefix() const noexcept;
    [[nodiscard]] const CXString& XmlSchemaPrefix() const noexcept;

private:
    void SetDocumentProperty(const WCHAR* name, const CXString& value) const;
    void SelectFrameworkNamespaceAs(const CXString& prefix) const;
    void FindRootNode();
    void FindPrefixes();
    void FindPrefix(const WCHAR* namespaceUri, CXString& prefix) const;
    void FindPrivateKeywordsPrefix();
    HRESULT NormalisePrivateKeywordsPrefix(const CXString& foundPrefix);
    void RenamePrefixInNames(const CXString& foundPrefix) const;
    void ReplacePrivateDeclaration(const CXString& foundPrefix) const;
    HRESULT FindRootDeclaration(const CXString& declaration, BSTR* namespaceUri) const;
    HRESULT GetInitialiserValue(IXMLDOMNode* parameterRef, CComBSTR& value) const;
    HRESULT SelectChild(IXMLDOMNode* node, const CXString& elementName, IXMLDOMNode** child, const WCHAR* method) const;
    void CreateNode(DOMNodeType type, const CXString& name, const CXString& namespaceUri, IXMLDOMNode** node,
                    const WCHAR* method) const;

    ComPtr<IXMLDOMDocument2> m_document;
    CXString m_rootElementName;
    CXString m_xmlSchemaPrefix;
    CXString m_xmlSchemaInstancePrefix;
    CXString m_frameworkPrefix;
    CXString m_keywordsPrefix;
    CXString m_privateKeywordsPrefix;
    ComPtr<IXMLDOMNode> m_rootNode;
};
