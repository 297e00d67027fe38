#include "core/utf.h"

#include "core/utfsteps.h"

namespace winport
{

std::u16string ToUtf16(std::string_view text)
{
    std::u16string result;
    result.reserve(text.size());
    while (!text.empty())
    {
        const DecodedStep step = DecodeUtf8(text);
        result += EncodeUtf16(step.character).View();
        text.remove_prefix(step.length);
    }
    return result;
}

std::string ToUtf8(std::u16string_view text)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty())
    {
        const DecodedStep step = DecodeUtf16(text);
        result += EncodeUtf8(step.character).View();
        text.remove_prefix(step.length);
    }
    return result;
}

bool IsWellFormedUtf16(std::u16string_view text)
{
    while (!text.empty())
    {
        const DecodedStep step = DecodeUtf16(text);
        if (!step.wellFormed)
            return false;
        text.remove_prefix(step.length);
    }
    return true;
}

bool ToUtf8Strict(std::u16string_view text, std::string& target)
{
    if (!IsWellFormedUtf16(text))
        return false;
    target = ToUtf8(text);
    return true;
}

} // namespace winport
