// BSTRs, with the layout that Windows publishes: length in bytes (32 bits), characters, a zero character.
#include <oleauto.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include "winport/faultinjection.h"

namespace
{

// The characters start at a multiple of 8, as on 64-bit Windows; the length fills the second half of the prefix.
constexpr std::size_t kPrefixSize = 8;

using ByteLength = std::uint32_t;

constexpr std::uint64_t kMostBytes = std::numeric_limits<ByteLength>::max() - kPrefixSize - 2 * sizeof(OLECHAR);

std::byte* BytesOf(BSTR string)
{
    return reinterpret_cast<std::byte*>(string);
}

// The characters are not initialised, the terminator is.
BSTR Allocate(std::uint64_t byteLength)
{
    if (byteLength > kMostBytes || winport::AllocationMustFail())
        return nullptr;
    const auto length = static_cast<ByteLength>(byteLength);
    auto* const block = static_cast<std::byte*>(std::malloc(kPrefixSize + std::size_t{length} + sizeof(OLECHAR)));
    if (block == nullptr)
        return nullptr;
    std::memcpy(block + kPrefixSize - sizeof(length), &length, sizeof(length));
    std::memset(block + kPrefixSize + length, 0, sizeof(OLECHAR));
    return reinterpret_cast<BSTR>(block + kPrefixSize);
}

BSTR AllocateCopy(const void* bytes, std::uint64_t byteLength)
{
    BSTR const string = Allocate(byteLength);
    if (string != nullptr && bytes != nullptr)
        std::memcpy(string, bytes, static_cast<std::size_t>(byteLength));
    return string;
}

} // namespace

BSTR WINAPI SysAllocString(const OLECHAR* text)
{
    if (text == nullptr)
        return nullptr;
    return AllocateCopy(text, std::uint64_t{std::char_traits<OLECHAR>::length(text)} * sizeof(OLECHAR));
}

BSTR WINAPI SysAllocStringLen(const OLECHAR* text, UINT length)
{
    return AllocateCopy(text, std::uint64_t{length} * sizeof(OLECHAR));
}

void WINAPI SysFreeString(BSTR string)
{
    if (string != nullptr)
        std::free(BytesOf(string) - kPrefixSize);
}

UINT WINAPI SysStringLen(BSTR string)
{
    ByteLength length = 0;
    if (string != nullptr)
        std::memcpy(&length, BytesOf(string) - sizeof(length), sizeof(length));
    return length / sizeof(OLECHAR);
}
