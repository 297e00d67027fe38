#include "tests/common/documentcomparer.h"

#include <algorithm>
#include <map>
#include <vector>

#include "complugins/ptpcprovider/domhelpers.h"
#include "utilitiesstaticlib/ccombstr.h"

namespace
{

constexpr ThrowSite kSite{W("CompareDocuments"), W("tests"), 0};

struct Element
{
    std::string path;                              // a step: local[place among its siblings, name attribute]
    std::string name;                              // {namespace}local
    std::map<std::string, std::string> attributes; // by {namespace}local
    std::string text;                              // of the element itself, blanks at both ends cut

    bool operator==(const Element&) const = default;
};

std::string Get(IXMLDOMNode* node, HRESULT (STDMETHODCALLTYPE IXMLDOMNode::*getter)(BSTR*))
{
    CComBSTR text;
    (node->*getter)(text.Put());
    return CXString(text).ToUtf8();
}

std::string QualifiedName(IXMLDOMNode* node)
{
    const std::string uri = Get(node, &IXMLDOMNode::get_namespaceURI);
    return (uri.empty() ? "" : "{" + uri + "}") + Get(node, &IXMLDOMNode::get_baseName);
}

std::string Trimmed(const std::string& text)
{
    constexpr const char* kBlanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(kBlanks);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// The element and, behind it, all below it in document order.
void List(IXMLDOMNode* node, const std::string& parent, std::size_t place, std::vector<Element>& elements)
{
    Element element{{}, QualifiedName(node), {}, {}};
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    node->get_attributes(attributes.Put());
    for (const ComPtr<IXMLDOMNode>& attribute : NodesOf(attributes.Get(), kSite))
        if (const std::string name = Get(attribute.Get(), &IXMLDOMNode::get_nodeName);
            name != "xmlns" && !name.starts_with("xmlns:"))
            element.attributes[QualifiedName(attribute.Get())] = Get(attribute.Get(), &IXMLDOMNode::get_text);
    ComPtr<IXMLDOMNodeList> list;
    node->get_childNodes(list.Put());
    std::vector<ComPtr<IXMLDOMNode>> children;
    for (const ComPtr<IXMLDOMNode>& child : NodesOf(list.Get(), kSite))
    {
        DOMNodeType type = NODE_INVALID;
        child->get_nodeType(&type);
        if (type == NODE_ELEMENT)
            children.push_back(child);
        else if (type == NODE_TEXT || type == NODE_CDATA_SECTION)
            element.text += Get(child.Get(), &IXMLDOMNode::get_text);
    }
    element.text = Trimmed(element.text);
    const auto name = element.attributes.find("name");
    element.path = parent + "/" + Get(node, &IXMLDOMNode::get_baseName) + "[" + std::to_string(place) +
                   (name != element.attributes.end() ? " " + name->second : "") + "]";
    elements.push_back(element);
    for (std::size_t at = 0; at < children.size(); ++at)
        List(children[at].Get(), element.path, at + 1, elements);
}

std::vector<Element> ElementsOf(IXMLDOMDocument2* document)
{
    std::vector<Element> elements;
    ComPtr<IXMLDOMElement> root;
    document->get_documentElement(root.Put());
    if (root)
        List(root.Get(), "", 1, elements);
    return elements;
}

std::string Describe(const std::vector<Element>& elements, std::vector<Element>::const_iterator at)
{
    if (at == elements.end())
        return "nothing more";
    std::string text = at->path + ": " + at->name;
    for (const auto& [name, value] : at->attributes)
        text.append(" ").append(name).append("=\"").append(value).append("\"");
    return text + " \"" + at->text + "\"";
}

} // namespace

std::string CompareDocuments(IXMLDOMDocument2* expected, IXMLDOMDocument2* actual)
{
    const std::vector<Element> left = ElementsOf(expected);
    const std::vector<Element> right = ElementsOf(actual);
    if (left == right)
        return {};
    const auto [first, second] = std::mismatch(left.begin(), left.end(), right.begin(), right.end());
    return "expected " + Describe(left, first) + ", found " + Describe(right, second);
}
