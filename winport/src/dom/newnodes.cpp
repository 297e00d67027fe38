#include "dom/newnodes.h"

#include <limits>
#include <new>

#include "dom/namespacepool.h"
#include "dom/nodekinds.h"
#include "dom/strings.h"

namespace winport::dom
{

namespace
{

OwnedNode Owned(xmlNode* node)
{
    if (node == nullptr)
        throw std::bad_alloc();
    return OwnedNode(node);
}

int Length(std::string_view text)
{
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw std::bad_alloc();
    return static_cast<int>(text.size());
}

const xmlChar* Chars(std::string_view text)
{
    // A null pointer would mean "no content", which is not the empty text.
    return reinterpret_cast<const xmlChar*>(text.empty() ? "" : text.data());
}

OwnedNode WithContent(OwnedNode node)
{
    if (node->content == nullptr)
        throw std::bad_alloc();
    return node;
}

} // namespace

void FreeNode::operator()(xmlNode* node) const noexcept
{
    if (IsAttribute(node))
        xmlFreeProp(AsAttribute(node));
    else
        xmlFreeNode(node);
}

OwnedNode NewElement(xmlDoc* document, xmlNs* name, std::string_view local)
{
    const std::string localName(local);
    return Owned(xmlNewDocNode(document, name, XmlChars(localName), nullptr));
}

OwnedNode NewAttribute(xmlDoc* document, xmlNs* name, std::string_view local, const std::string& value)
{
    const std::string localName(local);
    // Made without an element, so that libxml2 keeps no tables of ids.
    OwnedNode node = Owned(AsNode(xmlNewNsProp(nullptr, name, XmlChars(localName), XmlChars(value))));
    if (node->children == nullptr || node->children->content == nullptr)
        throw std::bad_alloc();
    node->doc = document;
    node->children->doc = document;
    if (name != nullptr && View(name->href) == kXmlnsUri)
        node->type = kDeclarationType;
    return node;
}

OwnedNode NewText(xmlDoc* document, std::string_view text)
{
    return WithContent(Owned(xmlNewDocTextLen(document, Chars(text), Length(text))));
}

OwnedNode NewCData(xmlDoc* document, std::string_view text)
{
    return WithContent(Owned(xmlNewCDataBlock(document, Chars(text), Length(text))));
}

OwnedNode NewComment(xmlDoc* document, const std::string& text)
{
    return WithContent(Owned(xmlNewDocComment(document, XmlChars(text))));
}

OwnedNode NewInstruction(xmlDoc* document, const std::string& target, const std::string& data)
{
    return WithContent(Owned(xmlNewDocPI(document, XmlChars(target), XmlChars(data))));
}

} // namespace winport::dom
