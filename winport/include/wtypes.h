// BSTR and VARIANT.
//
// A BSTR points at the first character; the 32-bit length in bytes stands before it and a zero character behind it.
#pragma once

#include "unknwn.h"

using OLECHAR = WCHAR;
using LPOLESTR = OLECHAR*;
using LPCOLESTR = const OLECHAR*;
using BSTR = OLECHAR*;
using VARIANT_BOOL = short;
using VARTYPE = unsigned short;
using DISPID = LONG;
using SCODE = LONG;

inline constexpr VARIANT_BOOL VARIANT_TRUE = -1;
inline constexpr VARIANT_BOOL VARIANT_FALSE = 0;

enum VARENUM : VARTYPE
{
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_BSTR = 8,
    VT_DISPATCH = 9,
    VT_BOOL = 11,
    VT_VARIANT = 12,
    VT_UNKNOWN = 13,
    VT_UI4 = 19,
    VT_INT = 22,
    VT_BYREF = 0x4000,
};

struct IDispatch;

// The anonymous structure is the platform's own shape, not the language's.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"

struct VARIANT
{
    VARTYPE vt;
    WORD wReserved1;
    WORD wReserved2;
    WORD wReserved3;
    union
    {
        LONGLONG llVal;
        LONG lVal;
        SHORT iVal;
        INT intVal;
        ULONG ulVal;
        VARIANT_BOOL boolVal;
        BSTR bstrVal;
        IUnknown* punkVal;
        IDispatch* pdispVal;
        BSTR* pbstrVal;
        VARIANT* pvarVal;
        void* byref;
        struct
        {
            void* pvRecord;
            void* pRecInfo;
        };
    };
};

#pragma GCC diagnostic pop

using VARIANTARG = VARIANT;
using LPVARIANT = VARIANT*;

static_assert(sizeof(VARIANT) == 24);
