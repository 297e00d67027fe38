// models/schema.json and the reader of printer models say the same: every constraint of the schema, wherever it
// stands, is broken and kept at its edge in a shipped model, and the reader must refuse and take it.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "tests/tvcore/modeltext.h"

namespace
{

using nlohmann::json;
using Pointer = json::json_pointer;

class ModelSchema : public testing::Test
{
protected:
    // What the reader says when this stands at the place: the fault with its pointer, or nothing.
    std::string FaultWith(const Pointer& place, const json& value) const
    {
        json changed = m_model;
        changed[place] = value;
        return FaultOf(changed.dump());
    }

    // Whether the reader refuses the value for what it is by itself, with these words; between fields it may refuse it
    // for other reasons.
    bool Refuses(const Pointer& place, const json& value, const std::string& words) const
    {
        const std::string fault = FaultWith(place, value);
        return fault.starts_with("m.json: " + place.to_string() + ": ") && fault.find(words) != std::string::npos;
    }

    json Resolved(json schema) const
    {
        if (schema.contains("$ref"))
        {
            const std::string reference = schema["$ref"];
            schema.merge_patch(m_schema.at(Pointer(reference.substr(1)))); // without its '#'
        }
        return schema;
    }

    void Check(const json& given, const Pointer& place)
    {
        const json schema = Resolved(given);
        SCOPED_TRACE(place.to_string());
        if (schema.contains("oneOf"))
            CheckCoreDrivers(schema["oneOf"], place);
        EXPECT_EQ(FaultWith(place, nullptr).empty(), place.to_string() == "/$schema"); // which is for editors only
        if (schema.contains("enum"))
            CheckChoices(schema["enum"], place);
        if (schema.contains("minimum"))
            CheckRange(schema, place);
        if (schema.value("type", json()) == "string")
            CheckText(schema, place);
        if (schema.value("type", json()) == "object")
            CheckObject(schema, place);
        if (schema.contains("items"))
        {
            EXPECT_EQ(Refuses(place, json::array(), "must not be empty"), schema.value("minItems", 0) == 1);
            Check(schema["items"], place / 0);
            if (schema["items"].contains("if"))
                CheckPageSizeValues(schema["items"], place / 0);
        }
    }

    void CheckRange(const json& schema, const Pointer& place) const
    {
        const std::int64_t least = schema["minimum"];
        const std::int64_t most = schema["maximum"];
        for (const std::int64_t value : {least - 1, most + 1})
            EXPECT_TRUE(Refuses(place, value, "")) << value;
        for (const std::int64_t value : {least, most})
            EXPECT_FALSE(Refuses(place, value, " from ")) << value;
    }

    void CheckChoices(const json& known, const Pointer& place) const
    {
        std::string list;
        for (const json& value : known)
        {
            list += (list.empty() ? "known are " : ", ") + value.dump();
            EXPECT_FALSE(Refuses(place, value, "known are")) << value;
        }
        const std::string fault = FaultWith(place, known.back().get<int>() + 1);
        EXPECT_TRUE(fault.ends_with(list)) << fault;
    }

    void CheckText(const json& schema, const Pointer& place) const
    {
        EXPECT_TRUE(!schema.contains("pattern") || Refuses(place, "!", ""));
        EXPECT_EQ(Refuses(place, "", ""), schema.value("minLength", 0) == 1 || schema.contains("pattern"));
        if (schema.contains("not"))
        {
            EXPECT_TRUE(Refuses(place, "a\u2028", "line separator"));
            EXPECT_EQ(Refuses(place, " \u3000", "blanks"), schema.contains("minLength"));
        }
        if (schema.contains("maxLength"))
        {
            const std::size_t most = schema["maxLength"];
            EXPECT_FALSE(Refuses(place, std::string(most, 'a'), "longer"));
            EXPECT_TRUE(Refuses(place, std::string(most + 1, 'a'), "longer"));
        }
    }

    void CheckObject(const json& schema, const Pointer& place)
    {
        const bool isMap = schema.contains("propertyNames"); // by number
        EXPECT_NE(FaultWith(place / (isMap ? "01" : "surplus"), ""), "");
        std::set<std::string> required;
        for (const json& name : schema.value("required", json::array()))
            required.insert(name);
        const json object = m_model[place];
        for (const auto& [name, value] : object.items())
        {
            SCOPED_TRACE(name);
            json without = m_model;
            without[place].erase(name);
            EXPECT_EQ(FaultOf(without.dump()).find(name + (isMap ? " is missing" : "\" is missing")) !=
                          std::string::npos,
                      required.erase(name) == 1);
            Check(isMap ? schema["additionalProperties"] : schema["properties"].at(name), place / name);
        }
        EXPECT_TRUE(required.empty()) << *required.begin() << ": a shipped model has it not";
    }

    void CheckPageSizeValues(const json& form, const Pointer& place)
    {
        const json sound = m_model;
        const json without = form["if"]["properties"]["type"]["enum"];
        for (const json& type : form["properties"]["type"]["enum"])
        {
            SCOPED_TRACE(type);
            m_model[place / "type"] = type;
            const bool hasNone = std::find(without.begin(), without.end(), type) != without.end();
            EXPECT_EQ(Refuses(place / "valueId", 1, "must be 0"), hasNone);
            EXPECT_EQ(Refuses(place / "valueId", 0, "needs a page-size value"), !hasNone);
        }
        m_model = sound;
    }

    void CheckCoreDrivers(const json& drivers, const Pointer& place)
    {
        EXPECT_NE(FaultWith(place / "kind", "other"), "");
        for (const json& driver : drivers)
        {
            const json& properties = driver["properties"];
            m_model[place] = {{"kind", properties["kind"]["const"]},
                              {"privateSize", properties["privateSize"]["enum"][0]}};
            EXPECT_EQ(FaultOf(m_model.dump()), "");
            Check(driver, place);
        }
    }

    const json m_schema = ShippedModel("schema");
    json m_model = ShippedModel("tavlen-c9070-ps");
};

TEST_F(ModelSchema, AgreesWithTheReader)
{
    m_model["$schema"] = "./schema.json";
    ASSERT_EQ(FaultOf(m_model.dump()), "");
    for (const auto& [name, property] : m_schema["properties"].items())
        EXPECT_TRUE(m_model.contains(name)) << name << " is not looked at";
    Check(m_schema, Pointer());
}

} // namespace
