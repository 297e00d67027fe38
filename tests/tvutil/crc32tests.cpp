#include <numeric>
#include <vector>

#include <gtest/gtest.h>

#include <tvutil/crc32.h>

// The sliced form must agree with the definition for every length and start, and chain at every place.
TEST(Crc32, AgreesWithTheBitwiseDefinitionAndChains)
{
    const auto byDefinition = [](const BYTE* bytes, std::size_t size)
    {
        ULONG crc = 0xFFFFFFFF;
        for (std::size_t index = 0; index < size; ++index)
        {
            crc ^= bytes[index];
            for (int bit = 0; bit < 8; ++bit)
                crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
        }
        return crc ^ 0xFFFFFFFF;
    };
    std::vector<BYTE> bytes(67);
    std::iota(bytes.begin(), bytes.end(), BYTE{200});
    for (std::size_t start = 0; start < 9; ++start)
        for (std::size_t size = 0; start + size <= bytes.size(); ++size)
            ASSERT_EQ(Crc32::GetCrc(bytes.data() + start, size), byDefinition(bytes.data() + start, size))
                << start << "+" << size;
    const ULONG whole = Crc32::GetCrc(bytes.data(), bytes.size());
    for (std::size_t cut = 0; cut <= bytes.size(); ++cut)
        EXPECT_EQ(Crc32::GetCrc(bytes.data() + cut, bytes.size() - cut, Crc32::GetCrc(bytes.data(), cut)), whole);
}
