#include <array>
#include <vector>

#include <gtest/gtest.h>

#include <tvutil/bytebuffer.h>
#include <tvutil/bytereader.h>
#include <tvutil/bytewriter.h>

TEST(ByteBuffer, ReadsItsFirstWordAndNothingOfAShorterContent)
{
    const BYTE bytes[] = {0x01, 0x02, 0x03, 0xF4, 0x55};
    for (std::size_t size = 0; size <= sizeof(bytes); ++size)
        EXPECT_EQ(ByteBuffer(bytes, size).getDword(), size >= 4 ? 0xF4030201u : 0u) << size;
}

TEST(ByteBuffer, SettingMayTakeNothingOrAPartOfItself)
{
    ByteBuffer buffer("abcdef", 6);
    buffer.setWithLpbyte(buffer.data() + 2, 3);
    EXPECT_EQ(buffer, ByteBuffer("cde", 3));
    while (buffer.size() < 3000) // grows again and again while it reads from itself
        buffer.append(buffer.bytes());
    EXPECT_EQ(buffer.data()[2999], "cde"[2999 % 3]);
    buffer.setWithLpbyte(nullptr, 7);
    EXPECT_TRUE(buffer.empty());
}

TEST(ByteBuffer, ReadsStringsWithAndWithoutTerminator)
{
    ByteBuffer terminated;
    terminated.appendString(W("excel.exe"));
    constexpr std::size_t kBytes = 9 * sizeof(WCHAR);
    for (std::size_t size = 0; size <= terminated.size(); ++size)
    {
        const CXString text = ByteBuffer(terminated.bytes().first(size)).getAsStringValue();
        EXPECT_EQ(text, CXString(W("excel.exe")).Mid(0, std::min(size, kBytes) / 2)) << size;
    }
    terminated.appendString(W("behind"));
    EXPECT_EQ(terminated.getAsStringValue(), W("excel.exe"));
}

TEST(ByteBuffer, ReadsAnsiTextAndWritesAscii)
{
    EXPECT_EQ(ByteBuffer("Gr\xFC\xDF\x65\x80\x9F\x81", 8).getAsStringValueFromAnsiBuffer(),
              W("Gr\u00fc\u00dfe\u20ac\u0178\x81")); // unlike Latin-1
    EXPECT_EQ(ByteBuffer("ab\0cd", 5).getAsStringValueFromAnsiBuffer(), W("ab"));
    ByteBuffer text("x", 1);
    text.appendAscii(W("A\u00e9\u20ac\x7f"));
    EXPECT_EQ(text, ByteBuffer("xA??\x7f", 5));
}

// Each length of the same record: either it is read whole, or the reader has failed, and nothing behind the end is
// touched (the vector is exactly as long as the part that may be read).
TEST(ByteReader, FailsAtEveryTruncation)
{
    std::array<std::byte, 1 + 2 + 4 + 8 + 2 + 3> record{};
    ByteWriter writer(record);
    writer.U8(1);
    writer.U16(0x0302);
    writer.I32(-5);
    writer.U64(0x0807060504030201);
    writer.String(W("x"));
    writer.Bytes(std::array{std::byte{7}, std::byte{8}, std::byte{9}});
    ASSERT_TRUE(writer.Ok() && writer.Position() == record.size());

    for (std::size_t size = 0; size <= record.size(); ++size)
    {
        const std::vector<std::byte> part(record.begin(), record.begin() + static_cast<std::ptrdiff_t>(size));
        ByteReader reader(part);
        EXPECT_EQ(reader.U8(), size >= 1 ? 1 : 0);
        EXPECT_EQ(reader.U16(), size >= 3 ? 0x0302 : 0);
        EXPECT_EQ(reader.I32(), size >= 7 ? -5 : 0);
        EXPECT_EQ(reader.U64(), size >= 15 ? 0x0807060504030201u : 0u);
        EXPECT_EQ(reader.String(1).size(), size >= 17 ? 1u : 0u);
        EXPECT_EQ(reader.Bytes(3).size(), size >= 20 ? 3u : 0u);
        EXPECT_EQ(reader.Ok(), size == record.size()) << size;
    }
}

TEST(ByteReader, StaysFailedAndIsNotFooledByHugeCounts)
{
    const std::array<std::byte, 8> bytes{};
    ByteReader reader(bytes);
    EXPECT_TRUE(reader.Bytes(static_cast<std::size_t>(-1)).empty());
    reader.U8();
    EXPECT_FALSE(reader.Ok());
    // Twice the count would wrap around to 2.
    EXPECT_TRUE(ByteReader(bytes).String(static_cast<std::size_t>(-1) / 2 + 2).empty());
}

TEST(ByteWriter, WritesNothingThatDoesNotFit)
{
    std::array<std::byte, 4> bytes{};
    ByteWriter writer{std::span(bytes).first(3)};
    writer.U16(0xFFFF);
    writer.U16(0xFFFF);
    writer.U8(0xFF); // would fit, but the writer has failed
    EXPECT_FALSE(writer.Ok());
    EXPECT_EQ(bytes, (std::array{std::byte{0xFF}, std::byte{0xFF}, std::byte{0}, std::byte{0}}));
}
