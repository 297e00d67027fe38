// NodeCore: queries.
#include "dom/nodecore.h"
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

} // namespace winport::dom
