#include "dom/elementobject.h"

#include <memory>
#include <string>

#include "dom/attributes.h"
#include "dom/links.h"
#include "dom/nodekinds.h"
#include "dom/strings.h"
#include "dom/variants.h"

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

// Joins the text with the texts behind it; an empty one goes. Answers the node to go on with.
xmlNode* NormalizeText(xmlNode* text)
{
    std::string joined(View(text->content));
    xmlNode* next = text->next;
    for (; next != nullptr && next->type == XML_TEXT_NODE; next = next->next)
        joined += View(next->content);
    if (text->next != next)
        SetContent(text, joined);
    xmlNode* const first = joined.empty() ? text : text->next;
    for (xmlNode* node = first; node != next;)
    {
        xmlNode* const unneeded = node;
        node = node->next;
        Unlink(unneeded);
        FreeIfUnheld(unneeded);
    }
    return next;
}

} // namespace

HRESULT ElementObject::get_tagName(BSTR* tagName)
{
    return Call([&] { return GetNodeName(tagName); });
}

HRESULT ElementObject::getAttribute(BSTR name, VARIANT* value)
{
    return Call(
        [&]
        {
            if (name == nullptr || value == nullptr)
                return E_INVALIDARG;
            SetEmpty(*value, VT_NULL);
            const xmlAttr* const attribute = FindAttribute(Node(), Utf8Of(name));
            if (attribute == nullptr)
                return S_FALSE;
            SetString(*value, NewBstr(ValueOf(attribute)));
            return S_OK;
        });
}

HRESULT ElementObject::setAttribute(BSTR name, VARIANT value)
{
    return Call(
        [&]
        {
            if (name == nullptr)
                return E_INVALIDARG;
            const std::unique_ptr<OLECHAR, FreeBstr> text(NewTextOf(value));
            SetAttribute(*this, Utf8Of(name), XmlTextOf(text.get()));
            return S_OK;
        });
}

HRESULT ElementObject::removeAttribute(BSTR name)
{
    return Call(
        [&]
        {
            if (name == nullptr)
                return E_INVALIDARG;
            xmlAttr* const attribute = FindAttribute(Node(), Utf8Of(name));
            if (attribute == nullptr)
                return S_FALSE;
            TakeAttribute(*this, attribute);
            return S_OK;
        });
}

HRESULT ElementObject::getAttributeNode(BSTR name, IXMLDOMAttribute** attribute)
{
    return Call(
        [&]
        {
            if (name == nullptr || attribute == nullptr)
                return E_INVALIDARG;
            *attribute = nullptr;
            xmlAttr* const found = FindAttribute(Node(), Utf8Of(name));
            if (found == nullptr)
                return S_FALSE;
            *attribute = ObjectOf(GetTree(), AsNode(found)).Detach<IXMLDOMAttribute>();
            return S_OK;
        });
}

HRESULT ElementObject::setAttributeNode(IXMLDOMAttribute* attribute, IXMLDOMAttribute** replaced)
{
    return Call(
        [&]
        {
            if (replaced != nullptr)
                *replaced = nullptr;
            const NodeRef added = CoreOf(attribute);
            if (!added)
                return E_INVALIDARG;
            NodeRef old = PutAttribute(*this, *added.Get());
            if (replaced != nullptr && old)
                *replaced = old.Detach<IXMLDOMAttribute>();
            return S_OK;
        });
}

HRESULT ElementObject::removeAttributeNode(IXMLDOMAttribute* attribute, IXMLDOMAttribute** removed)
{
    return Call(
        [&]
        {
            if (removed != nullptr)
                *removed = nullptr;
            const NodeRef old = CoreOf(attribute);
            if (!old || !IsAttribute(old->Node()) || old->Node()->parent != Node())
                return E_INVALIDARG;
            NodeRef taken = TakeAttribute(*this, AsAttribute(old->Node()));
            if (removed != nullptr)
                *removed = taken.Detach<IXMLDOMAttribute>();
            return S_OK;
        });
}

HRESULT ElementObject::getElementsByTagName(BSTR name, IXMLDOMNodeList** elements)
{
    return Call([&] { return GetElementsByName(name, elements); });
}

HRESULT ElementObject::normalize()
{
    return Call(
        [&]
        {
            GetTree()->CountChange();
            // Texts have no children, so joining them does not disturb the walk, if it goes on from the parent.
            for (xmlNode* node = Node(); node != nullptr; node = NextInSubtree(node, Node()))
            {
                for (xmlNode* child = node->children; child != nullptr;)
                    child = child->type == XML_TEXT_NODE ? NormalizeText(child) : child->next;
            }
            return S_OK;
        });
}

} // namespace winport::dom
