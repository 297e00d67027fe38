// Tree: one libxml2 document with everything its nodes need: the namespace names, the XPath context, the settings.
//
// Every wrapper holds its tree, so nodes stay valid after the document object is gone or has loaded something else.
// A tree and its nodes are used by one thread at a time; different trees share nothing.
#pragma once

#include <libxml/tree.h>

#include <memory>

#include "dom/documentsettings.h"
#include "dom/namespacepool.h"
#include "dom/xpathengine.h"

namespace winport::dom
{

class Tree
{
public:
    // An empty document.
    static std::shared_ptr<Tree> Create(const DocumentSettings& settings);

    explicit Tree(const DocumentSettings& settings);
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

    xmlDoc* Document() const noexcept
    {
        return m_document.get();
    }

    xmlNode* DocumentNode() const noexcept
    {
        return reinterpret_cast<xmlNode*>(m_document.get());
    }

    xmlNode* RootElement() const noexcept;

    NamespacePool& Namespaces() noexcept
    {
        return m_namespaces;
    }

    DocumentSettings& Settings() noexcept
    {
        return m_settings;
    }

    // The engine with the selection namespaces of the settings.
    XPathEngine& XPath();
    // To be called when the settings' selection namespaces changed.
    void SelectionNamespacesChanged() noexcept;

    // Counts the changes of children and attributes, so that lists know when a remembered place is stale.
    unsigned long Generation() const noexcept
    {
        return m_generation;
    }

    void CountChange() noexcept
    {
        ++m_generation;
    }

private:
    struct FreeDocument
    {
        void operator()(xmlDoc* document) const noexcept
        {
            xmlFreeDoc(document);
        }
    };

    // The order matters: the engine goes first, the names that nodes point at last.
    NamespacePool m_namespaces;
    std::unique_ptr<xmlDoc, FreeDocument> m_document;
    DocumentSettings m_settings;
    XPathEngine m_xpath;
    bool m_isXPathCurrent = false;
    unsigned long m_generation = 0;
};

using TreePtr = std::shared_ptr<Tree>;

// A moment in a tree's life, for what remembers places in it. It keeps the tree: a document that loads anew has another
// one, whose count of changes may be the same.
class ChangeMark
{
public:
    bool IsPresent(const TreePtr& tree) const noexcept
    {
        return m_tree == tree && m_tree->Generation() == m_generation;
    }

    void SetPresent(const TreePtr& tree) noexcept
    {
        m_tree = tree;
        m_generation = tree->Generation();
    }

private:
    TreePtr m_tree;
    unsigned long m_generation = 0;
};

} // namespace winport::dom
