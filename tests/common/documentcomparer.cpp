#include "tests/common/documentcomparer.h"

#include <algorithm>
#include <map>
#include <vector>

#include "complugins/ptpcprovider/domhelpers.h"
#include "utilitiesstaticlib/ccombstr.h"

namespace
{

constexpr ThrowSite kSite{W("CompareDocuments"), W("tests"), 0};

using Getter = HRESULT (STDMETHODCALLTYPE IXMLDOMNode::*)(BSTR*);

std::string Get(IXMLDOMNode* node, Getter getter)
{
    CComBSTR text;
    (node->*getter)(text.Put());
    return CXString(text).ToUtf8();
}

struct Element
{
    std::string name;                              // {namespace}local
    std::map<std::string, std::string> attributes; // by {namespace}local
    std::string text;                              // of the element itself, blanks at both ends cut
    std::vector<ComPtr<IXMLDOMNode>> children;
};

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

Element Describe(IXMLDOMNode* node)
{
    Element element;
    element.name = QualifiedName(node);
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    node->get_attributes(attributes.Put());
    for (const ComPtr<IXMLDOMNode>& attribute : NodesOf(attributes.Get(), kSite))
        if (const std::string name = Get(attribute.Get(), &IXMLDOMNode::get_nodeName);
            name != "xmlns" && !name.starts_with("xmlns:"))
            element.attributes[QualifiedName(attribute.Get())] = Get(attribute.Get(), &IXMLDOMNode::get_text);
    ComPtr<IXMLDOMNodeList> children;
    node->get_childNodes(children.Put());
    for (const ComPtr<IXMLDOMNode>& child : NodesOf(children.Get(), kSite))
    {
        DOMNodeType type = NODE_INVALID;
        child->get_nodeType(&type);
        if (type == NODE_ELEMENT)
            element.children.push_back(child);
        else if (type == NODE_TEXT || type == NODE_CDATA_SECTION)
            element.text += Get(child.Get(), &IXMLDOMNode::get_text);
    }
    element.text = Trimmed(element.text);
    return element;
}

std::string StepOf(const Element& element, std::size_t index)
{
    const std::string local = element.name.substr(element.name.rfind('}') + 1);
    const auto name = element.attributes.find("name");
    return "/" + local + "[" + std::to_string(index + 1) + "]" +
           (name != element.attributes.end() ? "[" + name->second + "]" : "");
}

std::string CompareAttributes(const Element& expected, const Element& actual)
{
    for (const auto& [name, value] : expected.attributes)
    {
        const auto found = actual.attributes.find(name);
        if (found == actual.attributes.end())
            return "attribute " + name + " is missing";
        if (found->second != value)
            return "attribute " + name + " is \"" + found->second + "\", not \"" + value + "\"";
    }
    for (const auto& [name, value] : actual.attributes)
        if (!expected.attributes.contains(name))
            return "unexpected attribute " + name + "=\"" + value + "\"";
    return {};
}

std::string CompareElements(IXMLDOMNode* expectedNode, IXMLDOMNode* actualNode, const std::string& parent,
                            std::size_t index)
{
    const Element expected = Describe(expectedNode);
    const Element actual = Describe(actualNode);
    const std::string path = parent + StepOf(expected, index);
    if (expected.name != actual.name)
        return path + ": element is " + actual.name + ", not " + expected.name;
    if (const std::string difference = CompareAttributes(expected, actual); !difference.empty())
        return path + ": " + difference;
    if (expected.text != actual.text)
        return path + ": text is \"" + actual.text + "\", not \"" + expected.text + "\"";
    for (std::size_t child = 0; child < std::max(expected.children.size(), actual.children.size()); ++child)
    {
        if (child >= actual.children.size())
            return path + StepOf(Describe(expected.children[child].Get()), child) + " is missing";
        if (child >= expected.children.size())
            return path + ": unexpected" + StepOf(Describe(actual.children[child].Get()), child);
        const std::string difference =
            CompareElements(expected.children[child].Get(), actual.children[child].Get(), path, child);
        if (!difference.empty())
            return difference;
    }
    return {};
}

} // namespace

std::string CompareDocuments(IXMLDOMDocument2* expected, IXMLDOMDocument2* actual)
{
    ComPtr<IXMLDOMElement> expectedRoot;
    expected->get_documentElement(expectedRoot.Put());
    ComPtr<IXMLDOMElement> actualRoot;
    actual->get_documentElement(actualRoot.Put());
    if (!expectedRoot || !actualRoot)
        return expectedRoot || actualRoot ? "one of the documents is empty" : "";
    return CompareElements(expectedRoot.Get(), actualRoot.Get(), "", 0);
}
