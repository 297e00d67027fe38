// Construction, prefixes, finding, reading and deleting. Creating: printschemaxmldocumentcreate.cpp.
#include "complugins/ptpcprovider/printschemaxmldocument.h"

#include <tvutil/tavlencomexception.h>

#include <utility>

#include "complugins/ptpcprovider/domhelpers.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\ptpcprovider\\printschemaxmldocument");
constexpr WStringView kDeclarationStart = W("xmlns:");

constexpr WStringView kSelectionNamespaces = W("xmlns:%s='%s'");
constexpr WStringView kEveryElementOfAName = W("//%s%s");
constexpr WStringView kEveryNamedElement = W("//*[@name]");

constexpr FailureCheck Check(kSourceFile);

CXString WithoutColon(const CXString& prefix)
{
    return prefix.Mid(0, prefix.Find(W(":")));
}

// The attribute that declares the prefix: "xmlns:tk" of "tk:".
CXString DeclarationOf(const CXString& prefix)
{
    return CXString(kDeclarationStart) + WithoutColon(prefix);
}

} // namespace

static_assert(PrintSchemaXmlDocument::kNotFound == HRESULT_FROM_WIN32(ERROR_NOT_FOUND));

PrintSchemaXmlDocument::PrintSchemaXmlDocument(const CXString& rootElementName, IXMLDOMDocument2* document)
    : m_document(document), m_rootElementName(rootElementName)
{
    if (!m_document)
        return;
    SetDocumentProperty(W("SelectionLanguage"), W("XPath"));
    SelectFrameworkNamespaceAs(PrintSchema::kProvisionalFrameworkPrefix);
    FindRootNode();
    FindPrivateKeywordsPrefix();
    FindPrefixes();
}

PrintSchemaXmlDocument::~PrintSchemaXmlDocument() = default;

void PrintSchemaXmlDocument::SetDocumentProperty(const WCHAR* name, const CXString& value) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::PrintSchemaXmlDocument");
    const CComBSTR text = MakeBstr(value, {kMethod, kSourceFile});
    Check(m_document->setProperty(MakeBstr(name, {kMethod, kSourceFile}).Get(), BorrowAsVariant(text)), kMethod);
}

// Only the framework namespace is registered for selection: queries name no other by prefix, they compare the text of
// "name" attributes.
void PrintSchemaXmlDocument::SelectFrameworkNamespaceAs(const CXString& prefix) const
{
    SetDocumentProperty(W("SelectionNamespaces"),
                        CXString::Format(kSelectionNamespaces, {prefix, PrintSchema::kFrameworkUri}));
}

void PrintSchemaXmlDocument::FindRootNode()
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::PrintSchemaXmlDocument");
    const CXString query =
        CXString::Format(W("//%s:%s"), {PrintSchema::kProvisionalFrameworkPrefix, m_rootElementName});
    // The code of absence itself is thrown: a caller that asks FAILED() would take it for success.
    if (GetNode(query, m_rootNode.Put()) == S_FALSE)
        ThrowComException(S_FALSE, {kMethod, kSourceFile});
}

void PrintSchemaXmlDocument::FindPrefixes()
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::PrintSchemaXmlDocument");
    FindPrefix(PrintSchema::kFrameworkUri, m_frameworkPrefix);
    FindPrefix(PrintSchema::kKeywordsUri, m_keywordsPrefix);
    FindPrefix(PrintSchema::kXmlSchemaInstanceUri, m_xmlSchemaInstancePrefix);
    FindPrefix(PrintSchema::kXmlSchemaUri, m_xmlSchemaPrefix);

    // From here on every query is written with the document's own framework prefix.
    const CXString prefix = WithoutColon(m_frameworkPrefix);
    if (prefix.IsEmpty())
        ThrowComException(E_FAIL, {kMethod, kSourceFile});
    SelectFrameworkNamespaceAs(prefix);
}

// A namespace that the root does not declare leaves its prefix empty.
void PrintSchemaXmlDocument::FindPrefix(const WCHAR* namespaceUri, CXString& prefix) const
{
    CComBSTR found;
    if (GetPrefixFromURI(namespaceUri, found.Put()) == S_OK)
        prefix = found;
}

