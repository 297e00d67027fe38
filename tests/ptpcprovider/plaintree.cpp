#include "tests/ptpcprovider/plaintree.h"

#include <algorithm>

#include "complugins/ptpcprovider/domhelpers.h"
#include "complugins/ptpcprovider/printschemanamespaces.h"

namespace
{

std::string Get(IXMLDOMNode* node, HRESULT (STDMETHODCALLTYPE IXMLDOMNode::*getter)(BSTR*))
{
    CComBSTR text;
    (node->*getter)(text.Put());
    return CXString(text).ToUtf8();
}

} // namespace

PlainTree::PlainTree(IXMLDOMDocument2* document)
{
    ComPtr<IXMLDOMElement> root;
    document->get_documentElement(root.Put());
    Add(root.Get(), kNone);
}

const std::vector<PlainTree::Element>& PlainTree::All() const
{
    return m_elements;
}

std::string PlainTree::TextOf(std::size_t at) const
{
    return Get(m_elements[at].node.Get(), &IXMLDOMNode::get_text);
}

bool PlainTree::Is(std::size_t at, const char* local, const std::optional<std::string>& name) const
{
    return at != kNone && m_elements[at].local == local && m_elements[at].name == name;
}

bool PlainTree::IsBelow(std::size_t at, const char* local, const std::string& name) const
{
    do
        at = m_elements[at].parent;
    while (at != kNone && !Is(at, local, name));
    return at != kNone;
}

std::size_t PlainTree::Child(std::size_t parent, const char* local) const
{
    return First([&](std::size_t at) { return m_elements[at].parent == parent && m_elements[at].local == local; });
}

std::vector<std::string> PlainTree::Names(const char* local) const
{
    std::vector<std::string> names;
    for (const Element& element : m_elements)
        if (element.local == local && element.name &&
            std::find(names.begin(), names.end(), *element.name) == names.end())
            names.push_back(*element.name);
    return names;
}

void PlainTree::Remove(std::size_t at) const
{
    ComPtr<IXMLDOMNode> parent;
    ComPtr<IXMLDOMNode> removed;
    m_elements[at].node->get_parentNode(parent.Put());
    parent->removeChild(m_elements[at].node.Get(), removed.Put());
}

void PlainTree::Add(IXMLDOMNode* node, std::size_t parent)
{
    const std::size_t at = m_elements.size();
    m_elements.push_back({ComPtr<IXMLDOMNode>(node), "", std::nullopt, parent});
    if (Get(node, &IXMLDOMNode::get_namespaceURI) == CXString(PrintSchema::kFrameworkUri).ToUtf8())
        m_elements[at].local = Get(node, &IXMLDOMNode::get_baseName);
    ComPtr<IXMLDOMElement> element;
    m_elements[at].node.As(element);
    OwnedVariant name;
    if (element->getAttribute(CComBSTR(W("name")).Get(), name.Put()) == S_OK && name.Get().vt == VT_BSTR)
        m_elements[at].name = CXString(name.Get().bstrVal).ToUtf8();
    ComPtr<IXMLDOMNode> child;
    for (node->get_firstChild(child.Put()); child;)
    {
        DOMNodeType type = NODE_INVALID;
        child->get_nodeType(&type);
        if (type == NODE_ELEMENT)
            Add(child.Get(), at);
        ComPtr<IXMLDOMNode> next;
        child->get_nextSibling(next.Put());
        child = next;
    }
}
