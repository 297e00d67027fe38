// A devmode in a heap block of exactly its size, so that the address sanitizer sees every byte beyond it.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <vector>

class TestDevmode
{
public:
    // `blockSize` is the size of the memory, whatever the devmode claims.
    explicit TestDevmode(WORD publicSize = sizeof(DEVMODEW), WORD driverExtra = 0,
                         std::size_t blockSize = sizeof(DEVMODEW))
        : m_size(blockSize), m_bytes(std::make_unique<std::byte[]>(blockSize))
    {
        Write(offsetof(DEVMODEW, dmSpecVersion), DM_SPECVERSION);
        Write(offsetof(DEVMODEW, dmSize), publicSize);
        Write(offsetof(DEVMODEW, dmDriverExtra), driverExtra);
    }

    [[nodiscard]] DEVMODEW* Get() const noexcept
    {
        return reinterpret_cast<DEVMODEW*>(m_bytes.get());
    }

    [[nodiscard]] std::vector<std::byte> Bytes() const
    {
        return {m_bytes.get(), m_bytes.get() + m_size};
    }

    [[nodiscard]] ULONG Size() const noexcept
    {
        return static_cast<ULONG>(m_size);
    }

private:
    void Write(std::size_t offset, WORD value)
    {
        if (offset + sizeof(value) <= m_size)
            std::memcpy(m_bytes.get() + offset, &value, sizeof(value));
    }

    std::size_t m_size;
    std::unique_ptr<std::byte[]> m_bytes;
};
