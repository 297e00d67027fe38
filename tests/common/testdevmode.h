// A devmode in a heap block of exactly its size, so that the address sanitizer sees every byte beyond it.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <span>
#include <vector>

class TestDevmode
{
public:
    // `blockSize` is the size of the memory, whatever the devmode claims.
    explicit TestDevmode(WORD publicSize = sizeof(DEVMODEW), WORD driverExtra = 0,
                         std::size_t blockSize = sizeof(DEVMODEW))
        : m_bytes(blockSize)
    {
        Write(offsetof(DEVMODEW, dmSpecVersion), DM_SPECVERSION);
        Write(offsetof(DEVMODEW, dmSize), publicSize);
        Write(offsetof(DEVMODEW, dmDriverExtra), driverExtra);
    }

    // The beginning of a devmode, both of its sizes cut to what the block holds.
    explicit TestDevmode(std::span<const std::byte> bytes) : m_bytes(bytes.begin(), bytes.end())
    {
        const std::size_t publicSize = std::min(sizeof(DEVMODEW), m_bytes.size());
        Write(offsetof(DEVMODEW, dmSize), static_cast<WORD>(publicSize));
        Write(offsetof(DEVMODEW, dmDriverExtra), static_cast<WORD>(m_bytes.size() - publicSize));
    }

    [[nodiscard]] DEVMODEW* Get() const noexcept
    {
        return reinterpret_cast<DEVMODEW*>(const_cast<std::byte*>(m_bytes.data()));
    }

    [[nodiscard]] std::vector<std::byte> Bytes() const
    {
        return m_bytes;
    }

    [[nodiscard]] ULONG Size() const noexcept
    {
        return static_cast<ULONG>(m_bytes.size());
    }

private:
    void Write(std::size_t offset, WORD value)
    {
        if (offset + sizeof(value) <= m_bytes.size())
            std::memcpy(&m_bytes[offset], &value, sizeof(value));
    }

    std::vector<std::byte> m_bytes; // as large as it was made: never resized
};
