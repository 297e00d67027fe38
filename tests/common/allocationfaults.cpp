// The global allocation functions of a test program whose allocations can be made to fail, those of the standard
// library and of the modules that it loads among them.
#include <cstdlib>
#include <new>

#include "winport/faultinjection.h"

namespace
{

void* AllocateOrNull(std::size_t size) noexcept
{
    return winport::AllocationMustFail() ? nullptr : std::malloc(size != 0 ? size : 1);
}

void* AllocateOrNull(std::size_t size, std::align_val_t alignment) noexcept
{
    if (winport::AllocationMustFail())
        return nullptr;
    // aligned_alloc wants a multiple of the alignment.
    const auto unit = static_cast<std::size_t>(alignment);
    const std::size_t padded = size != 0 ? (size + unit - 1) / unit * unit : unit;
    return padded >= size ? std::aligned_alloc(unit, padded) : nullptr;
}

void* OrThrow(void* memory)
{
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

} // namespace

void* operator new(std::size_t size)
{
    return OrThrow(AllocateOrNull(size));
}

void* operator new[](std::size_t size)
{
    return OrThrow(AllocateOrNull(size));
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return AllocateOrNull(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return AllocateOrNull(size);
}

void* operator new(std::size_t size, std::align_val_t alignment)
{
    return OrThrow(AllocateOrNull(size, alignment));
}

void* operator new[](std::size_t size, std::align_val_t alignment)
{
    return OrThrow(AllocateOrNull(size, alignment));
}

void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept
{
    return AllocateOrNull(size, alignment);
}

void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept
{
    return AllocateOrNull(size, alignment);
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

void operator delete(void* memory, std::align_val_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::align_val_t) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t, std::align_val_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::align_val_t, const std::nothrow_t&) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::align_val_t, const std::nothrow_t&) noexcept
{
    std::free(memory);
}
