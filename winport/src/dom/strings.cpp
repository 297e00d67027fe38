#include "dom/strings.h"

#include <algorithm>
#include <limits>
#include <new>

#include "core/utf.h"
#include "dom/failure.h"
#include "oleauto.h"

namespace winport::dom
{

namespace
{

bool IsAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char character) { return static_cast<signed char>(character) >= 0; });
}

BSTR AllocateBstr(const OLECHAR* text, std::size_t length)
{
    if (length > std::numeric_limits<UINT>::max() / sizeof(OLECHAR))
        throw std::bad_alloc();
    BSTR const string = SysAllocStringLen(text, static_cast<UINT>(length));
    if (string == nullptr)
        throw std::bad_alloc();
    return string;
}

} // namespace

std::string_view View(const xmlChar* text)
{
    return text != nullptr ? std::string_view(reinterpret_cast<const char*>(text)) : std::string_view();
}

const xmlChar* XmlChars(const std::string& text)
{
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

BSTR NewBstr(std::string_view utf8)
{
    if (!IsAscii(utf8))
        return NewBstr(ToUtf16(utf8));
    BSTR const string = AllocateBstr(nullptr, utf8.size());
    std::copy(utf8.begin(), utf8.end(), string);
    return string;
}

BSTR NewBstr(std::u16string_view text)
{
    return AllocateBstr(text.data(), text.size());
}

std::u16string_view BstrView(BSTR text)
{
    return text != nullptr ? std::u16string_view(text, SysStringLen(text)) : std::u16string_view();
}

std::string Utf8Of(BSTR text)
{
    std::string utf8;
    if (!ToUtf8Strict(BstrView(text), utf8))
        throw Failure{E_INVALIDARG};
    return utf8;
}

bool HasOnlyXmlCharacters(std::string_view utf8)
{
    for (std::size_t at = 0; at < utf8.size(); ++at)
    {
        const char character = utf8[at];
        const bool isControl = static_cast<unsigned char>(character) < 0x20 && !IsXmlSpace(character);
        // U+FFFE and U+FFFF are EF BF BE and EF BF BF.
        const bool isNonCharacter =
            character == '\xEF' && at + 2 < utf8.size() && utf8[at + 1] == '\xBF' && utf8[at + 2] >= '\xBE';
        if (isControl || isNonCharacter)
            return false;
    }
    return true;
}

std::string XmlTextOf(BSTR text)
{
    std::string utf8 = Utf8Of(text);
    if (!HasOnlyXmlCharacters(utf8))
        throw Failure{E_INVALIDARG};
    return utf8;
}

bool IsAllXmlSpace(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), IsXmlSpace);
}

} // namespace winport::dom
