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
constexpr WStringView kWhiteSpace = W(" \t\r\n");

bool IsHighSurrogate(WCHAR character)
{
    return (character & 0xFC00) == 0xD800;
}

bool IsLowSurrogate(WCHAR character)
{
    return (character & 0xFC00) == 0xDC00;
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
    if (!text.starts_with(opening) || text.size() == opening.size())
        return {};
    const WCHAR next = text[opening.size()]; // not a processing instruction such as <?xml-stylesheet
    const std::size_t end = kWhiteSpace.find(next) != WStringView::npos ? text.find(W("?>")) : WStringView::npos;
    return end != WStringView::npos ? text.substr(0, end) : WStringView();
}

// Where the declaration names an encoding, from the word to behind the closing quote; nowhere, and empty, when it names
// none. What is malformed is left to the DOM, which says so.
struct DeclaredEncoding
{
    std::size_t begin = 0;
    std::size_t end = 0;
    std::string name;
};

DeclaredEncoding FindDeclaredEncoding(WStringView text)
{
    constexpr WStringView kWord = W("encoding");
    const WStringView declaration = DeclarationOf(text);
    const std::size_t begin = declaration.find(kWord);
    if (begin == WStringView::npos || kWhiteSpace.find(declaration[begin - 1]) == WStringView::npos)
        return {};
    const std::size_t equals = declaration.find_first_not_of(kWhiteSpace, begin + kWord.size());
    if (equals == WStringView::npos || declaration[equals] != W('='))
        return {};
    const std::size_t opening = declaration.find_first_not_of(kWhiteSpace, equals + 1);
    if (opening == WStringView::npos || (declaration[opening] != W('"') && declaration[opening] != W('\'')))
        return {};
    const std::size_t closing = declaration.find(declaration[opening], opening + 1);
    if (closing == WStringView::npos || closing == opening + 1)
        return {};
    return {begin, closing + 1, CXString(declaration.substr(opening + 1, closing - opening - 1)).ToUtf8()};
}

// Of bytes whose encoding only the declaration will tell: itself it holds ASCII alone.
std::string DeclaredEncodingOf(std::string_view bytes)
{
    const std::size_t end = bytes.starts_with("<?xml") ? bytes.find("?>") : std::string_view::npos;
    if (end == std::string_view::npos)
        return {};
    return FindDeclaredEncoding(*DecodeBytes(bytes.substr(0, end + 2), DocumentEncoding::Latin1)).name;
}

// What the bytes are in place of a declared encoding that they do not fit.
const char* DescribeMark(const EncodingMark& mark)
{
    if (mark.length == 0)
        return "has no byte-order mark";
    return mark.encoding == DocumentEncoding::Utf8 ? "is UTF-8" : "is UTF-16";
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
        Fail(kReading, name, "encoding \"" + Shortened(declared) + "\" is not supported; UTF-8 or UTF-16 is");
    if (!Fits(*known, mark))
        Fail(kReading, name, "declares the encoding \"" + Shortened(declared) + "\" but " + DescribeMark(mark));
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
    if (encoding == DocumentEncoding::Utf8)
        RefuseExcess(bytes, name);
    else
        RefuseExcess(CXString(WStringView(text)).ToUtf8(), name);
    return text;
}
