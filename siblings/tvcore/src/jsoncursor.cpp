#include "jsoncursor.h"

#include <tvcore/printermodel.h>
#include <tvutil/throwexception.h>

#include <algorithm>
#include <charconv>
#include <limits>

namespace
{

std::string Quoted(std::string_view text)
{
    return '"' + std::string(text) + '"';
}

} // namespace

void ThrowModelFault(std::string_view fileName, std::string_view what)
{
    ThrowException<ExceptionInvalidPrinterModel>({W("ReadPrinterModel"), W("siblings\\tvcore\\printermodelreader")},
                                                 W("%s: %s"), {CXString::FromUtf8(fileName), CXString::FromUtf8(what)});
}

std::string EscapeJsonPointerToken(std::string_view name)
{
    std::string token;
    for (const char character : name)
    {
        if (character == '~')
            token += "~0";
        else if (character == '/')
            token += "~1";
        else if (static_cast<unsigned char>(character) < 0x20) // the message stays one line
            token += '?';
        else
            token += character;
    }
    return token;
}

JsonCursor::JsonCursor(const nlohmann::json& value, std::string_view fileName) : JsonCursor(value, fileName, {})
{
}

JsonCursor::JsonCursor(const nlohmann::json& value, std::string_view fileName, std::string pointer)
    : m_value(value), m_fileName(fileName), m_pointer(std::move(pointer))
{
}

JsonCursor JsonCursor::Field(const char* name) const
{
    MustBe(m_value.is_object(), "an object");
    const auto found = m_value.find(name);
    if (found == m_value.end())
        Fault("field " + Quoted(name) + " is missing");
    return At(*found, name);
}

std::optional<JsonCursor> JsonCursor::OptionalField(const char* name) const
{
    MustBe(m_value.is_object(), "an object");
    const auto found = m_value.find(name);
    if (found == m_value.end())
        return std::nullopt;
    return At(*found, name);
}

void JsonCursor::OnlyFields(std::initializer_list<std::string_view> names) const
{
    MustBe(m_value.is_object(), "an object");
    for (auto field = m_value.begin(); field != m_value.end(); ++field)
        if (std::find(names.begin(), names.end(), field.key()) == names.end())
            At(*field, field.key()).Fault("unknown field");
}

void JsonCursor::ForEachItem(const std::function<void(const JsonCursor&)>& visit) const
{
    MustBe(m_value.is_array(), "a list");
    std::size_t index = 0;
    for (const nlohmann::json& item : m_value)
        visit(At(item, std::to_string(index++)));
}

void JsonCursor::ForEachNumberedField(const std::function<void(std::int32_t, const JsonCursor&)>& visit) const
{
    MustBe(m_value.is_object(), "an object");
    for (auto field = m_value.begin(); field != m_value.end(); ++field)
    {
        const std::string& key = field.key();
        const JsonCursor place = At(*field, key);
        std::int32_t number = 0;
        const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), number);
        // One spelling a number: "7" and "07" would be one field given twice.
        if (error != std::errc() || number < 0 || std::to_string(number) != key || end != key.data() + key.size())
            place.Fault("the field's name is not a number");
        visit(number, place);
    }
}

void JsonCursor::NotEmpty() const
{
    if (m_value.empty())
        Fault("must not be empty");
}

CXString JsonCursor::Text(std::size_t minimum, std::size_t maximum) const
{
    MustBe(m_value.is_string(), "a text");
    const auto& bytes = m_value.get_ref<const std::string&>();
    if (std::any_of(bytes.begin(), bytes.end(),
                    [](char character) { return static_cast<unsigned char>(character) < 0x20 || character == 0x7F; }))
        Fault("holds a control character");
    CXString text = CXString::FromUtf8(bytes);
    if (text.Length() < minimum)
        Fault(minimum == 1 ? "must not be empty" : "shorter than " + std::to_string(minimum) + " characters");
    if (text.Length() > maximum)
        Fault("longer than " + std::to_string(maximum) + " characters");
    return text;
}

std::uint64_t JsonCursor::HexWord() const
{
    MustBe(m_value.is_string(), "a text");
    const auto& text = m_value.get_ref<const std::string&>();
    std::uint64_t word = 0;
    if (text.size() < 3 || text.size() > 18 || text[0] != '0' || text[1] != 'x')
        Fault("not a hexadecimal word such as \"0x888\"");
    const auto [end, error] = std::from_chars(text.data() + 2, text.data() + text.size(), word, 16);
    if (error != std::errc() || end != text.data() + text.size())
        Fault("not a hexadecimal word such as \"0x888\"");
    return word;
}

bool JsonCursor::IsText() const noexcept
{
    return m_value.is_string();
}

bool JsonCursor::IsSwitch() const noexcept
{
    return m_value.is_boolean();
}

bool JsonCursor::Switch() const
{
    MustBe(m_value.is_boolean(), "true or false");
    return m_value.get<bool>();
}

void JsonCursor::Fault(const std::string& what) const
{
    ThrowModelFault(m_fileName, (m_pointer.empty() ? "/" : m_pointer) + ": " + what);
}

void JsonCursor::MustBe(bool isThat, const char* what) const
{
    if (!isThat)
        Fault(std::string("must be ") + what + ", not " + m_value.type_name());
}

std::int64_t JsonCursor::CheckedInteger(std::int64_t minimum, std::int64_t maximum) const
{
    MustBe(m_value.is_number_integer(), "a whole number");
    constexpr auto kLargest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    const bool tooLarge = m_value.is_number_unsigned() && m_value.get<std::uint64_t>() > kLargest;
    const auto number = tooLarge ? std::numeric_limits<std::int64_t>::max() : m_value.get<std::int64_t>();
    if (number < minimum || number > maximum)
        Fault("must be from " + std::to_string(minimum) + " to " + std::to_string(maximum));
    return number;
}

JsonCursor JsonCursor::At(const nlohmann::json& value, std::string_view token) const
{
    return JsonCursor(value, m_fileName, m_pointer + '/' + EscapeJsonPointerToken(token));
}
