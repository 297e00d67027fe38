#include "dom/declarations.h"

#include <vector>

#include "dom/nodekinds.h"
#include "dom/prefixscope.h"
#include "dom/strings.h"
#include "dom/walk.h"

namespace winport::dom
{

namespace
{

void BindDeclarations(const xmlNode* element, const xmlAttr* lost, PrefixScope<std::string>& scope)
{
    for (const xmlAttr* attribute = element->properties; attribute != nullptr; attribute = attribute->next)
    {
        if (attribute->type == kDeclarationType && attribute != lost)
            scope.Bind(DeclaredPrefix(attribute), ValueOf(attribute));
    }
}

class PrefixRenaming
{
public:
    PrefixRenaming(const xmlAttr* declaration, NamespacePool& names)
        : m_declaration(declaration), m_prefix(DeclaredPrefix(declaration)), m_uri(ValueOf(declaration)), m_names(names)
    {
    }

    void Run()
    {
        xmlNs* const lostName = m_names.Get(m_prefix, m_uri);
        if (lostName == nullptr) // xmlns="" gives nobody a name
            return;
        BindAncestors();
        WalkSubtree(
            m_declaration->parent,
            [&](xmlNode* node)
            {
                if (!IsElement(node))
                    return;
                m_scope.Enter();
                BindDeclarations(node, m_declaration, m_scope);
                RenameAt(node, lostName);
            },
            [&](xmlNode* node)
            {
                if (IsElement(node))
                    m_scope.Leave();
            });
    }

private:
    void BindAncestors()
    {
        std::vector<xmlNode*> ancestors;
        for (xmlNode* node = m_declaration->parent->parent; node != nullptr && IsElement(node); node = node->parent)
            ancestors.push_back(node);
        for (; !ancestors.empty(); ancestors.pop_back())
            BindDeclarations(ancestors.back(), m_declaration, m_scope);
    }

    void RenameAt(xmlNode* element, const xmlNs* lostName)
    {
        const std::string* const stillBound = m_scope.Find(m_prefix);
        if (stillBound != nullptr && *stillBound == m_uri)
            return;
        const std::string_view* replacement = nullptr;
        const auto rename = [&](xmlNode* node)
        {
            if (node->ns != lostName)
                return;
            // A prefix that is not empty serves elements and attributes.
            if (replacement == nullptr)
                replacement = m_scope.FindPrefix([&](std::string_view prefix, const std::string& uri)
                                                 { return !prefix.empty() && uri == m_uri; });
            if (replacement != nullptr)
                node->ns = m_names.Get(*replacement, m_uri);
        };
        rename(element);
        for (xmlAttr* attribute = element->properties; attribute != nullptr; attribute = attribute->next)
            rename(AsNode(attribute));
    }

    const xmlAttr* m_declaration;
    const std::string m_prefix;
    const std::string m_uri;
    NamespacePool& m_names;
    PrefixScope<std::string> m_scope;
};

} // namespace

void RenamePrefixOfLostDeclaration(xmlAttr* declaration, NamespacePool& names)
{
    if (declaration->parent != nullptr)
        PrefixRenaming(declaration, names).Run();
}

} // namespace winport::dom
