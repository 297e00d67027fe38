#include "jsoncursor.h"

#include <tvcore/printermodel.h>
#include <tvutil/singleline.h>
#include <tvutil/throwexception.h>

#include <algorithm>
#include <charconv>

namespace
{

using Kind = JsonValue::Kind;

std::string Quoted(std::string_view text)
{
    return '"' + std::string(text) + '"';
}

const char* NameOf(Kind kind) noexcept
{
    switch (kind)
    {
    case Kind::Null:
        return "null";
    case Kind::Boolean:
        return "true or false";
    case Kind::Integer:
        return "a number";
    case Kind::Real:
        return "a number with a point or an exponent";
    case Kind::Text:
        return "a text";
    case Kind::List:
        return "a list";
    case Kind::Object:
        return "an object";
    }
    return "";
}

} // namespace

void ThrowModelFault(std::string_view fileName, std::string_view what)
{
    ThrowException<ExceptionInvalidPrinterModel>({W("ReadPrinterModel"), W("siblings\\tvcore\\printermodelreader")},
                                                 W("%s: %s"), {CXString::FromUtf8(fileName), CXString::FromUtf8(what)});
}

void ThrowModelFault(std::string_view fileName, std::string_view pointer, std::string_view what)
{
    const std::string separator = pointer.empty() ? "" : ": ";
    ThrowModelFault(fileName, std::string(pointer) + separator + std::string(what));
}

std::string EscapeJsonPointerToken(std::string_view name)
{
    std::string token;
    for (const char character : SingleLine(CXString::FromUtf8(name).View()).ToUtf8()) // the message stays one line
    {
        if (character == '~')
            token += "~0";
        else if (character == '/')
            token += "~1";
        else
            token += character;
    }
    return token;
}

JsonCursor::JsonCursor(const JsonValue& value, std::string_view fileName) : JsonCursor(value, fileName, {})
{
}

JsonCursor::JsonCursor(const JsonValue& value, std::string_view fileName, std::string pointer)
    : m_value(value), m_fileName(fileName), m_pointer(std::move(pointer))
{
}

JsonCursor JsonCursor::Field(const char* name) const
{
    if (const JsonValue* const field = Find(name))
        return At(*field, name);
    Fault("field " + Quoted(name) + " is missing");
}

std::optional<JsonCursor> JsonCursor::OptionalField(const char* name) const
{
    const JsonValue* const field = Find(name);
    return field != nullptr ? std::optional(At(*field, name)) : std::nullopt;
}

void JsonCursor::OnlyFields(std::initializer_list<std::string_view> names) const
{
    MustBe(Kind::Object, "an object");
    for (std::size_t at = 0; at < m_value.names.size(); ++at)
        if (std::find(names.begin(), names.end(), m_value.names[at]) == names.end())
            At(m_value.items[at], m_value.names[at]).Fault("unknown field");
}

void JsonCursor::ForEachItem(const std::function<void(const JsonCursor&)>& visit) const
{
    MustBe(Kind::List, "a list");
    for (std::size_t at = 0; at < m_value.items.size(); ++at)
        visit(At(m_value.items[at], std::to_string(at)));
}

void JsonCursor::ForEachNumberedField(const std::function<void(std::int32_t, const JsonCursor&)>& visit) const
{
    MustBe(Kind::Object, "an object");
    for (std::size_t at = 0; at < m_value.names.size(); ++at)
    {
        const std::string& name = m_value.names[at];
        const JsonCursor place = At(m_value.items[at], name);
        std::int32_t number = 0;
        const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
        // One spelling a number: "7" and "07" would be one field given twice.
        if (error != std::errc() || number < 0 || std::to_string(number) != name || end != name.data() + name.size())
            place.Fault("the field's name is not a number");
        visit(number, place);
    }
}

void JsonCursor::NotEmpty() const
{
    if (m_value.items.empty())
        Fault("must not be empty");
}

CXString JsonCursor::Text(std::size_t maximum) const
{
    MustBe(Kind::Text, "a text");
    CXString text = CXString::FromUtf8(m_value.text);
    if (!IsSingleLine(text.View()))
        Fault("holds a control character or a line separator");
    if (text.Length() > maximum)
        Fault("longer than " + std::to_string(maximum) + " characters");
    return text;
}

CXString JsonCursor::Name(std::size_t maximum) const
{
    CXString name = Text(maximum);
    if (IsBlank(name.View()))
        Fault(name.IsEmpty() ? "must not be empty" : "must not be of blanks only");
    return name;
}

std::uint64_t JsonCursor::HexWord() const
{
    MustBe(Kind::Text, "a text");
    const std::string& text = m_value.text;
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
    return m_value.kind == Kind::Text;
}

bool JsonCursor::Switch() const
{
    MustBe(Kind::Boolean, "true or false");
    return m_value.isTrue;
}

void JsonCursor::Fault(const std::string& what) const
{
    ThrowModelFault(m_fileName, m_pointer, what);
}

void JsonCursor::MustBe(Kind kind, const char* what) const
{
    if (m_value.kind != kind)
        Fault(std::string("must be ") + what + ", not " + NameOf(m_value.kind));
}

const JsonValue* JsonCursor::Find(std::string_view name) const
{
    MustBe(Kind::Object, "an object");
    const auto found = std::find(m_value.names.begin(), m_value.names.end(), name);
    return found != m_value.names.end() ? &m_value.items[static_cast<std::size_t>(found - m_value.names.begin())]
                                        : nullptr;
}

std::int64_t JsonCursor::CheckedInteger(std::int64_t minimum, std::int64_t maximum) const
{
    MustBe(Kind::Integer, "a whole number");
    if (m_value.integer < minimum || m_value.integer > maximum)
        Fault("must be from " + std::to_string(minimum) + " to " + std::to_string(maximum));
    return m_value.integer;
}

JsonCursor JsonCursor::At(const JsonValue& value, std::string_view token) const
{
    return JsonCursor(value, m_fileName, m_pointer + '/' + EscapeJsonPointerToken(token));
}
