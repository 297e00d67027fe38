// NodeCore: what all node objects do, without the interface that they show (nodeobject.h adds that).
//
// There is at most one object per node; the node's `_private` points at it, which also says that the node is held.
// The object keeps its tree alive. When it goes, it frees the detached subtree that its node is in, unless another
// object holds a node of that (links.h).
#pragma once

#include <libxml/tree.h>

#include <atomic>
#include <string>
#include <utility>

#include "dom/newnodes.h"
#include "dom/tree.h"
#include "msxml2.h"

namespace winport::dom
{

// QueryInterface answers it with a NodeCore*, so that node arguments can be told from foreign objects.
inline constexpr IID kNodeCoreId{0x6D1F0B52, 0x7B6E, 0x4A0C, {0x9A, 0x41, 0x3E, 0x5D, 0x0C, 0x77, 0x21, 0xB8}};

class NodeCore
{
public:
    NodeCore(TreePtr tree, xmlNode* node) noexcept;
    NodeCore(const NodeCore&) = delete;
    NodeCore& operator=(const NodeCore&) = delete;
    virtual ~NodeCore();

    ULONG AddReference() noexcept;
    ULONG DropReference() noexcept;

    // The interface that is handed out; no reference is added.
    virtual IXMLDOMNode* AsInterface() noexcept = 0;

    const TreePtr& GetTree() const noexcept
    {
        return m_tree;
    }

    xmlNode* Node() const noexcept
    {
        return m_node;
    }

protected:
    // The object shows another node from now on.
    void Rebind(TreePtr tree, xmlNode* node) noexcept;

    // nodecorenames.cpp
    HRESULT GetNodeName(BSTR* name) const;
    HRESULT GetBaseName(BSTR* name) const;
    HRESULT GetNamespace(BSTR* uri) const;
    HRESULT GetKind(DOMNodeType* kind) const;

    // nodecorevalues.cpp
    HRESULT GetNodeValue(VARIANT* value) const;
    HRESULT PutNodeValue(const VARIANT& value);
    HRESULT GetTypedValue(VARIANT* value) const;
    HRESULT GetText(BSTR* text) const;
    HRESULT PutText(BSTR text);
    HRESULT GetXml(BSTR* xml) const;
    // The value of an attribute. Throws Failure: E_NOTIMPL for texts, comments and instructions, E_INVALIDARG for what
    // would change the meaning of names.
    void SetValue(const std::string& value);

    // nodecoretree.cpp
    HRESULT GetParent(IXMLDOMNode** parent) const;
    HRESULT GetChildren(IXMLDOMNodeList** children);
    HRESULT GetFirstChild(IXMLDOMNode** child) const;
    HRESULT GetNextSibling(IXMLDOMNode** sibling) const;
    HRESULT GetAttributes(IXMLDOMNamedNodeMap** attributes);
    HRESULT Append(IXMLDOMNode* child, IXMLDOMNode** appended);
    HRESULT Remove(IXMLDOMNode* child, IXMLDOMNode** removed);

    // nodecoreselection.cpp
    HRESULT SelectNodes(BSTR query, IXMLDOMNodeList** nodes) const;
    HRESULT SelectSingleNode(BSTR query, IXMLDOMNode** node) const;

private:
    TreePtr m_tree;
    xmlNode* m_node;
    std::atomic<ULONG> m_references{1};
};

// The owner of one reference to a node object.
class NodeRef
{
public:
    NodeRef() noexcept = default;

    // Takes over a reference.
    static NodeRef Adopt(NodeCore* core) noexcept
    {
        NodeRef result;
        result.m_core = core;
        return result;
    }

    static NodeRef Share(NodeCore* core) noexcept
    {
        if (core != nullptr)
            core->AddReference();
        return Adopt(core);
    }

    NodeRef(const NodeRef& other) noexcept : NodeRef(Share(other.m_core))
    {
    }

    NodeRef(NodeRef&& other) noexcept : m_core(std::exchange(other.m_core, nullptr))
    {
    }

    NodeRef& operator=(NodeRef other) noexcept
    {
        std::swap(m_core, other.m_core);
        return *this;
    }

    ~NodeRef()
    {
        if (m_core != nullptr)
            m_core->DropReference();
    }

    NodeCore* Get() const noexcept
    {
        return m_core;
    }

    NodeCore* operator->() const noexcept
    {
        return m_core;
    }

    explicit operator bool() const noexcept
    {
        return m_core != nullptr;
    }

    // Hands the reference over, as the interface that it is for the caller.
    template <class Interface>
    Interface* Detach() noexcept
    {
        return static_cast<Interface*>(std::exchange(m_core, nullptr)->AsInterface());
    }

private:
    NodeCore* m_core = nullptr;
};

// The object of a node of the tree, made when there is none. Throws std::bad_alloc.
NodeRef ObjectOf(const TreePtr& tree, xmlNode* node);

// Hands a node out: S_OK, or S_FALSE and null for no node; E_INVALIDARG without a place for it.
HRESULT HandOut(const TreePtr& tree, xmlNode* node, IXMLDOMNode** out);

// The object behind an interface that a caller passed. Empty for null. Throws Failure(E_INVALIDARG) for a foreign one.
NodeRef CoreOf(IUnknown* object);

// Hands out an object for a new node, which it owns from then on.
template <class Interface>
HRESULT HandOutNew(const TreePtr& tree, OwnedNode node, Interface** out)
{
    NodeRef object = ObjectOf(tree, node.get());
    static_cast<void>(node.release());
    *out = object.Detach<Interface>();
    return S_OK;
}

} // namespace winport::dom