void PrintSchemaXmlDocument::FindPrivateKeywordsPrefix()
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::PrintSchemaXmlDocument");
    CComBSTR found;
    if (GetPrefixFromURI(PrintSchema::kPrivateKeywordsUri, found.Put()) == S_OK)
        Check(NormalisePrivateKeywordsPrefix(found), kMethod);
    else
        m_privateKeywordsPrefix = PrintSchema::kUndeclaredPrivatePrefix;
}

// After this every private keyword in a "name" attribute is spelled with "tk:", so that the rest of the module may
// build and compare private names with that prefix. Qualified names in text are left alone.
HRESULT PrintSchemaXmlDocument::NormalisePrivateKeywordsPrefix(const CXString& foundPrefix)
{
    if (foundPrefix != PrintSchema::kPrivatePrefix)
    {
        try
        {
            // A root that binds "tk" to something else cannot be normalised; it is refused before it is changed.
            CComBSTR boundTo;
            if (FindRootDeclaration(DeclarationOf(PrintSchema::kPrivatePrefix), boundTo.Put()) == S_OK &&
                CXString(boundTo) != PrintSchema::kPrivateKeywordsUri)
                return E_FAIL;
            RenamePrefixInNames(foundPrefix);
            ReplacePrivateDeclaration(foundPrefix);
        }
        catch (const TavlenComException& failure)
        {
            return failure.GetHresult();
        }
    }
    m_privateKeywordsPrefix = PrintSchema::kPrivatePrefix;
    return S_OK;
}

void PrintSchemaXmlDocument::RenamePrefixInNames(const CXString& foundPrefix) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::RenamePrefixInNames");
    ComPtr<IXMLDOMNodeList> elements;
    Check(m_rootNode->selectNodes(MakeBstr(kEveryNamedElement, {kMethod, kSourceFile}).Get(), elements.Put()), kMethod);
    for (const ComPtr<IXMLDOMNode>& element : NodesOf(elements.Get(), {kMethod, kSourceFile}))
    {
        ComPtr<IXMLDOMNode> attribute;
        if (FindAttribute(element.Get(), PrintSchema::kNameAttribute, attribute, {kMethod, kSourceFile}) != S_OK)
            continue;
        CComBSTR text;
        Check(attribute->get_text(text.Put()), kMethod);
        CXString name(text);
        if (!name.StartsWith(foundPrefix))
            continue;
        name.ReplaceAll(foundPrefix, PrintSchema::kPrivatePrefix); // every occurrence, on purpose
        Check(attribute->put_text(MakeBstr(name, {kMethod, kSourceFile}).Get()), kMethod);
    }
}

void PrintSchemaXmlDocument::ReplacePrivateDeclaration(const CXString& foundPrefix) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::ReplacePrivateDeclaration");
    const CXString oldDeclaration = DeclarationOf(foundPrefix);
    const CXString newDeclaration = DeclarationOf(PrintSchema::kPrivatePrefix);

    // A document that has been through here before may still declare both: some DOMs cannot remove a declaration.
    CComBSTR alreadyBound;
    if (FindRootDeclaration(newDeclaration, alreadyBound.Put()) != S_OK)
    {
        CComBSTR namespaceUri;
        FindRootDeclaration(oldDeclaration, namespaceUri.Put());
        ComPtr<IXMLDOMElement> root;
        Check(m_rootNode.As(root), kMethod);
        AppendXMLAttribute(root.Get(), newDeclaration, CXString(), namespaceUri);
    }
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    Check(m_rootNode->get_attributes(attributes.Put()), kMethod);
    ComPtr<IXMLDOMNode> removed;
    Check(attributes->removeNamedItem(MakeBstr(oldDeclaration, {kMethod, kSourceFile}).Get(), removed.Put()), kMethod);
}

