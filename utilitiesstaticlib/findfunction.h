// FindFunction<Function>(module, name): an exported function with its type; null when the module has none of the name.
//
// What stands under the name must be what the type says: the module's own header declares it.
#pragma once

#include <windows.h>

template <class Function>
[[nodiscard]] Function FindFunction(HMODULE module, const char* name) noexcept
{
    // By way of an untyped pointer: compilers warn of casts between function types.
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}
