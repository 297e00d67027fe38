#include "dom/domfactory.h"

#include "dom/documentobject.h"

namespace winport::dom
{

HRESULT CreateDomDocument(REFIID riid, void** object)
{
    if (object == nullptr)
        return E_POINTER;
    *object = nullptr;
    return Call(
        [&]
        {
            const TreePtr tree = Tree::Create(DocumentSettings());
            return ObjectOf(tree, tree->DocumentNode())->AsInterface()->QueryInterface(riid, object);
        });
}

} // namespace winport::dom
