#include "documenttree.h"

#include <algorithm>
#include <map>
#include <optional>

#include <tvutil/cxstring.h>

#include "documenttext.h"
#include "failure.h"
#include "printschemadocument.h"
#include "starttags.h"
#include "utilitiesstaticlib/ccombstr.h"
#include "utilitiesstaticlib/comptr.h"
#include "utilitiesstaticlib/documentlimits.h"
#include "utilitiesstaticlib/domiids.h"

namespace
{

constexpr char kReading[] = "reading the document";
constexpr std::size_t kLongestName = 256; // of those that a text without a type can be

struct Attribute
{
    std::string qualifiedName;
    std::string value;
};

class Reader
{
public:
    Reader(WStringView text, std::string_view documentName) : m_text(text), m_documentName(documentName), m_tags(text)
    {
    }

    SchemaElement Read(IXMLDOMNode& node, unsigned depth)
    {
        if (depth > documentlimits::kMaximumDepth)
            Fail(kReading, m_documentName, "elements are nested too deeply");
        const StartTag tag = NextTag();
        SchemaElement element;
        for (const NamespaceDeclaration& declaration : tag.declarations)
        {
            m_scope[declaration.prefix].push_back(declaration.uri);
            element.declaredUris.push_back(declaration.uri);
        }

        element.name = {Text(node, &IXMLDOMNode::get_namespaceURI), Text(node, &IXMLDOMNode::get_baseName)};
        element.writtenName = Text(node, &IXMLDOMNode::get_nodeName);
        element.line = m_line;
        for (const Attribute& attribute : Attributes(node))
            Take(attribute, element);
        ReadChildren(node, depth, element);
        if (element.children.empty())
            element.text = Text(node, &IXMLDOMNode::get_text);
        const bool hasType = !element.type.local.empty();
        if (element.type.Is(kXmlSchema.uri, "QName") || (!hasType && element.text.size() <= kLongestName))
            element.textName = Resolve(WithoutBlanksAround(element.text));

        for (const NamespaceDeclaration& declaration : tag.declarations)
            m_scope[declaration.prefix].pop_back();
        return element;
    }

    void Check(HRESULT result) const
    {
        if (FAILED(result))
            FailWithHresult(kReading, m_documentName, result);
    }

private:
    StartTag NextTag()
    {
        std::optional<StartTag> tag = m_tags.Next();
        if (!tag)
            Fail(kReading, m_documentName, "its elements and its start tags do not agree");
        m_line +=
            static_cast<std::size_t>(std::ranges::count(m_text.substr(m_lineEnd, tag->offset - m_lineEnd), W('\n')));
        m_lineEnd = tag->offset;
        return std::move(*tag);
    }

    std::string Text(IXMLDOMNode& node, HRESULT (STDMETHODCALLTYPE IXMLDOMNode::*get)(BSTR*)) const
    {
        CComBSTR text;
        Check((node.*get)(text.Put()));
        return CXString(text.View()).ToUtf8();
    }

    // By index: what a map's nextNode visits differs between DOMs.
    std::vector<Attribute> Attributes(IXMLDOMNode& node) const
    {
        std::vector<Attribute> attributes;
        ComPtr<IXMLDOMNamedNodeMap> map;
        Check(node.get_attributes(map.Put()));
        LONG count = 0;
        if (map)
            Check(map->get_length(&count));
        for (LONG index = 0; index < count; ++index)
        {
            ComPtr<IXMLDOMNode> item;
            Check(map->get_item(index, item.Put()));
            if (item)
                attributes.push_back(
                    {Text(*item.Get(), &IXMLDOMNode::get_nodeName), Text(*item.Get(), &IXMLDOMNode::get_text)});
        }
        return attributes;
    }

    [[nodiscard]] SchemaName Resolve(std::string_view qualifiedName) const
    {
        const std::size_t colon = qualifiedName.find(':');
        if (colon == std::string_view::npos)
            return {{}, std::string(qualifiedName)};
        const auto found = m_scope.find(std::string(qualifiedName.substr(0, colon)));
        // An undeclared prefix stays part of the name: nothing is made up for it.
        if (found == m_scope.end() || found->second.empty())
            return {{}, std::string(qualifiedName)};
        return {found->second.back(), std::string(qualifiedName.substr(colon + 1))};
    }

