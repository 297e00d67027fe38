// NodeObject<Shown>: a node object, as the interface of its kind.
#pragma once

#include "dom/dispatch.h"
#include "dom/nodecore.h"

namespace winport::dom
{

// `OwnIds` are the interface ids that Shown answers beside IUnknown, IDispatch and IXMLDOMNode: its own and those
// between it and IXMLDOMNode. All are one pointer, for each derives from the one before.
template <class Shown, const IID&... OwnIds>
class NodeObject : public Dispatch<Shown>, public NodeCore
{
public:
    using NodeCore::NodeCore;

    IXMLDOMNode* AsInterface() noexcept override
    {
        return this;
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override
    {
        // Our own question is no call of the platform, so it is no fault point.
        if (riid == kNodeCoreId && object != nullptr)
        {
            AddReference();
            *object = static_cast<NodeCore*>(this);
            return S_OK;
        }
        return Call(
            [&]
            {
                if (object == nullptr)
                    return E_POINTER;
                const bool isKnown = riid == IID_IUnknown || riid == IID_IDispatch || riid == IID_IXMLDOMNode ||
                                     (... || (riid == OwnIds));
                *object = isKnown ? static_cast<IXMLDOMNode*>(this) : nullptr;
                if (!isKnown)
                    return E_NOINTERFACE;
                AddReference();
                return S_OK;
            });
    }

    ULONG STDMETHODCALLTYPE AddRef() override
    {
        return AddReference();
    }

    ULONG STDMETHODCALLTYPE Release() override
    {
        return DropReference();
    }

    HRESULT STDMETHODCALLTYPE get_nodeName(BSTR* name) override
    {
        return Call([&] { return GetNodeName(name); });
    }

    HRESULT STDMETHODCALLTYPE get_nodeValue(VARIANT* value) override
    {
        return Call([&] { return GetNodeValue(value); });
    }

    HRESULT STDMETHODCALLTYPE put_nodeValue(VARIANT) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE get_nodeType(DOMNodeType* kind) override
    {
        return Call([&] { return GetKind(kind); });
    }

    HRESULT STDMETHODCALLTYPE get_parentNode(IXMLDOMNode** parent) override
    {
        return Call([&] { return GetParent(parent); });
    }

    HRESULT STDMETHODCALLTYPE get_childNodes(IXMLDOMNodeList** children) override
    {
        return Call([&] { return GetChildren(children); });
    }

    HRESULT STDMETHODCALLTYPE get_firstChild(IXMLDOMNode** child) override
    {
        return Call([&] { return GetFirstChild(child); });
    }

    HRESULT STDMETHODCALLTYPE get_lastChild(IXMLDOMNode**) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE get_previousSibling(IXMLDOMNode**) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE get_nextSibling(IXMLDOMNode** sibling) override
    {
        return Call([&] { return GetNextSibling(sibling); });
    }

    HRESULT STDMETHODCALLTYPE get_attributes(IXMLDOMNamedNodeMap** attributes) override
    {
        return Call([&] { return GetAttributes(attributes); });
    }

    HRESULT STDMETHODCALLTYPE insertBefore(IXMLDOMNode*, VARIANT, IXMLDOMNode**) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE replaceChild(IXMLDOMNode*, IXMLDOMNode*, IXMLDOMNode**) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE removeChild(IXMLDOMNode* child, IXMLDOMNode** removed) override
    {
        return Call([&] { return Remove(child, removed); });
    }

    HRESULT STDMETHODCALLTYPE appendChild(IXMLDOMNode* child, IXMLDOMNode** appended) override
    {
        return Call([&] { return Append(child, appended); });
    }

    HRESULT STDMETHODCALLTYPE hasChildNodes(VARIANT_BOOL*) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE get_ownerDocument(IXMLDOMDocument**) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE cloneNode(VARIANT_BOOL, IXMLDOMNode**) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE get_nodeTypeString(BSTR*) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE get_text(BSTR* text) override
    {
        return Call([&] { return GetText(text); });
    }

    HRESULT STDMETHODCALLTYPE put_text(BSTR text) override
    {
        return Call([&] { return PutText(text); });
    }

    HRESULT STDMETHODCALLTYPE get_specified(VARIANT_BOOL*) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE get_definition(IXMLDOMNode**) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE get_nodeTypedValue(VARIANT* value) override
    {
        return Call([&] { return GetTypedValue(value); });
    }

    HRESULT STDMETHODCALLTYPE put_nodeTypedValue(VARIANT) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE get_dataType(VARIANT*) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE put_dataType(BSTR) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE get_xml(BSTR* xml) override
    {
        return Call([&] { return GetXml(xml); });
    }

    HRESULT STDMETHODCALLTYPE transformNode(IXMLDOMNode*, BSTR*) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE selectNodes(BSTR query, IXMLDOMNodeList** nodes) override
    {
        return Call([&] { return SelectNodes(query, nodes); });
    }

    HRESULT STDMETHODCALLTYPE selectSingleNode(BSTR query, IXMLDOMNode** node) override
    {
        return Call([&] { return SelectSingleNode(query, node); });
    }

    HRESULT STDMETHODCALLTYPE get_parsed(VARIANT_BOOL*) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE get_namespaceURI(BSTR* uri) override
    {
        return Call([&] { return GetNamespace(uri); });
    }

    HRESULT STDMETHODCALLTYPE get_prefix(BSTR*) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE get_baseName(BSTR* name) override
    {
        return Call([&] { return GetBaseName(name); });
    }

    HRESULT STDMETHODCALLTYPE transformNodeToObject(IXMLDOMNode*, VARIANT) override
    {
        return Call([] { return E_NOTIMPL; });
    }
};

} // namespace winport::dom
