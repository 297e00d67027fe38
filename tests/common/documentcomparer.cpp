#include "tests/common/documentcomparer.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "utilitiesstaticlib/ccombstr.h"
#include "utilitiesstaticlib/comptr.h"

namespace
{

using Node = ComPtr<IXMLDOMNode>;

std::string Get(IXMLDOMNode* node, HRESULT (STDMETHODCALLTYPE IXMLDOMNode::*getter)(BSTR*))
{
    CComBSTR text;
    (node->*getter)(text.Put());
    return Narrow(text.View());
}

// "{uri}local"; empty for a declaration, which Wine does not name at all when it is the default one.
std::string ExpandedName(IXMLDOMNode* node)
{
    const std::string name = Get(node, &IXMLDOMNode::get_nodeName);
    if (name.empty() || name == "xmlns" || name.starts_with("xmlns:"))
        return {};
    return "{" + Get(node, &IXMLDOMNode::get_namespaceURI) + "}" + Get(node, &IXMLDOMNode::get_baseName);
}

std::string AttributesMeaning(IXMLDOMNode* element)
{
    std::set<std::string> parts;
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    element->get_attributes(attributes.Put());
    Node attribute;
    for (LONG at = 0; attributes->get_item(at, attribute.Put()) == S_OK; ++at)
        if (const std::string name = ExpandedName(attribute.Get()); !name.empty())
            parts.insert("@" + name + "=" + Get(attribute.Get(), &IXMLDOMNode::get_text));
    std::string meaning;
    for (const std::string& part : parts)
        meaning += (meaning.empty() ? "" : " ") + part;
    return meaning;
}

std::string WithoutBlanksAtBrackets(const std::string& meaning)
{
    constexpr std::string_view kBlanks = " \t\r\n";
    std::string text = "]";
    for (const char character : meaning)
    {
        const bool isBracket = character == '[' || character == ']';
        while (isBracket && kBlanks.find(text.back()) != std::string_view::npos)
            text.pop_back();
        if (kBlanks.find(character) == std::string_view::npos || (text.back() != '[' && text.back() != ']'))
            text += character;
    }
    return text;
}

} // namespace

std::string Meaning(IXMLDOMNode* node)
{
    DOMNodeType kind = NODE_INVALID;
    node->get_nodeType(&kind);
    VARIANT value{};
    if ((kind == NODE_TEXT || kind == NODE_CDATA_SECTION) && node->get_nodeValue(&value) == S_OK)
    {
        CComBSTR text;
        text.Attach(value.bstrVal);
        return Narrow(text.View());
    }
    std::string children;
    Node child;
    Node next;
    for (HRESULT found = node->get_firstChild(child.Put()); found == S_OK; child = next)
    {
        children += Meaning(child.Get());
        found = child->get_nextSibling(next.Put());
    }
    return kind != NODE_ELEMENT ? children : ExpandedName(node) + "(" + AttributesMeaning(node) + ")[" + children + "]";
}

std::string CompareDocuments(IXMLDOMNode* expected, IXMLDOMNode* actual)
{
    const std::string left = WithoutBlanksAtBrackets(Meaning(expected));
    const std::string right = WithoutBlanksAtBrackets(Meaning(actual));
    if (left == right)
        return {};
    const auto same = std::mismatch(left.begin(), left.end(), right.begin(), right.end()).first - left.begin();
    const std::size_t from = static_cast<std::size_t>(std::max<std::ptrdiff_t>(same - 200, 0));
    return "expected ..." + left.substr(from, 400) + "..., found ..." + right.substr(from, 400) + "...";
}

std::string Narrow(WStringView text)
{
    const auto utf8 = std::filesystem::path(text).u8string();
    return {utf8.begin(), utf8.end()};
}
