#include "dom/nodecore.h"

#include "dom/attributeobject.h"
#include "dom/characterdataobject.h"
#include "dom/documentobject.h"
#include "dom/elementobject.h"
#include "dom/failure.h"
#include "dom/instructionobject.h"
#include "dom/links.h"
#include "dom/nodekinds.h"

namespace winport::dom
{

namespace
{

NodeCore* NewObject(const TreePtr& tree, xmlNode* node)
{
    switch (node->type)
    {
    case XML_ELEMENT_NODE:
        return new ElementObject(tree, node);
    case XML_ATTRIBUTE_NODE:
    case kDeclarationType:
        return new AttributeObject(tree, node);
    case XML_TEXT_NODE:
        return new TextObject(tree, node);
    case XML_CDATA_SECTION_NODE:
        return new CDataObject(tree, node);
    case XML_COMMENT_NODE:
        return new CommentObject(tree, node);
    case XML_PI_NODE:
        return new InstructionObject(tree, node);
    case XML_DOCUMENT_NODE:
        return new DocumentObject(tree);
    default:
        throw Failure{E_FAIL};
    }
}

} // namespace

NodeCore::NodeCore(TreePtr tree, xmlNode* node) noexcept : m_tree(std::move(tree)), m_node(node)
{
    m_node->_private = this;
}

NodeCore::~NodeCore()
{
    m_node->_private = nullptr;
    FreeIfUnheld(m_node);
}

ULONG NodeCore::AddReference() noexcept
{
    return ++m_references;
}

ULONG NodeCore::DropReference() noexcept
{
    const ULONG left = --m_references;
    if (left == 0)
        delete this;
    return left;
}

void NodeCore::Rebind(TreePtr tree, xmlNode* node) noexcept
{
    m_node->_private = nullptr;
    m_node = node;
    m_node->_private = this;
    m_tree = std::move(tree);
}

NodeRef ObjectOf(const TreePtr& tree, xmlNode* node)
{
    if (node->_private != nullptr)
        return NodeRef::Share(static_cast<NodeCore*>(node->_private));
    return NodeRef::Adopt(NewObject(tree, node));
}

HRESULT HandOut(const TreePtr& tree, xmlNode* node, IXMLDOMNode** out)
{
    if (out == nullptr)
        return E_INVALIDARG;
    *out = nullptr;
    if (node == nullptr)
        return S_FALSE;
    *out = ObjectOf(tree, node).Detach<IXMLDOMNode>();
    return S_OK;
}

NodeRef CoreOf(IUnknown* object)
{
    void* core = nullptr;
    if (object == nullptr)
        return NodeRef();
    if (FAILED(object->QueryInterface(kNodeCoreId, &core)))
        throw Failure{E_INVALIDARG};
    return NodeRef::Adopt(static_cast<NodeCore*>(core));
}

} // namespace winport::dom
