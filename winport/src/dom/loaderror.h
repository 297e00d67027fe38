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
    std::string reason;     // one sentence, UTF-8
    LONG line = 0;          // from 1; 0 when the fault has no place
    LONG column = 0;        // from 1, in bytes of UTF-8
    LONG offset = 0;        // in bytes of UTF-8
    std::string sourceLine; // the start of the line, UTF-8
};

} // namespace winport::dom
