// NodeCore: names and kinds.
#include "dom/nodecore.h"
#include "dom/nodekinds.h"
#include "dom/strings.h"

namespace winport::dom
{

namespace
{

// An absent part is S_FALSE and null.
HRESULT HandOutText(std::string_view text, BSTR* out)
{
    if (out == nullptr)
        return E_INVALIDARG;
    *out = text.empty() ? nullptr : NewBstr(text);
    return text.empty() ? S_FALSE : S_OK;
}

} // namespace

HRESULT NodeCore::GetNodeName(BSTR* name) const
{
    return HandOutText(QualifiedNameOf(m_node), name);
}

HRESULT NodeCore::GetBaseName(BSTR* name) const
{
    const bool isNamed = IsElement(m_node) || IsAttribute(m_node) || m_node->type == XML_PI_NODE;
    return HandOutText(isNamed ? LocalNameOf(m_node) : std::string_view(), name);
}

HRESULT NodeCore::GetNamespace(BSTR* uri) const
{
    return HandOutText(NamespaceOf(m_node), uri);
}

HRESULT NodeCore::GetKind(DOMNodeType* kind) const
{
    if (kind == nullptr)
        return E_INVALIDARG;
    *kind = KindOf(m_node);
    return S_OK;
}

} // namespace winport::dom
