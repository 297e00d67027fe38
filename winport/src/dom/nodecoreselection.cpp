// NodeCore: queries.
#include "dom/nodecore.h"
#include "dom/nodekinds.h"
#include "dom/nodelists.h"
#include "dom/strings.h"

namespace winport::dom
{

HRESULT NodeCore::SelectNodes(BSTR query, IXMLDOMNodeList** nodes) const
{
    if (query == nullptr || nodes == nullptr)
        return E_INVALIDARG;
    *nodes = nullptr;
    std::vector<NodeRef> found;
    for (xmlNode* const node : m_tree->XPath().Select(m_node, Utf8Of(query)))
        found.push_back(ObjectOf(m_tree, node));
    *nodes = new SnapshotList(std::move(found));
    return S_OK;
}

HRESULT NodeCore::SelectSingleNode(BSTR query, IXMLDOMNode** node) const
{
    if (query == nullptr || node == nullptr)
        return E_INVALIDARG;
    *node = nullptr;
    return HandOut(m_tree, m_tree->XPath().SelectFirst(m_node, Utf8Of(query)), node);
}

// By qualified name, prefix and all; "*" means every element.
HRESULT NodeCore::GetElementsByName(BSTR name, IXMLDOMNodeList** elements) const
{
    if (name == nullptr || elements == nullptr)
        return E_INVALIDARG;
    *elements = nullptr;
    const std::string wanted = Utf8Of(name);
    std::vector<NodeRef> found;
    for (xmlNode* node = NextInSubtree(m_node, m_node); node != nullptr; node = NextInSubtree(node, m_node))
    {
        if (IsElement(node) && (wanted == "*" || HasQualifiedName(node, wanted)))
            found.push_back(ObjectOf(m_tree, node));
    }
    *elements = new SnapshotList(std::move(found));
    return S_OK;
}

} // namespace winport::dom
