// Small tools over the DOM's interfaces, for the document wrappers and the translators.
#pragma once

#include <tvutil/cxstring.h>
#include <tvutil/throwsite.h>

#include <vector>

#include "complugins/ptpcprovider/printticketquerybuilder.h"
#include "utilitiesstaticlib/ccombstr.h"
#include "utilitiesstaticlib/comptr.h"
#include "utilitiesstaticlib/domiids.h"

// A new string; running out of memory is thrown as TavlenComException with E_OUTOFMEMORY, from the caller's place.
CComBSTR MakeBstr(WStringView text, ThrowSite site);

// Somebody else's text (a form's name, cut anywhere) as a document can hold it: control characters become blanks, what
// is no character U+FFFD.
CXString TextForDocument(WStringView text);

// The finished query of a builder.
CXString QueryOf(const PrintTicketQueryBuilder& builder);

// The string as an argument; the string stays its owner's and must outlive the call.
VARIANT BorrowAsVariant(const CComBSTR& text) noexcept;

// The owner of a VARIANT that a call hands out.
class OwnedVariant
{
public:
    OwnedVariant() noexcept;
    ~OwnedVariant();
    OwnedVariant(const OwnedVariant&) = delete;
    OwnedVariant& operator=(const OwnedVariant&) = delete;

    VARIANT* Put() noexcept; // what was held is cleared first
    [[nodiscard]] const VARIANT& Get() const noexcept;
    // Of a VT_BSTR; the string is the caller's.
    [[nodiscard]] BSTR DetachString() noexcept;

private:
    VARIANT m_variant{};
};

// The nodes of a list or an attribute map, as they are now: nodes may be removed while the result is walked. Maps are
// walked by index, which visits namespace declarations in every DOM; nextNode does not.
std::vector<ComPtr<IXMLDOMNode>> NodesOf(IXMLDOMNodeList* list, ThrowSite site);
std::vector<ComPtr<IXMLDOMNode>> NodesOf(IXMLDOMNamedNodeMap* map, ThrowSite site);

// S_FALSE when the node has no such attribute, or can have none.
HRESULT FindAttribute(IXMLDOMNode* node, const CXString& name, ComPtr<IXMLDOMNode>& attribute, ThrowSite site);
