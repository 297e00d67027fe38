#include "complugins/ptpcprovider/deletenamed.h"

#include "complugins/ptpcprovider/domhelpers.h"
#include "complugins/ptpcprovider/printschemaxmldocument.h"

void DeleteNamed(const PrintSchemaXmlDocument& document, const CXString& elementName, const CXString& fullName,
                 std::size_t kept)
{
    constexpr ThrowSite kSite{W("DeleteNamed"), W("complugins\\ptpcprovider\\deletenamed")};
    ComPtr<IXMLDOMNodeList> elements;
    document.GetNodes(elementName, elements.Put());
    for (const ComPtr<IXMLDOMNode>& element : NodesOf(elements.Get(), kSite))
    {
        CComBSTR name;
        if (document.GetAttributeValue(element.Get(), PrintSchema::kNameAttribute, name.Put()) != S_OK ||
            name.View() != fullName.View())
            continue;
        if (kept > 0)
            --kept;
        else
            document.DeleteNode(element.Get());
    }
}
