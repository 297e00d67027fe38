// What the readers of a model's sections share: a number that is one of a table's.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string>

#include "jsoncursor.h"

inline constexpr std::int64_t kAnyValue = std::numeric_limits<std::int32_t>::max();
inline constexpr std::size_t kMaxTextLength = 255;
inline constexpr std::int64_t kMaxPaperId = 0xFFFF;

template <class Row, std::size_t Count>
bool IsOneOf(const Row (&rows)[Count], std::int64_t value)
{
    return std::any_of(std::begin(rows), std::end(rows), [value](Row row) { return row == value; });
}

template <class Row, std::size_t Count>
std::int32_t ChoiceOf(const JsonCursor& place, const Row (&rows)[Count])
{
    const auto value = place.Number<std::int32_t>(0, kAnyValue);
    if (IsOneOf(rows, value))
        return value;
    std::string known;
    for (const Row row : rows)
        known += (known.empty() ? "" : ", ") + std::to_string(row);
    place.Fault(std::to_string(value) + " is unknown; known are " + known);
}
