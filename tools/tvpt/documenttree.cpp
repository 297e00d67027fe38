#include "documenttree.h"

#include <algorithm>
#include <map>

#include <tvutil/cxstring.h>

#include "failure.h"
#include "printschemadocument.h"
#include "utilitiesstaticlib/ccombstr.h"
#include "utilitiesstaticlib/comptr.h"
#include "utilitiesstaticlib/documentlimits.h"
#include "utilitiesstaticlib/domiids.h"

namespace
{

constexpr std::string_view kNamespacePrefix = "xmlns";
constexpr std::size_t kLongestName = 256; // of those that a text can be

using Scope = std::map<std::string, std::string>; // prefix to URI

struct Attribute
{
    std::string qualifiedName;
    std::string value;
};

class Reader
{
public:
    explicit Reader(std::string_view documentName) : m_documentName(documentName)
    {
    }

    SchemaElement Read(IXMLDOMNode& node, Scope scope, unsigned depth) const
    {
        if (depth > documentlimits::kMaximumDepth)
            Fail("reading the document", m_documentName, "elements are nested too deeply");
        SchemaElement element;
        element.name = {Text(node, &IXMLDOMNode::get_namespaceURI), Text(node, &IXMLDOMNode::get_baseName)};

        const std::vector<Attribute> attributes = Attributes(node);
        for (const Attribute& attribute : attributes)
            Declare(attribute, scope);
        for (const Attribute& attribute : attributes)
            Take(attribute, scope, element);
        ReadChildren(node, scope, depth, element);
        if (element.children.empty())
            element.text = Text(node, &IXMLDOMNode::get_text);
        if (element.text.size() <= kLongestName)
            element.valueName = Resolve(Trimmed(element.text), scope);
        return element;
    }

    void Check(HRESULT result) const
    {
        if (FAILED(result))
            FailWithHresult("reading the document", m_documentName, result);
    }

private:
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

    static bool IsDeclaration(const Attribute& attribute)
    {
        return attribute.qualifiedName == kNamespacePrefix || attribute.qualifiedName.starts_with("xmlns:");
    }

    static void Declare(const Attribute& attribute, Scope& scope)
    {
        if (!IsDeclaration(attribute))
            return;
        const bool isDefault = attribute.qualifiedName == kNamespacePrefix;
        scope[isDefault ? std::string() : attribute.qualifiedName.substr(kNamespacePrefix.size() + 1)] =
            attribute.value;
    }

    static std::string_view Trimmed(std::string_view text)
    {
        constexpr std::string_view kBlanks = " \t\r\n";
        text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
        return text.substr(0, text.find_last_not_of(kBlanks) + 1);
    }

    static SchemaName Resolve(std::string_view qualifiedName, const Scope& scope)
    {
        const std::size_t colon = qualifiedName.find(':');
        if (colon == std::string_view::npos)
            return {{}, std::string(qualifiedName)};
        const auto found = scope.find(std::string(qualifiedName.substr(0, colon)));
        // An undeclared prefix stays part of the name: nothing is made up for it.
        if (found == scope.end())
            return {{}, std::string(qualifiedName)};
        return {found->second, std::string(qualifiedName.substr(colon + 1))};
    }

    static void Take(const Attribute& attribute, const Scope& scope, SchemaElement& element)
    {
        if (IsDeclaration(attribute))
            return;
        element.attributes.emplace_back(Resolve(attribute.qualifiedName, scope), attribute.value);
        if (attribute.qualifiedName != "name")
            return;
        element.nameAttribute = Resolve(attribute.value, scope);
        const std::size_t colon = attribute.value.find(':');
        element.namePrefix = colon == std::string::npos ? std::string() : attribute.value.substr(0, colon);
    }

    void ReadChildren(IXMLDOMNode& node, const Scope& scope, unsigned depth, SchemaElement& element) const
    {
        ComPtr<IXMLDOMNode> child;
        Check(node.get_firstChild(child.Put()));
        while (child)
        {
            DOMNodeType type = NODE_INVALID;
            Check(child->get_nodeType(&type));
            if (type == NODE_ELEMENT)
                element.children.push_back(Read(*child.Get(), scope, depth + 1));
            ComPtr<IXMLDOMNode> next;
            Check(child->get_nextSibling(next.Put()));
            child = next;
        }
    }

    std::string_view m_documentName;
};

} // namespace

bool SchemaName::Is(std::string_view namespaceUri, std::string_view localName) const noexcept
{
    return uri == namespaceUri && local == localName;
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

SchemaElement ReadDocumentTree(IXMLDOMDocument2& document, std::string_view name)
{
    const Reader reader(name);
    ComPtr<IXMLDOMElement> root;
    reader.Check(document.get_documentElement(root.Put()));
    if (!root)
        Fail("reading the document", name, "it has no root element");
    return reader.Read(*root.Get(), {}, 1);
}