    void Take(const Attribute& attribute, SchemaElement& element) const
    {
        if (attribute.qualifiedName == "xmlns" || attribute.qualifiedName.starts_with("xmlns:"))
            return;
        element.attributes.emplace_back(Resolve(attribute.qualifiedName), attribute.value);
        if (element.attributes.back().first.Is(kXmlSchemaInstance.uri, "type"))
            element.type = Resolve(WithoutBlanksAround(attribute.value));
        if (attribute.qualifiedName != "name")
            return;
        element.nameAttribute = Resolve(attribute.value);
        const std::size_t colon = attribute.value.find(':');
        element.namePrefix = colon == std::string::npos ? std::string() : attribute.value.substr(0, colon);
    }

    void ReadChildren(IXMLDOMNode& node, unsigned depth, SchemaElement& element)
    {
        ComPtr<IXMLDOMNode> child;
        Check(node.get_firstChild(child.Put()));
        while (child)
        {
            DOMNodeType type = NODE_INVALID;
            Check(child->get_nodeType(&type));
            if (type == NODE_ELEMENT)
                element.children.push_back(Read(*child.Get(), depth + 1));
            ComPtr<IXMLDOMNode> next;
            Check(child->get_nextSibling(next.Put()));
            child = next;
        }
    }

    WStringView m_text;
    std::string_view m_documentName;
    StartTagScanner m_tags;
    std::size_t m_lineEnd = 0; // up to where lines are counted
    std::size_t m_line = 1;
    std::map<std::string, std::vector<std::string>> m_scope; // prefix to its URIs, the one that counts last
};

} // namespace

bool SchemaName::Is(std::string_view namespaceUri, std::string_view localName) const noexcept
{
    return uri == namespaceUri && local == localName;
}

bool operator<(const SchemaName& left, const SchemaName& right) noexcept
{
    const int order = left.uri.compare(right.uri);
    return order != 0 ? order < 0 : left.local.compare(right.local) < 0;
}

std::vector<const SchemaElement*> SchemaElement::Children(std::string_view frameworkName) const
{
    std::vector<const SchemaElement*> found;
    for (const SchemaElement& child : children)
        if (child.name.Is(kFramework.uri, frameworkName))
            found.push_back(&child);
    return found;
}

const SchemaElement* SchemaElement::Child(std::string_view frameworkName) const
{
    const auto found = Children(frameworkName);
    return found.empty() ? nullptr : found.front();
}

const SchemaElement* SchemaElement::FrameworkProperty(std::string_view localName) const
{
    for (const SchemaElement& child : children)
        if (child.name.Is(kFramework.uri, "Property") && child.nameAttribute.Is(kFramework.uri, localName))
            return &child;
    return nullptr;
}

std::string SchemaElement::WrittenNameAttribute() const
{
    return nameAttribute.uri.empty() ? nameAttribute.local : namePrefix + ":" + nameAttribute.local;
}

SchemaElement ReadDocumentTree(IXMLDOMDocument2& document, WStringView text, std::string_view name)
{
    Reader reader(text, name);
    ComPtr<IXMLDOMElement> root;
    reader.Check(document.get_documentElement(root.Put()));
    if (!root)
        Fail(kReading, name, "it has no root element");
    return reader.Read(*root.Get(), 1);
}

SchemaElement LoadDocumentTree(std::string_view bytes, std::string_view name)
{
    const WideString text = DecodeDocument(bytes, name);
    return ReadDocumentTree(*ParseDocument(text, name).Get(), text, name);
}

std::string DescribeRootFault(const SchemaElement& root, std::string_view expected)
{
    const std::string& space = root.name.uri;
    if (root.name.Is(kFramework.uri, expected))
        return {};
    const std::string where = space.empty() ? " in no namespace" : " in the namespace " + Shortened(space);
    const std::string fault = "the root element is " + Shortened(root.writtenName);
    if (space == kFramework.uri)
        return fault + ", expected " + std::string(expected);
    return fault + where + ", expected " + std::string(expected) + " in " + std::string(kFramework.uri);
}

std::string_view WithoutBlanksAround(std::string_view text)
{
    constexpr std::string_view kBlanks = " \t\r\n";
    const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
    const std::size_t last = text.find_last_not_of(kBlanks);
    return last == std::string_view::npos ? std::string_view() : text.substr(begin, last + 1 - begin);
}
