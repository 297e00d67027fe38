#include "jsonoutput.h"

#include <array>
#include <charconv>
#include <nlohmann/json.hpp>

#include "failure.h"

namespace
{

using nlohmann::ordered_json;

constexpr std::size_t kIndent = 2;

std::string ScalarText(const ordered_json& value)
{
    if (value.is_string())
        return OneLine(value.get<std::string>()); // a text cannot forge a line
    if (value.is_null())
        return "-";
    if (value.is_boolean())
        return value.get<bool>() ? "yes" : "no";
    return value.dump();
}

// A list of plain values reads best on one line.
bool IsShort(const ordered_json& value)
{
    if (!value.is_array())
        return !value.is_object();
    for (const ordered_json& item : value)
        if (item.is_structured() || item.is_string())
            return false;
    return true;
}

std::string ShortText(const ordered_json& value)
{
    if (!value.is_array())
        return ScalarText(value);
    std::string text;
    for (const ordered_json& item : value)
        text += (text.empty() ? "" : " ") + ScalarText(item);
    return text;
}

void AppendLines(const ordered_json& value, std::size_t indent, std::string& lines)
{
    const std::string margin(indent, ' ');
    for (auto item = value.begin(); item != value.end(); ++item)
    {
        const std::string label = value.is_object() ? item.key() + ":" : "-";
        if (IsShort(*item))
        {
            lines += margin + label + " " + ShortText(*item) + "\n";
            continue;
        }
        lines += margin + label + "\n";
        AppendLines(*item, indent + kIndent, lines);
    }
}

} // namespace

std::string JsonText(const ordered_json& value)
{
    // Texts come from UTF-16, where a lone surrogate has already become U+FFFD: nothing is left to be replaced.
    return value.dump(kIndent, ' ', false, ordered_json::error_handler_t::replace) + "\n";
}

std::string PlainText(const ordered_json& value)
{
    std::string lines;
    AppendLines(value, 0, lines);
    return lines;
}

std::string HexText(std::uint64_t word)
{
    std::array<char, 16> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), word, 16).ptr;
    std::string text(digits.data(), end);
    for (char& digit : text)
        if (digit >= 'a')
            digit = static_cast<char>(digit - 'a' + 'A');
    return "0x" + text;
}
