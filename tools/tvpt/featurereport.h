// Features as `devmode show` lists them.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <tvutil/attributebytesindexedlist.h>

// Number to value, of two with one number the first. A value is as --set takes it: true or false, a number, a text, a
// length in millimetres, "9700:NAME" for a custom option; features within a collection are an object, within a list an
// object each. What no kind explains is {"kind", "flags", "bytes"}, the bytes hexadecimal.
[[nodiscard]] nlohmann::ordered_json DescribeFeatures(const AttributeBytesIndexedList& features);

// The features that somebody chose, in stored order, those within collections and lists with them.
[[nodiscard]] nlohmann::ordered_json DescribeChoices(const AttributeBytesIndexedList& features);
