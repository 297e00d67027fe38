// BSTRs, with the layout that Windows publishes: length in bytes (32 bits), characters, a zero character.
#include <oleauto.h>

#include <algorithm>
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
    // An odd length has its terminator behind the padded last character, and its pad byte is zero.
    const auto length = static_cast<ByteLength>(byteLength);
    const std::size_t padded = (std::size_t{length} + 1) & ~std::size_t{1};
    auto* const block = static_cast<std::byte*>(std::malloc(kPrefixSize + padded + sizeof(OLECHAR)));
    if (block == nullptr)
        return nullptr;
    std::memcpy(block + kPrefixSize - sizeof(length), &length, sizeof(length));
    std::memset(block + kPrefixSize + length, 0, padded - length + sizeof(OLECHAR));
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

BSTR WINAPI SysAllocStringByteLen(LPCSTR bytes, UINT length)
{
    return AllocateCopy(bytes, length);
}

INT WINAPI SysReAllocStringLen(BSTR* string, const OLECHAR* text, UINT length)
{
    if (string == nullptr)
        return FALSE;
    BSTR const old = *string;
    // The text may lie within the old string: the old one goes last.
    BSTR const renewed = SysAllocStringLen(text, length);
    if (renewed == nullptr)
        return FALSE;
    if (text == nullptr && old != nullptr)
        std::memcpy(renewed, old, std::min(SysStringByteLen(old), SysStringByteLen(renewed)));
    SysFreeString(old);
    *string = renewed;
    return TRUE;
}

void WINAPI SysFreeString(BSTR string)
{
    if (string != nullptr)
        std::free(BytesOf(string) - kPrefixSize);
}

UINT WINAPI SysStringLen(BSTR string)
{
    return SysStringByteLen(string) / sizeof(OLECHAR);
}

UINT WINAPI SysStringByteLen(BSTR string)
{
    ByteLength length = 0;
    if (string != nullptr)
        std::memcpy(&length, BytesOf(string) - sizeof(length), sizeof(length));
    return length;
}
