#include "dom/tree.h"

#include <libxml/parser.h>

#include <new>

#include "dom/nodekinds.h"

namespace winport::dom
{

namespace
{

// libxml2's own start-up is not safe between threads; the first document does it for all.
void StartLibrary()
{
    static const bool started = []
    {
        xmlInitParser();
        return true;
    }();
    static_cast<void>(started);
}

xmlDoc* NewDocument()
{
    StartLibrary();
    xmlDoc* const document = xmlNewDoc(reinterpret_cast<const xmlChar*>("1.0"));
    if (document == nullptr)
        throw std::bad_alloc();
    return document;
}

} // namespace

std::shared_ptr<Tree> Tree::Create(const DocumentSettings& settings)
{
    return std::make_shared<Tree>(settings);
}

Tree::Tree(const DocumentSettings& settings)
    : m_document(NewDocument()), m_settings(settings), m_xpath(m_document.get())
{
}

xmlNode* Tree::RootElement() const noexcept
{
    xmlNode* node = m_document->children;
    while (node != nullptr && !IsElement(node))
        node = node->next;
    return node;
}

XPathEngine& Tree::XPath()
{
    if (!m_isXPathCurrent)
    {
        m_xpath.SetNamespaces(m_settings.Bindings());
        m_isXPathCurrent = true;
    }
    return m_xpath;
}

void Tree::SelectionNamespacesChanged() noexcept
{
    m_isXPathCurrent = false;
}

} // namespace winport::dom
