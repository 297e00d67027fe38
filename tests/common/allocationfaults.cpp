// The global allocation functions of a test program whose allocations can be made to fail, those of the standard
// library and of the modules that it loads among them. Those of over-aligned types, of which there are none, stay the
// platform's.
#include <cstdlib>
#include <new>

#include "winport/faultinjection.h"

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return winport::AllocationMustFail() ? nullptr : std::malloc(size != 0 ? size : 1);
}

void* operator new(std::size_t size)
{
    if (void* const memory = ::operator new(size, std::nothrow))
        return memory;
    throw std::bad_alloc();
}

void* operator new[](std::size_t size)
{
    return ::operator new(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}
