// OLE automation: BSTR and VARIANT functions, and IDispatch, from which the DOM's interfaces derive.
#pragma once

#include "wtypes.h"

extern "C"
{

    // Allocations that do not succeed, and lengths that do not fit the 32-bit byte count, give null.
    WINPORT_API BSTR WINAPI SysAllocString(const OLECHAR* text);
    // Copies `length` characters, zeros among them; a null text allocates without copying.
    WINPORT_API BSTR WINAPI SysAllocStringLen(const OLECHAR* text, UINT length);
    WINPORT_API void WINAPI SysFreeString(BSTR string);
    WINPORT_API UINT WINAPI SysStringLen(BSTR string);

    WINPORT_API void WINAPI VariantInit(VARIANT* variant);
    // Frees what the variant owns, a BSTR or an interface reference. DISP_E_BADVARTYPE, and nothing freed, for a type
    // that is not in VARENUM.
    WINPORT_API HRESULT WINAPI VariantClear(VARIANT* variant);

} // extern "C"

struct ITypeInfo;
struct EXCEPINFO;

struct DISPPARAMS
{
    VARIANTARG* rgvarg;
    DISPID* rgdispidNamedArgs;
    UINT cArgs;
    UINT cNamedArgs;
};

struct IDispatch : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** typeInfo) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID locale,
                                                    DISPID* ids) = 0;
    virtual HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID riid, LCID locale, WORD flags, DISPPARAMS* params,
                                             VARIANT* result, EXCEPINFO* exception, UINT* argumentError) = 0;
};

inline constexpr IID IID_IDispatch{0x00020400, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
