#include <oleauto.h>

namespace
{

bool IsKnownType(VARTYPE type)
{
    switch (type & ~VT_BYREF)
    {
    case VT_EMPTY:
    case VT_NULL:
        return (type & VT_BYREF) == 0;
    case VT_VARIANT: // exists as a reference only
        return (type & VT_BYREF) != 0;
    case VT_I2:
    case VT_I4:
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_BOOL:
    case VT_UNKNOWN:
    case VT_UI4:
    case VT_INT:
        return true;
    default:
        return false;
    }
}

// The interface that the variant holds a reference to, if it holds one.
IUnknown* OwnedInterface(const VARIANT& variant)
{
    if (variant.vt == VT_UNKNOWN)
        return variant.punkVal;
    if (variant.vt == VT_DISPATCH)
        return variant.pdispVal;
    return nullptr;
}

} // namespace

void WINAPI VariantInit(VARIANT* variant)
{
    *variant = VARIANT{};
}

HRESULT WINAPI VariantClear(VARIANT* variant)
{
    if (variant == nullptr)
        return E_INVALIDARG;
    if (!IsKnownType(variant->vt))
        return DISP_E_BADVARTYPE;
    if (variant->vt == VT_BSTR)
        SysFreeString(variant->bstrVal);
    else if (IUnknown* const held = OwnedInterface(*variant); held != nullptr)
        held->Release();
    *variant = VARIANT{};
    return S_OK;
}
