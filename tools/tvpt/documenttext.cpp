#include "documenttext.h"

#include <algorithm>
#include <optional>
#include <utility>

#include <tvutil/cxstring.h>

#include "documentencoding.h"
#include "failure.h"
#include "utilitiesstaticlib/documentlimits.h"

namespace
{

constexpr char kReading[] = "reading the document";

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

// Where the declaration names an encoding, from the word to behind the closing quote; nowhere, and empty, when it names
// none. A malformed declaration names none: the DOM will say so.
struct DeclaredEncoding
{
    std::size_t begin = 0;
    std::size_t end = 0;
    std::string name;
};

DeclaredEncoding FindDeclaredEncoding(WStringView text)
{
    const WStringView declaration = DeclarationOf(text);
    const std::size_t begin = declaration.find(W("encoding"));
    const std::size_t opening = begin == WStringView::npos ? begin : declaration.find_first_of(W("\"'"), begin);
    if (opening == WStringView::npos)
        return {};
    const std::size_t closing = declaration.find(declaration[opening], opening + 1);
    if (closing == WStringView::npos)
        return {};
    return {begin, closing + 1, CXString(declaration.substr(opening + 1, closing - opening - 1)).ToUtf8()};
}

// Of bytes whose encoding only the declaration will tell: itself it holds ASCII alone.
std::string DeclaredEncodingOf(std::string_view bytes)
{
    const std::size_t end = bytes.find("?>");
    if (end == std::string_view::npos)
        return {};
    return FindDeclaredEncoding(*DecodeBytes(bytes.substr(0, end + 2), DocumentEncoding::Latin1)).name;
}

const char* FamilyOf(DocumentEncoding encoding)
{
    const bool isUtf16 =
        encoding == DocumentEncoding::Utf16LittleEndian || encoding == DocumentEncoding::Utf16BigEndian;
    return isUtf16 ? "UTF-16" : "UTF-8";
}

// Of bytes with a mark only the mark's own encoding; of others any that has a single byte for each of ASCII's.
bool Fits(DocumentEncoding declared, const EncodingMark& mark)
{
    const bool isOfSingleBytes = declared == DocumentEncoding::Ascii || declared == DocumentEncoding::Latin1;
    return declared == mark.encoding || (mark.length == 0 && isOfSingleBytes);
}

DocumentEncoding EncodingOf(const std::string& declared, const EncodingMark& mark, std::string_view name)
{
    if (declared.empty())
        return mark.encoding;
    const auto known = FindEncoding(declared, mark);
    if (!known)
        Fail(kReading, name, "encoding \"" + declared + "\" is not supported; UTF-8 or UTF-16 is");
    if (!Fits(*known, mark))
        Fail(kReading, name, "declares the encoding \"" + declared + "\" but is " + FamilyOf(mark.encoding));
    return *known;
}

const char* DescribeUndecodable(DocumentEncoding encoding)
{
    switch (encoding)
    {
    case DocumentEncoding::Utf16LittleEndian:
    case DocumentEncoding::Utf16BigEndian:
        return "UTF-16 with half a character at its end";
    case DocumentEncoding::Ascii:
        return "declares US-ASCII but holds other characters";
    default:
        return "neither UTF-8, nor UTF-16 with a byte-order mark";
    }
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
    const EncodingMark mark = EncodingMark::Find(bytes);
    if (mark.length == 0 && LooksLikeUnmarkedUtf16(bytes))
        Fail(kReading, name, "UTF-16 without its byte-order mark");
    bytes.remove_prefix(mark.length);

    // Of single bytes the declaration is read first: it decides what the others are.
    const bool isUtf8 = mark.encoding == DocumentEncoding::Utf8;
    const DocumentEncoding encoding = isUtf8 ? EncodingOf(DeclaredEncodingOf(bytes), mark, name) : mark.encoding;
    std::optional<WideString> decoded = DecodeBytes(bytes, encoding);
    if (!decoded)
        Fail(kReading, name, DescribeUndecodable(encoding));
    WideString text = std::move(*decoded);
    if (text.empty())
        Fail(kReading, name, "the document is empty");
    RequireText(text, name);
    const DeclaredEncoding declared = FindDeclaredEncoding(text);
    if (!isUtf8)
        (void)EncodingOf(declared.name, mark, name);
    std::fill(text.begin() + static_cast<std::ptrdiff_t>(declared.begin),
              text.begin() + static_cast<std::ptrdiff_t>(declared.end), W(' '));
    RefuseExcess(encoding == DocumentEncoding::Utf8 ? std::string(bytes) : CXString(WStringView(text)).ToUtf8(), name);
    return text;
}