// The URI to which the root element binds the prefix; S_FALSE when it does not. Not every DOM finds a declaration by
// its name, but every one lists it.
HRESULT PrintSchemaXmlDocument::FindRootDeclaration(const CXString& declaration, BSTR* namespaceUri) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::FindRootDeclaration");
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    Check(m_rootNode->get_attributes(attributes.Put()), kMethod);
    for (const ComPtr<IXMLDOMNode>& attribute : NodesOf(attributes.Get(), {kMethod, kSourceFile}))
    {
        CComBSTR name;
        Check(attribute->get_nodeName(name.Put()), kMethod);
        if (name.View() != declaration.View())
            continue;
        Check(attribute->get_text(namespaceUri), kMethod);
        return S_OK;
    }
    return S_FALSE;
}

CXString PrintSchemaXmlDocument::GetNsPrefix(ULONG namespaceIndex) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::GetNsPrefix");
    Require({kMethod, kSourceFile});
    switch (namespaceIndex)
    {
    case PrintSchema::Framework:
        return m_frameworkPrefix;
    case PrintSchema::Keywords:
        return m_keywordsPrefix;
    case PrintSchema::PrivateKeywords:
        return m_privateKeywordsPrefix;
    default:
        ThrowComException(E_INVALIDARG, {kMethod, kSourceFile});
    }
}

HRESULT PrintSchemaXmlDocument::GetPrefixFromURI(const CXString& namespaceUri, BSTR* prefix) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::GetPrefixFromURI");
    Require({kMethod, kSourceFile}, prefix != nullptr, !namespaceUri.IsEmpty());

    ComPtr<IXMLDOMNamedNodeMap> attributes;
    Check(m_rootNode->get_attributes(attributes.Put()), kMethod);
    for (const ComPtr<IXMLDOMNode>& attribute : NodesOf(attributes.Get(), {kMethod, kSourceFile}))
    {
        CComBSTR value;
        Check(attribute->get_text(value.Put()), kMethod);
        if (value.View() != namespaceUri.View())
            continue;
        // The first attribute of that value decides, so a default declaration before a prefixed one fails.
        CComBSTR name;
        Check(attribute->get_nodeName(name.Put()), kMethod);
        const CXString declaration(name);
        Check(declaration.StartsWith(kDeclarationStart) ? S_OK : E_FAIL, kMethod);
        const CXString found = declaration.Mid(kDeclarationStart.size());
        Check(found.IsEmpty() ? E_FAIL : S_OK, kMethod);
        *prefix = MakeBstr(found + W(":"), {kMethod, kSourceFile}).Detach();
        return S_OK;
    }
    return S_FALSE;
}

HRESULT PrintSchemaXmlDocument::GetNode(const CXString& query, IXMLDOMNode** node) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::GetNode");
    Require({kMethod, kSourceFile}, node != nullptr, !query.IsEmpty());
    ComPtr<IXMLDOMNode> found;
    const HRESULT result = m_document->selectSingleNode(MakeBstr(query, {kMethod, kSourceFile}).Get(), found.Put());
    Check(result, kMethod);
    if (result == S_OK)
        *node = found.Detach();
    return result;
}

HRESULT PrintSchemaXmlDocument::SelectNodes(const CXString& query, IXMLDOMNodeList** nodes, const WCHAR* method) const
{
    Check(m_document->selectNodes(MakeBstr(query, {method, kSourceFile}).Get(), nodes), method);
    return S_OK;
}

HRESULT PrintSchemaXmlDocument::GetNodes(const CXString& elementName, IXMLDOMNodeList** nodes) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::GetNodes");
    Require({kMethod, kSourceFile}, nodes != nullptr);
    Check(elementName.IsEmpty() ? E_FAIL : S_OK, kMethod);
    return SelectNodes(CXString::Format(kEveryElementOfAName, {m_frameworkPrefix, elementName}), nodes, kMethod);
}

HRESULT PrintSchemaXmlDocument::FindNamed(NamedFragment fragment, const CXString& namePrefix, const CXString& localName,
                                          IXMLDOMNode** node, ThrowSite site) const
{
    Require(site, node != nullptr, !localName.IsEmpty());
    PrintTicketQueryBuilder builder(m_frameworkPrefix);
    (builder.*fragment)(namePrefix, localName);
    return GetNode(QueryOf(builder), node);
}

