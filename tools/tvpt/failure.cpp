#include "failure.h"

#include <algorithm>

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

std::string OneLine(std::string_view text)
{
    std::string line(text);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
    while (!line.empty() && line.back() == ' ')
        line.pop_back();
    return line;
}
