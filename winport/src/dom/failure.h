// Failures inside the DOM: thrown with the HRESULT that the COM method is to return.
#pragma once

#include "winerror.h"

namespace winport::dom
{

struct Failure
{
    HRESULT code;
};

} // namespace winport::dom
