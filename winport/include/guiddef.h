// GUID and its companions.
#pragma once

#include <cstring>

#include "windef.h"

struct GUID
{
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};

using IID = GUID;
using CLSID = GUID;
using REFGUID = const GUID&;
using REFIID = const IID&;
using REFCLSID = const CLSID&;

inline bool IsEqualGUID(REFGUID left, REFGUID right)
{
    return std::memcmp(&left, &right, sizeof(GUID)) == 0;
}

inline bool IsEqualIID(REFIID left, REFIID right)
{
    return IsEqualGUID(left, right);
}

inline bool operator==(REFGUID left, REFGUID right)
{
    return IsEqualGUID(left, right);
}

inline bool operator!=(REFGUID left, REFGUID right)
{
    return !IsEqualGUID(left, right);
}