HRESULT PrintSchemaXmlDocument::GetFeatureNodeIfExists(const CXString& namePrefix, const CXString& localName,
                                                       IXMLDOMNode** feature) const
{
    return FindNamed(&PrintTicketQueryBuilder::AddFeature, namePrefix, localName, feature,
                     {W("PrintSchemaXmlDocument::GetFeatureNodeIfExists"), kSourceFile});
}

HRESULT PrintSchemaXmlDocument::GetFeatureNode(const CXString& namePrefix, const CXString& localName,
                                               IXMLDOMNode** feature) const
{
    const HRESULT result = GetFeatureNodeIfExists(namePrefix, localName, feature);
    Check(result == S_FALSE ? E_FAIL : result, W("PrintSchemaXmlDocument::GetFeatureNode"));
    return result;
}

HRESULT PrintSchemaXmlDocument::GetNodeValue(const CXString& query, BSTR* value) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::GetNodeValue");
    Require({kMethod, kSourceFile}, value != nullptr);
    SysFreeString(std::exchange(*value, nullptr));
    Check(query.IsEmpty() ? E_INVALIDARG : S_OK, kMethod);

    ComPtr<IXMLDOMNode> node;
    if (GetNode(query, node.Put()) == S_FALSE)
        return S_FALSE;
    CComBSTR text;
    ComPtr<IXMLDOMNode> child;
    if (SelectChild(node.Get(), PrintSchema::kValue, child.Put(), kMethod) == S_OK)
        ReadTypedValue(child.Get(), text);
    else if (SelectChild(node.Get(), PrintSchema::kParameterRef, child.Put(), kMethod) == S_OK)
        GetInitialiserValue(child.Get(), text);
    if (!text.IsEmpty())
        *value = text.Detach();
    return S_OK;
}

// The first initialiser in document order whose name is the reference's.
HRESULT PrintSchemaXmlDocument::GetInitialiserValue(IXMLDOMNode* parameterRef, CComBSTR& value) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::GetNodeValue");
    CComBSTR wanted;
    if (GetAttributeValue(parameterRef, PrintSchema::kNameAttribute, wanted.Put()) != S_OK)
        return S_FALSE;
    ComPtr<IXMLDOMNodeList> initialisers;
    GetNodes(PrintSchema::kParameterInit, initialisers.Put());
    for (const ComPtr<IXMLDOMNode>& initialiser : NodesOf(initialisers.Get(), {kMethod, kSourceFile}))
    {
        CComBSTR name;
        if (GetAttributeValue(initialiser.Get(), PrintSchema::kNameAttribute, name.Put()) == S_OK &&
            name.View() == wanted.View())
        {
            ReadContentValue(initialiser.Get(), value);
            return S_OK;
        }
    }
    return S_FALSE;
}

HRESULT PrintSchemaXmlDocument::GetAttributeValue(IXMLDOMNode* node, const CXString& attributeName, BSTR* value) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::GetAttributeValue");
    Require({kMethod, kSourceFile}, node != nullptr && value != nullptr, !attributeName.IsEmpty());
    ComPtr<IXMLDOMNode> attribute;
    if (FindAttribute(node, attributeName, attribute, {kMethod, kSourceFile}) == S_FALSE)
        return S_FALSE;
    CComBSTR text;
    Check(attribute->get_text(text.Put()), kMethod);
    *value = text.Detach();
    return S_OK;
}

HRESULT PrintSchemaXmlDocument::DeleteNode(IXMLDOMNode* node) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::DeleteNode");
    Require({kMethod, kSourceFile}, node != nullptr);
    ComPtr<IXMLDOMNode> parent;
    const HRESULT result = node->get_parentNode(parent.Put());
    Check(result, kMethod);
    if (!parent)
        return S_FALSE;
    ComPtr<IXMLDOMNode> removed;
    Check(parent->removeChild(node, removed.Put()), kMethod);
    Check(removed ? S_OK : E_FAIL, kMethod);
    return S_OK;
}

