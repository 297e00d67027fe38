#include "jsontext.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "jsoncursor.h"

namespace
{

using nlohmann::json;

// Follows the parser through the document and stops it at the first fault that it does not see itself.
class StructureCheck
{
public:
    explicit StructureCheck(std::string_view fileName) : m_fileName(fileName)
    {
    }

    bool operator()(json::parse_event_t event, const json& parsed)
    {
        switch (event)
        {
        case json::parse_event_t::object_start:
        case json::parse_event_t::array_start:
            NextItem();
            m_levels.push_back({event == json::parse_event_t::array_start, 0, {}, {}});
            if (m_levels.size() > kMaxJsonDepth)
                Fault("nested too deeply");
            break;
        case json::parse_event_t::object_end:
        case json::parse_event_t::array_end:
            m_levels.pop_back();
            break;
        case json::parse_event_t::key:
            m_levels.back().key = parsed.get<std::string>();
            if (!m_levels.back().keys.insert(m_levels.back().key).second)
                Fault("field given twice");
            break;
        case json::parse_event_t::value:
            NextItem();
            break;
        }
        return true; // keep the value
    }

private:
    struct Level
    {
        bool isArray = false;
        std::size_t items = 0;
        std::string key;
        std::set<std::string> keys;
    };

    void NextItem()
    {
        if (!m_levels.empty() && m_levels.back().isArray)
            ++m_levels.back().items;
    }

    [[noreturn]] void Fault(const char* what) const
    {
        std::string pointer;
        for (const Level& level : m_levels)
        {
            if (level.isArray && level.items > 0)
                pointer += '/' + std::to_string(level.items - 1);
            else if (!level.isArray && !level.key.empty())
                pointer += '/' + EscapeJsonPointerToken(level.key);
        }
        ThrowModelFault(m_fileName, (pointer.empty() ? "/" : pointer) + ": " + what);
    }

    std::string_view m_fileName;
    std::vector<Level> m_levels;
};

std::string PlaceOf(std::string_view text, std::size_t position)
{
    const std::string_view before = text.substr(0, std::min(position, text.size()));
    return "line " + std::to_string(1 + std::count(before.begin(), before.end(), '\n'));
}

} // namespace

nlohmann::json ParseJsonText(std::string_view text, std::string_view fileName)
{
    if (text.size() > kMaxJsonSize)
        ThrowModelFault(fileName, "larger than " + std::to_string(kMaxJsonSize) + " bytes");

    StructureCheck check(fileName);
    try
    {
        return json::parse(text,
                           [&check](int, json::parse_event_t event, const json& value) { return check(event, value); });
    }
    catch (const json::exception& error)
    {
        const auto* const parseError = dynamic_cast<const json::parse_error*>(&error);
        ThrowModelFault(fileName,
                        PlaceOf(text, parseError != nullptr ? parseError->byte : 0) + ": not well-formed JSON");
    }
}
