#include "documenttext.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include <tvutil/cxstring.h>

#include "failure.h"
#include "utilitiesstaticlib/documentlimits.h"

namespace
{

constexpr char kReading[] = "reading the document";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16LittleEndianMark = "\xFF\xFE";
constexpr std::string_view kUtf16BigEndianMark = "\xFE\xFF";

bool IsHighSurrogate(WCHAR character)
{
    return (character & 0xFC00) == 0xD800;
}

bool IsLowSurrogate(WCHAR character)
{
    return (character & 0xFC00) == 0xDC00;
}

template <class Text>
std::string LineAt(Text text, std::size_t position)
{
    const Text before = text.substr(0, position);
    return "line " + std::to_string(1 + std::count(before.begin(), before.end(), '\n'));
}

void RequireText(WStringView text, std::string_view name)
{
    for (std::size_t position = 0; position < text.size(); ++position)
    {
        if (text[position] == WCHAR())
            Fail(kReading, name, LineAt(text, position) + ": holds a zero character");
        if (IsHighSurrogate(text[position]) && position + 1 < text.size() && IsLowSurrogate(text[position + 1]))
            ++position;
        else if (IsHighSurrogate(text[position]) || IsLowSurrogate(text[position]))
            Fail(kReading, name, LineAt(text, position) + ": holds half a surrogate pair");
    }
}

WideString FromUtf8(std::string_view bytes, std::string_view name)
{
    if (bytes.empty())
        return {};
    const auto length = static_cast<int>(bytes.size()); // bounded by documentlimits::kMaximumFileBytes
    const int count = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), length, nullptr, 0);
    if (count <= 0)
        Fail(kReading, name, "neither UTF-8, nor UTF-16 with a byte-order mark");
    WideString text(static_cast<std::size_t>(count), WCHAR());
    MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), length, text.data(), count);
    return text;
}

WideString FromUtf16(std::string_view bytes, bool bigEndian, std::string_view name)
{
    if (bytes.size() % sizeof(WCHAR) != 0)
        Fail(kReading, name, "UTF-16 with half a character at its end");
    WideString text(bytes.size() / sizeof(WCHAR), WCHAR());
    if (!bytes.empty())
        std::memcpy(text.data(), bytes.data(), bytes.size());
    if (bigEndian)
        for (WCHAR& character : text)
            character = static_cast<WCHAR>((character & 0xFF) << 8 | (character >> 8 & 0xFF));
    return text;
}

// The text of the XML declaration, if the document has one.
WStringView DeclarationOf(WStringView text)
{
    const WStringView opening = W("<?xml");
    const std::size_t end = text.find(W("?>"));
    if (!text.starts_with(opening) || text.size() == opening.size() || end == WStringView::npos)
        return {};
    const WCHAR next = text[opening.size()]; // not a processing instruction such as <?xml-stylesheet
    return WStringView(W(" \t\r\n")).find(next) != WStringView::npos ? text.substr(0, end) : WStringView();
}

// A malformed declaration stays: the DOM will say so.
void BlankDeclaredEncoding(WideString& text, bool isUtf16, std::string_view name)
{
    const WStringView declaration = DeclarationOf(text);
    const std::size_t begin = declaration.find(W("encoding"));
    const std::size_t opening = begin == WStringView::npos ? begin : declaration.find_first_of(W("\"'"), begin);
    if (opening == WStringView::npos)
        return;
    const std::size_t closing = declaration.find(declaration[opening], opening + 1);
    if (closing == WStringView::npos)
        return;

    const CXString encoding(declaration.substr(opening + 1, closing - opening - 1));
    const bool agrees = encoding.CompareNoCase(isUtf16 ? WStringView(W("utf-16")) : WStringView(W("utf-8"))) == 0;
    if (!agrees)
        Fail(kReading, name,
             "declares the encoding \"" + encoding.ToUtf8() + "\" but is " + (isUtf16 ? "UTF-16" : "UTF-8"));
    std::fill(text.begin() + static_cast<std::ptrdiff_t>(begin),
              text.begin() + static_cast<std::ptrdiff_t>(closing + 1), W(' '));
}

// Not every DOM has bounds: Wine's follows a document type declaration, and takes its time over too many attributes.
void RefuseExcess(std::string_view utf8, std::string_view name)
{
    if (const auto excess = documentlimits::FindExcess(utf8))
        Fail(kReading, name, LineAt(utf8, excess->offset) + ": " + excess->reason);
}

} // namespace

WideString DecodeDocument(std::string_view bytes, std::string_view name)
{
    const bool isLittleEndian = bytes.starts_with(kUtf16LittleEndianMark);
    const bool isBigEndian = bytes.starts_with(kUtf16BigEndianMark);
    const bool isUtf16 = isLittleEndian || isBigEndian;
    if (isUtf16)
        bytes.remove_prefix(kUtf16LittleEndianMark.size());
    else if (bytes.starts_with(kUtf8Mark))
        bytes.remove_prefix(kUtf8Mark.size());

    WideString text = isUtf16 ? FromUtf16(bytes, isBigEndian, name) : FromUtf8(bytes, name);
    if (text.empty())
        Fail(kReading, name, "the document is empty");
    RequireText(text, name);
    BlankDeclaredEncoding(text, isUtf16, name);
    RefuseExcess(isUtf16 ? CXString(WStringView(text)).ToUtf8() : std::string(bytes), name);
    return text;
}