HRESULT PrintSchemaXmlDocument::DeleteFeatureNodeIfExists(const CXString& namePrefix, const CXString& localName) const
{
    ComPtr<IXMLDOMNode> feature;
    const HRESULT result = GetFeatureNodeIfExists(namePrefix, localName, feature.Put());
    return result == S_OK ? DeleteNode(feature.Get()) : result;
}

HRESULT PrintSchemaXmlDocument::DeleteFeatureNodeIfADuplicateExists(const CXString& namePrefix,
                                                                    const CXString& localName) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::DeleteFeatureNodeIfADuplicateExists");
    Require({kMethod, kSourceFile}, true, !localName.IsEmpty());
    PrintTicketQueryBuilder builder(m_frameworkPrefix);
    builder.AddFeature(namePrefix, localName);
    ComPtr<IXMLDOMNodeList> features;
    SelectNodes(QueryOf(builder), features.Put(), kMethod);
    LONG count = 0;
    Check(features->get_length(&count), kMethod);
    if (count <= 1)
        return S_OK;
    // One of them a call, on purpose, however many copies there are.
    ComPtr<IXMLDOMNode> first;
    Check(features->get_item(0, first.Put()), kMethod);
    return DeleteNode(first.Get());
}

HRESULT PrintSchemaXmlDocument::DeletePropertyNodesIfExist(const CXString& namePrefix, const CXString& localName) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::DeletePropertyNodesIfExist");
    Require({kMethod, kSourceFile});
    Check(localName.IsEmpty() ? E_FAIL : S_OK, kMethod);
    PrintTicketQueryBuilder builder(m_frameworkPrefix);
    builder.AddProperty(namePrefix, localName);
    ComPtr<IXMLDOMNodeList> properties;
    SelectNodes(QueryOf(builder), properties.Put(), kMethod);
    for (const ComPtr<IXMLDOMNode>& property : NodesOf(properties.Get(), {kMethod, kSourceFile}))
        DeleteNode(property.Get());
    return S_OK;
}

// A direct child in the framework namespace; S_FALSE when there is none.
HRESULT PrintSchemaXmlDocument::SelectChild(IXMLDOMNode* node, const CXString& elementName, IXMLDOMNode** child,
                                            const WCHAR* method) const
{
    const CComBSTR query = MakeBstr(m_frameworkPrefix + elementName, {method, kSourceFile});
    const HRESULT result = node->selectSingleNode(query.Get(), child);
    Check(result, method);
    return result;
}

void PrintSchemaXmlDocument::ReadTypedValue(IXMLDOMNode* node, CComBSTR& value) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::ReadTypedValue");
    OwnedVariant typed;
    Check(node->get_nodeTypedValue(typed.Put()), kMethod);
    // A document that gives its elements data types of the DOM's own has other variants here; their text is meant.
    if (typed.Get().vt == VT_BSTR)
        value.Attach(typed.DetachString());
    else
        Check(node->get_text(value.Put()), kMethod);
}

void PrintSchemaXmlDocument::ReadContentValue(IXMLDOMNode* element, CComBSTR& value) const
{
    constexpr const WCHAR* kMethod = W("PrintSchemaXmlDocument::ReadContentValue");
    ComPtr<IXMLDOMNode> child;
    const HRESULT found = SelectChild(element, PrintSchema::kValue, child.Put(), kMethod);
    ReadTypedValue(found == S_OK ? child.Get() : element, value);
}

IXMLDOMDocument2* PrintSchemaXmlDocument::GetDocument() const noexcept
{
    return m_document.Get();
}

const CXString& PrintSchemaXmlDocument::FrameworkPrefix() const noexcept
{
    return m_frameworkPrefix;
}

const CXString& PrintSchemaXmlDocument::KeywordsPrefix() const noexcept
{
    return m_keywordsPrefix;
}

const CXString& PrintSchemaXmlDocument::PrivateKeywordsPrefix() const noexcept
{
    return m_privateKeywordsPrefix;
}

const CXString& PrintSchemaXmlDocument::XmlSchemaPrefix() const noexcept
{
    return m_xmlSchemaPrefix;
}
