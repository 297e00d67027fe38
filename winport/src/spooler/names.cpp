#include "spooler/names.h"

#include <winerror.h>

#include "spooler/win32error.h"

namespace winport::spooler
{

namespace
{

struct FoldRange
{
    WCHAR first;
    WCHAR last;
    int distance; // 0: capitals and small letters alternate, capitals are even
};

constexpr FoldRange kFoldRanges[] = {
    {0x0041, 0x005A, 32}, // A to Z
    {0x00C0, 0x00D6, 32}, // Latin-1
    {0x00D8, 0x00DE, 32}, // Latin-1, behind the multiplication sign
    {0x0100, 0x012F, 0},  // Latin Extended-A
    {0x0132, 0x0137, 0},  // Latin Extended-A
    {0x014A, 0x0177, 0},  // Latin Extended-A
    {0x0391, 0x03A9, 32}, // Greek
    {0x0400, 0x040F, 80}, // Cyrillic
    {0x0410, 0x042F, 32}, // Cyrillic
};

WCHAR Fold(WCHAR character) noexcept
{
    for (const FoldRange& range : kFoldRanges)
    {
        if (character >= range.first && character <= range.last)
            return static_cast<WCHAR>(range.distance == 0 ? character | 1 : character + range.distance);
    }
    return character;
}

} // namespace

std::u16string_view ViewOf(LPCWSTR text) noexcept
{
    return text == nullptr ? std::u16string_view() : std::u16string_view(text);
}

std::u16string FoldCase(std::u16string_view text)
{
    std::u16string folded(text);
    for (WCHAR& character : folded)
        character = Fold(character);
    return folded;
}

bool EqualIgnoringCase(std::u16string_view left, std::u16string_view right)
{
    return FoldCase(left) == FoldCase(right);
}

void RequireLocalServer(LPCWSTR server)
{
    Require(ViewOf(server).empty(), ERROR_INVALID_NAME);
}

void RequireOwnEnvironment(LPCWSTR environment)
{
    const std::u16string_view name = ViewOf(environment);
    Require(name.empty() || EqualIgnoringCase(name, kEnvironment), ERROR_INVALID_ENVIRONMENT);
}

std::vector<std::u16string> ListOf(LPCWSTR multiString)
{
    std::vector<std::u16string> list;
    for (std::u16string_view text = ViewOf(multiString); !text.empty(); text = ViewOf(text.data() + text.size() + 1))
        list.emplace_back(text);
    return list;
}

std::u16string MultiStringOf(const std::vector<std::u16string>& list)
{
    std::u16string text;
    for (const std::u16string& entry : list)
        text.append(entry).push_back(u'\0');
    text.push_back(u'\0');
    if (list.empty())
        text.push_back(u'\0');
    return text;
}

} // namespace winport::spooler
