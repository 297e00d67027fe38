#include "documentencoding.h"

#include <windows.h>

#include <algorithm>
#include <cstring>

namespace
{

struct Mark
{
    std::string_view bytes;
    DocumentEncoding encoding;
};

constexpr Mark kMarks[] = {
    {"\xEF\xBB\xBF", DocumentEncoding::Utf8},
    {"\xFF\xFE", DocumentEncoding::Utf16LittleEndian},
    {"\xFE\xFF", DocumentEncoding::Utf16BigEndian},
};

struct Name
{
    std::string_view name; // in small letters
    DocumentEncoding encoding;
};

constexpr Name kNames[] = {
    {"utf-8", DocumentEncoding::Utf8},
    {"utf8", DocumentEncoding::Utf8},
    {"us-ascii", DocumentEncoding::Ascii},
    {"ascii", DocumentEncoding::Ascii},
    {"iso-8859-1", DocumentEncoding::Latin1},
    {"latin1", DocumentEncoding::Latin1},
    {"utf-16le", DocumentEncoding::Utf16LittleEndian},
    {"utf-16be", DocumentEncoding::Utf16BigEndian},
};

constexpr std::string_view kUtf16Names[] = {"utf-16", "utf16"}; // of the mark's byte order

bool EqualIgnoringCase(std::string_view text, std::string_view small)
{
    return std::ranges::equal(text, small, {},
                              [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
}

std::optional<WideString> FromUtf8(std::string_view bytes)
{
    if (bytes.empty())
        return WideString();
    const auto length = static_cast<int>(bytes.size()); // bounded by documentlimits::kMaximumFileBytes
    const int count = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), length, nullptr, 0);
    if (count <= 0)
        return std::nullopt;
    WideString text(static_cast<std::size_t>(count), WCHAR());
    MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), length, text.data(), count);
    return text;
}

// Latin 1 is the first 256 characters of Unicode, ASCII the first 128.
std::optional<WideString> FromSingleBytes(std::string_view bytes, unsigned characters)
{
    WideString text;
    text.reserve(bytes.size());
    for (const char unit : bytes)
    {
        const auto character = static_cast<unsigned char>(unit);
        if (character >= characters)
            return std::nullopt;
        text += static_cast<WCHAR>(character);
    }
    return text;
}

std::optional<WideString> FromUtf16(std::string_view bytes, bool isBigEndian)
{
    if (bytes.size() % sizeof(WCHAR) != 0)
        return std::nullopt;
    WideString text(bytes.size() / sizeof(WCHAR), WCHAR());
    if (!bytes.empty())
        std::memcpy(text.data(), bytes.data(), bytes.size());
    if (isBigEndian)
        for (WCHAR& character : text)
            character = static_cast<WCHAR>((character & 0xFF) << 8 | (character >> 8 & 0xFF));
    return text;
}

} // namespace

EncodingMark EncodingMark::Find(std::string_view bytes) noexcept
{
    for (const Mark& mark : kMarks)
        if (bytes.starts_with(mark.bytes))
            return {mark.encoding, mark.bytes.size()};
    return {};
}

bool LooksLikeUnmarkedUtf16(std::string_view bytes) noexcept
{
    return bytes.size() >= 2 && (bytes[0] == '\0') != (bytes[1] == '\0');
}

std::optional<DocumentEncoding> FindEncoding(std::string_view name, const EncodingMark& mark)
{
    for (const Name& row : kNames)
        if (EqualIgnoringCase(name, row.name))
            return row.encoding;
    for (const std::string_view utf16 : kUtf16Names)
        if (EqualIgnoringCase(name, utf16))
            return mark.encoding == DocumentEncoding::Utf16BigEndian ? DocumentEncoding::Utf16BigEndian
                                                                     : DocumentEncoding::Utf16LittleEndian;
    return std::nullopt;
}

std::optional<WideString> DecodeBytes(std::string_view bytes, DocumentEncoding encoding)
{
    switch (encoding)
    {
    case DocumentEncoding::Utf8:
        return FromUtf8(bytes);
    case DocumentEncoding::Ascii:
        return FromSingleBytes(bytes, 0x80);
    case DocumentEncoding::Latin1:
        return FromSingleBytes(bytes, 0x100);
    case DocumentEncoding::Utf16LittleEndian:
        return FromUtf16(bytes, false);
    case DocumentEncoding::Utf16BigEndian:
        return FromUtf16(bytes, true);
    }
    return std::nullopt;
}
