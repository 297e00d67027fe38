#include "jsontext.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include <tvcore/printermodel.h>

#include "jsoncursor.h"

namespace
{

using nlohmann::json;

std::string PlaceOf(std::string_view text, std::size_t position)
{
    const std::string_view before = text.substr(0, std::min(position, text.size()));
    return "line " + std::to_string(1 + std::count(before.begin(), before.end(), '\n'));
}

// What the parser calls as it goes through the text. Builds the tree, and stops at the first fault that the parser does
// not see itself.
class TreeBuilder : public json::json_sax_t
{
public:
    TreeBuilder(std::string_view text, std::string_view fileName) : m_text(text), m_fileName(fileName)
    {
    }

    [[nodiscard]] JsonValue Take() noexcept
    {
        return std::move(m_root);
    }

    bool null() override
    {
        Add(JsonValue::Kind::Null);
        return true;
    }

    bool boolean(bool value) override
    {
        Add(JsonValue::Kind::Boolean).isTrue = value;
        return true;
    }

    bool number_integer(number_integer_t value) override
    {
        Add(JsonValue::Kind::Integer).integer = value;
        return true;
    }

    bool number_unsigned(number_unsigned_t value) override
    {
        constexpr number_unsigned_t kMost = std::numeric_limits<std::int64_t>::max();
        Add(JsonValue::Kind::Integer).integer = static_cast<std::int64_t>(std::min(value, kMost));
        return true;
    }

    // Also what no integer of the parser's holds.
    bool number_float(number_float_t value, const string_t& written) override
    {
        using Limits = std::numeric_limits<std::int64_t>;
        if (written.find_first_of(".eE") != string_t::npos)
            Add(JsonValue::Kind::Real);
        else
            Add(JsonValue::Kind::Integer).integer = value < 0 ? Limits::min() : Limits::max();
        return true;
    }

    bool string(string_t& value) override
    {
        Add(JsonValue::Kind::Text).text = std::move(value);
        return true;
    }

    bool binary(binary_t&) override
    {
        return false; // JSON text has none
    }

    bool start_object(std::size_t) override
    {
        return Open(JsonValue::Kind::Object);
    }

    bool end_object() override
    {
        return Close();
    }

    bool start_array(std::size_t) override
    {
        return Open(JsonValue::Kind::List);
    }

    bool end_array() override
    {
        return Close();
    }

    bool key(string_t& name) override
    {
        Level& level = m_open.back();
        level.value->names.push_back(name);
        if (!level.names.insert(std::move(name)).second)
            Fault("field given twice");
        return true;
    }

    bool parse_error(std::size_t position, const std::string&, const json::exception&) override
    {
        ThrowModelFault(m_fileName, PlaceOf(m_text, position) + ": not well-formed JSON");
    }

private:
    struct Level
    {
        JsonValue* value; // stays in its place: what holds it grows only when it has ended
        std::set<std::string> names;
    };

    JsonValue& Add(JsonValue::Kind kind)
    {
        JsonValue& added = m_open.empty() ? m_root : m_open.back().value->items.emplace_back();
        added.kind = kind;
        return added;
    }

    bool Open(JsonValue::Kind kind)
    {
        m_open.push_back({&Add(kind), {}});
        if (m_open.size() > kMaxJsonDepth)
            Fault("nested too deeply");
        return true;
    }

    bool Close()
    {
        m_open.pop_back();
        return true;
    }

    [[noreturn]] void Fault(std::string_view what) const
    {
        std::string pointer;
        for (const Level& level : m_open)
        {
            if (!level.value->names.empty())
                pointer += '/' + EscapeJsonPointerToken(level.value->names.back());
            else if (!level.value->items.empty())
                pointer += '/' + std::to_string(level.value->items.size() - 1);
        }
        ThrowModelFault(m_fileName, pointer, what);
    }

    std::string_view m_text;
    std::string_view m_fileName;
    JsonValue m_root;
    std::vector<Level> m_open; // the values that the parser is inside of
};

} // namespace

JsonValue ParseJsonText(std::string_view text, std::string_view fileName)
{
    if (text.size() > PrinterModel::kMaxFileSize)
        ThrowModelFault(fileName, "larger than " + std::to_string(PrinterModel::kMaxFileSize) + " bytes");
    TreeBuilder builder(text, fileName);
    json::sax_parse(text, &builder);
    return builder.Take();
}
