#include "dom/attributes.h"

#include "dom/declarations.h"
#include "dom/failure.h"
#include "dom/insertion.h"
#include "dom/links.h"
#include "dom/nodekinds.h"
#include "dom/qname.h"
#include "dom/strings.h"

namespace winport::dom
{

namespace
{

const xmlNode* NodeOf(const xmlAttr* attribute)
{
    return reinterpret_cast<const xmlNode*>(attribute);
}

// The attribute whose place a new one takes: the same name as written or the same name as meant. An element cannot
// have two of either kind.
xmlAttr* FindRival(const xmlNode* element, const xmlNode* attribute)
{
    const std::string written = QualifiedNameOf(attribute);
    xmlAttr* const same = FindAttribute(element, written);
    const std::string_view uri = NamespaceOf(attribute);
    return same != nullptr || uri.empty() ? same : FindAttribute(element, LocalNameOf(attribute), uri);
}

} // namespace

xmlAttr* FindAttribute(const xmlNode* element, std::string_view qualifiedName)
{
    xmlAttr* attribute = IsElement(element) ? element->properties : nullptr;
    while (attribute != nullptr && !HasQualifiedName(NodeOf(attribute), qualifiedName))
        attribute = attribute->next;
    return attribute;
}

xmlAttr* FindAttribute(const xmlNode* element, std::string_view local, std::string_view uri)
{
    xmlAttr* attribute = IsElement(element) ? element->properties : nullptr;
    while (attribute != nullptr && (LocalNameOf(NodeOf(attribute)) != local || NamespaceOf(NodeOf(attribute)) != uri))
        attribute = attribute->next;
    return attribute;
}

NodeRef PutAttribute(NodeCore& element, NodeCore& attribute)
{
    xmlNode* const node = attribute.Node();
    if (!IsAttribute(node))
        throw Failure{E_INVALIDARG};
    RequireSameTree(element, attribute);
    if (node->parent != nullptr)
        throw Failure{E_FAIL};
    xmlAttr* const rival = FindRival(element.Node(), node);
    NodeRef replaced = rival != nullptr ? ObjectOf(element.GetTree(), AsNode(rival)) : NodeRef();
    xmlAttr* next = nullptr;
    if (rival != nullptr)
    {
        next = rival->next;
        TakeAttribute(element, rival);
    }
    LinkAttribute(element.Node(), AsAttribute(node), next);
    element.GetTree()->CountChange();
    return replaced;
}

NodeRef TakeAttribute(NodeCore& element, xmlAttr* attribute)
{
    NodeRef taken = ObjectOf(element.GetTree(), AsNode(attribute));
    if (IsDeclaration(taken->Node()))
        RenamePrefixOfLostDeclaration(attribute, element.GetTree()->Namespaces());
    Unlink(taken->Node());
    element.GetTree()->CountChange();
    return taken;
}

OwnedNode NewNamedAttribute(Tree& tree, const std::string& qualifiedName, std::string_view uri,
                            const std::string& value)
{
    const auto name = ParseQName(qualifiedName);
    if (!name)
        throw Failure{E_FAIL};
    // A declaration is one by its name; whatever URI it is created with (none is usual), it is in the one namespace.
    const std::string_view meant = IsDeclarationName(*name) ? kXmlnsUri : (name->prefix == "xml" ? kXmlUri : uri);
    return NewAttribute(tree.Document(), tree.Namespaces().Get(name->prefix, meant), name->local, value);
}

} // namespace winport::dom
