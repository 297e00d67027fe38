#include "dom/nodekinds.h"

#include "dom/strings.h"

namespace winport::dom
{

namespace
{

struct KindRow
{
    xmlElementType type;
    DOMNodeType kind;
    std::string_view fixedName; // of nodes that have no name of their own
};

constexpr KindRow kKinds[] = {
    {XML_ELEMENT_NODE, NODE_ELEMENT, ""},
    {XML_ATTRIBUTE_NODE, NODE_ATTRIBUTE, ""},
    {kDeclarationType, NODE_ATTRIBUTE, ""},
    {XML_TEXT_NODE, NODE_TEXT, "#text"},
    {XML_CDATA_SECTION_NODE, NODE_CDATA_SECTION, "#cdata-section"},
    {XML_PI_NODE, NODE_PROCESSING_INSTRUCTION, ""},
    {XML_COMMENT_NODE, NODE_COMMENT, "#comment"},
    {XML_DOCUMENT_NODE, NODE_DOCUMENT, "#document"},
};

constexpr KindRow kNoKind = {XML_ELEMENT_NODE, NODE_INVALID, ""};

const KindRow& RowOf(const xmlNode* node)
{
    for (const KindRow& row : kKinds)
    {
        if (row.type == node->type)
            return row;
    }
    return kNoKind;
}

// A processing instruction has a name but no namespace; the structure's `ns` means nothing there.
bool HasNamespaceName(const xmlNode* node)
{
    return (IsElement(node) || IsAttribute(node)) && node->ns != nullptr;
}

// Its address is the mark; nothing is read from it.
char g_droppedBlanks;

} // namespace

bool IsDeclaration(const xmlNode* node)
{
    return node->type == kDeclarationType;
}

bool IsAttribute(const xmlNode* node)
{
    return node->type == XML_ATTRIBUTE_NODE || IsDeclaration(node);
}

bool IsElement(const xmlNode* node)
{
    return node->type == XML_ELEMENT_NODE;
}

bool IsText(const xmlNode* node)
{
    return node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE;
}

DOMNodeType KindOf(const xmlNode* node)
{
    return RowOf(node).kind;
}

std::string_view LocalNameOf(const xmlNode* node)
{
    const std::string_view fixedName = RowOf(node).fixedName;
    return fixedName.empty() ? View(node->name) : fixedName;
}

std::string_view PrefixOf(const xmlNode* node)
{
    return HasNamespaceName(node) ? View(node->ns->prefix) : std::string_view();
}

std::string_view NamespaceOf(const xmlNode* node)
{
    return HasNamespaceName(node) ? View(node->ns->href) : std::string_view();
}

std::string QualifiedNameOf(const xmlNode* node)
{
    const std::string_view prefix = PrefixOf(node);
    std::string name(prefix);
    if (!prefix.empty())
        name += ':';
    return name += LocalNameOf(node);
}

bool HasQualifiedName(const xmlNode* node, std::string_view name)
{
    const std::string_view prefix = PrefixOf(node);
    const std::string_view local = LocalNameOf(node);
    if (prefix.empty())
        return name == local;
    return name.size() == prefix.size() + 1 + local.size() && name.starts_with(prefix) && name[prefix.size()] == ':' &&
           name.ends_with(local);
}

std::string ValueOf(const xmlAttr* attribute)
{
    std::string value;
    for (const xmlNode* child = attribute->children; child != nullptr; child = child->next)
        value += View(child->content);
    return value;
}

std::string_view DeclaredPrefix(const xmlAttr* declaration)
{
    return View(declaration->ns->prefix).empty() ? std::string_view() : View(declaration->name);
}

bool IsXmlDeclaration(const xmlNode* node)
{
    return node->type == XML_PI_NODE && View(node->name) == "xml";
}

bool FollowsDroppedBlanks(const xmlNode* node)
{
    return (IsElement(node) || IsText(node)) && node->psvi == &g_droppedBlanks;
}

void MarkDroppedBlanks(xmlNode* node)
{
    node->psvi = &g_droppedBlanks;
}

xmlNode* AsNode(xmlAttr* attribute)
{
    return reinterpret_cast<xmlNode*>(attribute);
}

xmlAttr* AsAttribute(xmlNode* node)
{
    return reinterpret_cast<xmlAttr*>(node);
}

const xmlAttr* AsAttribute(const xmlNode* node)
{
    return reinterpret_cast<const xmlAttr*>(node);
}

xmlNode* NextInSubtree(xmlNode* node, const xmlNode* root)
{
    if (node->children != nullptr)
        return node->children;
    while (node != root && node->next == nullptr)
        node = node->parent;
    return node != root ? node->next : nullptr;
}

} // namespace winport::dom
