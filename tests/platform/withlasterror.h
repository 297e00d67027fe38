// A call together with the last error that it left. Anything that runs between the two, an assertion of the test
// framework too, may set another error on Windows.
#pragma once

#include <windows.h>

#include <utility>

template <class Call>
auto WithLastError(Call call)
{
    SetLastError(ERROR_SUCCESS);
    auto result = call();
    const DWORD error = GetLastError();
    return std::pair(std::move(result), error);
}
