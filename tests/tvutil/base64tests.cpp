#include <optional>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tvutil/tavlenutilities.h>

namespace
{

using Bytes = std::vector<BYTE>;

constexpr DWORD kDefault = TavlenUtilities::kBase64Default;
constexpr DWORD kNoPadding = TavlenUtilities::kBase64NoPadding;
constexpr DWORD kOneLine = TavlenUtilities::kBase64NoLineBreaks;

Bytes ToBytes(std::string_view text)
{
    return Bytes(text.begin(), text.end());
}

// The room is exactly the required length, so that the sanitizers see a character too many.
CXString Encode(const Bytes& bytes, DWORD flags)
{
    const int size = static_cast<int>(bytes.size());
    int length = TavlenUtilities::Base64EncodeGetRequiredLength(size, flags);
    std::vector<WCHAR> room(static_cast<std::size_t>(length));
    EXPECT_TRUE(TavlenUtilities::Base64Encode(bytes.data(), size, room.data(), &length, flags));
    return CXString(WStringView(room.data(), room.size()));
}

std::optional<Bytes> Decode(WStringView text)
{
    const std::vector<WCHAR> exact(text.begin(), text.end());
    const int size = static_cast<int>(exact.size());
    int length = TavlenUtilities::Base64DecodeGetRequiredLength(size);
    Bytes room(static_cast<std::size_t>(length));
    if (!TavlenUtilities::Base64Decode(exact.data(), size, room.data(), &length))
        return std::nullopt;
    room.resize(static_cast<std::size_t>(length));
    return room;
}

TEST(Base64, WritesAndReadsTheStandardsVectors)
{
    constexpr std::tuple<std::string_view, const char*, const char*> kCases[] = {
        {"f", "Zg==", "Zg"},
        {"fo", "Zm8=", "Zm8"},
        {"foo", "Zm9v", "Zm9v"},
        {"\xFB\xEF\xFF", "++//", "++//"},
    };
    for (const auto& [plain, padded, unpadded] : kCases)
    {
        SCOPED_TRACE(padded);
        const Bytes bytes = ToBytes(plain);
        EXPECT_EQ(Encode(bytes, kDefault).ToUtf8(), padded);
        EXPECT_EQ(Encode(bytes, kOneLine | kNoPadding).ToUtf8(), unpadded);
        EXPECT_EQ(Decode(CXString::FromUtf8(padded)), bytes);
        EXPECT_EQ(Decode(CXString::FromUtf8(unpadded)), bytes);
    }
}

TEST(Base64, EverySizeComesBackWithEveryFlag)
{
    for (std::size_t size = 0; size < 260; ++size)
    {
        Bytes bytes(size);
        for (std::size_t index = 0; index < size; ++index)
            bytes[index] = static_cast<BYTE>(index * 37 + size);
        for (const DWORD flags : {kDefault, kNoPadding, kOneLine, kOneLine | kNoPadding})
            ASSERT_EQ(Decode(Encode(bytes, flags)), bytes) << size << " bytes, flags " << flags;
    }
    const CXString lines = Encode(Bytes(57 * 2 + 1), kDefault);
    EXPECT_EQ(lines.Find(W("\r\n")), 76u);
    EXPECT_EQ(Encode(Bytes(57), kDefault).Length(), 76u) << "no break behind the last line";
}

TEST(Base64, RefusesMalformedText)
{
    constexpr std::pair<const char*, WStringView> kCases[] = {
        {"lone digit behind a group", W("Zm9vY")},  {"half of the padding", W("Zg=")},
        {"too much padding", W("Zg===")},           {"padding within", W("Z=g=")},
        {"text behind the padding", W("Zg==Zg==")}, {"a group of padding", W("Zm9v====")},
        {"foreign character", W("Zm9*")},           {"a character whose low byte is a digit", W("Zm9\u0141")},
        {"no-break space", W("Zm8=\u00a0")},        {"bits that belong to no byte", W("Zh==")},
    };
    for (const auto& [fault, text] : kCases)
        EXPECT_FALSE(Decode(text).has_value()) << fault;
    EXPECT_EQ(Decode(W(" Zm\t9\r\nv ")), ToBytes("foo")) << "blanks are no fault";
}

TEST(Base64, WritesNothingIntoARoomThatIsTooSmall)
{
    const Bytes bytes = ToBytes("foobar");
    WCHAR room[8] = {W('x')};
    int length = 7;
    EXPECT_FALSE(TavlenUtilities::Base64Encode(bytes.data(), 6, room, &length, kOneLine));
    EXPECT_EQ(length, 8) << "what is required";
    EXPECT_EQ(room[0], W('x'));

    BYTE small[3] = {};
    length = 2;
    EXPECT_FALSE(TavlenUtilities::Base64Decode(W("Zm9v"), 4, small, &length));
    EXPECT_EQ(length, 0);
    EXPECT_EQ(small[2], 0);
    for (const int size : {-1, 2000000000})
        EXPECT_EQ(TavlenUtilities::Base64EncodeGetRequiredLength(size, kOneLine), 0);
}

} // namespace
