// LoadError: why a text was not taken, and where in it.
#pragma once

#include <cstddef>
#include <string>

#include "winerror.h"

namespace winport::dom
{

struct LoadError
{
    HRESULT code = E_FAIL;
    std::string reason; // one sentence, UTF-8
    LONG line = 0;      // from 1; 0 when the fault has no place
};

} // namespace winport::dom
