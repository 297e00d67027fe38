// Crc32: the CRC-32 of IEEE 802.3 (reflected polynomial 0xEDB88320, start and final value 0xFFFFFFFF), as Ethernet, zip
// and PNG have it. Of the nine characters "123456789" it is 0xCBF43926.
#pragma once

#include <cstddef>

#include "utilitiesstaticlib/wideliteral.h"

class TVUTIL_API Crc32
{
public:
    // The seed chains: with the result for some bytes as seed, the result is the one for both parts in a row. Size 0
    // gives the seed back; null is allowed with it.
    [[nodiscard]] static ULONG GetCrc(const void* data, std::size_t size, ULONG seed = 0) noexcept;
};
