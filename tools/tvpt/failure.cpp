#include "failure.h"

#include "errornames.h"

namespace
{

std::string Joined(std::string_view what, std::string_view which, std::string_view why)
{
    std::string line(what);
    for (const std::string_view part : {which, why})
        if (!part.empty())
            line.append(": ").append(part);
    return line;
}

} // namespace

Failure::Failure(std::string_view line) : std::runtime_error(OneLine(line))
{
}

void Fail(std::string_view what, std::string_view which, std::string_view why)
{
    throw Failure(Joined(what, which, why));
}

void FailWithWin32Error(std::string_view what, std::string_view which, DWORD error)
{
    throw Failure(Joined(what, which, Win32ErrorName(error)));
}

void FailWithHresult(std::string_view what, std::string_view which, HRESULT result, std::string_view inside)
{
    std::string why = HresultName(result);
    if (!inside.empty())
        why.append(": ").append(inside);
    throw Failure(Joined(what, which, why));
}

std::string Shortened(std::string_view text)
{
    constexpr std::size_t kLongest = 200; // bytes
    std::size_t end = kLongest;
    if (text.size() <= end)
        return std::string(text);
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) // within a character
        --end;
    return std::string(text.substr(0, end)) + "...";
}

std::string OneLine(std::string_view text)
{
    std::string line;
    for (std::size_t at = 0; at < text.size(); ++at)
    {
        const auto unit = static_cast<unsigned char>(text[at]);
        const bool isC1 = unit == 0xC2 && at + 1 < text.size() && static_cast<unsigned char>(text[at + 1]) < 0xA0;
        at += isC1; // two bytes; some terminals obey these, too
        line += unit < 0x20 || unit == 0x7F || isC1 ? ' ' : text[at];
    }
    while (!line.empty() && line.back() == ' ')
        line.pop_back();
    return line;
}
