// The frame of every COM method of the DOM: a fault point for tests, and the place where exceptions end.
#pragma once

#include <new>

#include "dom/failure.h"
#include "winport/faultinjection.h"

namespace winport::dom
{

template <class Body>
HRESULT Call(Body&& body) noexcept
{
    if (PlatformCallMustFail())
        return E_FAIL;
    try
    {
        return body();
    }
    catch (const Failure& failure)
    {
        return failure.code;
    }
    catch (const std::bad_alloc&)
    {
        return E_OUTOFMEMORY;
    }
    catch (...)
    {
        return E_FAIL;
    }
}

} // namespace winport::dom
