// JsonValue: a value of a JSON document, and those inside it.
//
// A tree of our own because of how it ends: the parser library's tree asks for memory while it is destroyed, and ends
// the process when there is none.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct JsonValue
{
    enum class Kind
    {
        Null,
        Boolean,
        Integer,
        Real, // written with a point or an exponent
        Text,
        List,
        Object,
    };

    Kind kind = Kind::Null;
    bool isTrue = false;
    std::int64_t integer = 0;       // one out of this range is its nearest
    std::string text;               // UTF-8
    std::vector<std::string> names; // of an object's fields, each once, in their order
    std::vector<JsonValue> items;   // of a list; or the fields' values, as many as names
};
