// The interface id of an interface, by type.
//
// Each interface header of ours (or the header that gathers a platform's interfaces) specialises IidOf once, so that
// ComPtr::As<Other>() needs no id from its caller.
#pragma once

#include <unknwn.h>

template <class Interface>
struct IidOf;

template <>
struct IidOf<IUnknown>
{
    static const IID& Value()
    {
        return IID_IUnknown;
    }
};
