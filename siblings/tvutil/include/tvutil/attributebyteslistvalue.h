// AttributeBytesListValue: a value that holds attributes of its own: a collection, or a list of several ("levels").
//
// A collection is a list value of one level. Levels are raw lists; what cannot be read in one of them is kept.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include <tvutil/attributebytesrawlist.h>
#include <tvutil/attributebytesvalue.h>

class TVUTIL_API AttributeBytesListValue
{
public:
    AttributeBytesListValue() noexcept;
    explicit AttributeBytesListValue(AttributeBytesRawList level); // of one level

    // Nothing when the value is of another kind, or when a level runs past its end.
    [[nodiscard]] static std::optional<AttributeBytesListValue> FromAttributeBytes(const AttributeBytesValue& value);
    // Throws std::length_error when the levels are too long for one value.
    [[nodiscard]] AttributeBytesValue ToAttributeBytes() const;

    void AddLevel(AttributeBytesRawList level);
    [[nodiscard]] std::size_t GetLevelCount() const noexcept;
    // Throws std::out_of_range.
    [[nodiscard]] const AttributeBytesRawList& GetLevel(std::size_t level) const;

private:
    std::vector<AttributeBytesRawList> m_levels;
};
