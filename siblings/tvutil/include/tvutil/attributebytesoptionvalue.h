// AttributeBytesOptionValue: the value of an option feature: its number, its name where it brings one, and whether
// somebody chose it.
#pragma once

#include <cstdint>
#include <optional>

#include <tvutil/attributebytesids.h>
#include <tvutil/attributebytesvalue.h>
#include <tvutil/cxstring.h>

class TVUTIL_API AttributeBytesOptionValue
{
public:
    AttributeBytesOptionValue(AttributeBytesValueId value, bool isChoice) noexcept;
    AttributeBytesOptionValue(const AttributeBytesNewValueId& value, bool isChoice);

    // Nothing when the value is of another kind or its bytes make no option. Control characters of the name become
    // blanks.
    [[nodiscard]] static std::optional<AttributeBytesOptionValue> FromAttributeBytes(const AttributeBytesValue& value);
    [[nodiscard]] AttributeBytesValue ToAttributeBytes() const;

    [[nodiscard]] std::int32_t GetValueId() const noexcept;
    [[nodiscard]] const CXString& GetValueName() const noexcept; // empty for a value of the catalogue
    [[nodiscard]] bool IsChoice() const noexcept;

private:
    std::int32_t m_value;
    CXString m_name;
    bool m_isChoice;
};
