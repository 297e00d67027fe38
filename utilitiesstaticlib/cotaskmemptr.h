// CoTaskMemPtr<T>: the owner of task memory that a COM call handed out.
#pragma once

#include <objbase.h>

#include <memory>

struct CoTaskMemDeleter
{
    void operator()(void* memory) const noexcept
    {
        CoTaskMemFree(memory);
    }
};

template <class T>
using CoTaskMemPtr = std::unique_ptr<T, CoTaskMemDeleter>;
