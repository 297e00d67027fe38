// NodeCore: values, text and XML.
#include <memory>

#include "dom/failure.h"
#include "dom/links.h"
#include "dom/nodecore.h"
#include "dom/nodekinds.h"
#include "dom/nodetext.h"
#include "dom/serializer.h"
#include "dom/strings.h"
#include "dom/variants.h"
#include "oleauto.h"

namespace winport::dom
{

namespace
{

struct FreeBstr
{
    void operator()(BSTR text) const noexcept
    {
        SysFreeString(text);
    }
};

std::string ValueText(const VARIANT& value)
{
    const std::unique_ptr<OLECHAR, FreeBstr> text(NewTextOf(value));
    return XmlTextOf(text.get());
}

bool HasValue(const xmlNode* node)
{
    return IsAttribute(node) || IsText(node) || node->type == XML_COMMENT_NODE || node->type == XML_PI_NODE;
}

// One text child instead of all children; the empty text leaves an element without any.
void ReplaceChildrenByText(Tree& tree, xmlNode* parent, const std::string& text)
{
    OwnedNode node = text.empty() && !IsAttribute(parent) ? nullptr : NewText(tree.Document(), text);
    RemoveChildren(parent);
    if (node != nullptr)
        LinkChild(parent, node.release(), nullptr);
    tree.CountChange();
}

} // namespace

HRESULT NodeCore::GetNodeValue(VARIANT* value) const
{
    if (value == nullptr)
        return E_INVALIDARG;
    if (!HasValue(m_node))
    {
        SetEmpty(*value, VT_NULL);
        return S_FALSE;
    }
    SetString(*value, IsAttribute(m_node) ? NewBstr(ValueOf(AsAttribute(m_node))) : NewBstr(View(m_node->content)));
    return S_OK;
}

HRESULT NodeCore::PutNodeValue(const VARIANT& value)
{
    if (!HasValue(m_node))
        return E_FAIL;
    SetValue(ValueText(value));
    return S_OK;
}

// Without a declared data type the typed value is the text.
HRESULT NodeCore::GetTypedValue(VARIANT* value) const
{
    if (!IsElement(m_node))
        return GetNodeValue(value);
    if (value == nullptr)
        return E_INVALIDARG;
    SetString(*value, NewBstr(TextOf(m_node, m_tree->Settings().preserveWhiteSpace)));
    return S_OK;
}

HRESULT NodeCore::GetText(BSTR* text) const
{
    if (text == nullptr)
        return E_INVALIDARG;
    *text = nullptr;
    *text = NewBstr(TextOf(m_node, m_tree->Settings().preserveWhiteSpace));
    return S_OK;
}

HRESULT NodeCore::PutText(BSTR text)
{
    const std::string value = XmlTextOf(text);
    if (HasValue(m_node))
        SetValue(value);
    else if (IsElement(m_node))
        ReplaceChildrenByText(*m_tree, m_node, value);
    else
        return E_FAIL;
    return S_OK;
}

HRESULT NodeCore::GetXml(BSTR* xml) const
{
    if (xml == nullptr)
        return E_INVALIDARG;
    *xml = nullptr;
    *xml = NewBstr(Serialize(m_node));
    return S_OK;
}

void NodeCore::SetValue(const std::string& value)
{
    if (!IsAttribute(m_node))
        throw Failure{E_NOTIMPL};
    // Names below were resolved by an element's declaration; it cannot come to mean another namespace under them.
    if (IsDeclaration(m_node) && m_node->parent != nullptr && ValueOf(AsAttribute(m_node)) != value)
        throw Failure{E_INVALIDARG};
    ReplaceChildrenByText(*m_tree, m_node, value);
}

} // namespace winport::dom
