// The public fields of a devmode by their own names: what `devmode show` lists and `--set` writes.
#pragma once

#include <windows.h>

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <span>
#include <string>
#include <string_view>

struct DevmodeField
{
    enum class Type
    {
        Short, // signed 16-bit
        Word,
        Dword,
        Text, // 32 wide characters, the last of them a terminator
    };

    const char* name = nullptr;
    std::size_t offset = 0;
    Type type = Type::Word;
    long long minimum = 0;
    long long maximum = 0;
    DWORD flag = 0; // the bit of dmFields that says "this field counts"; 0 when it has none
    bool canBeSet = false;
    std::uint32_t feature = 0; // the core driver's setting that it holds; 0: none
};

// In the order of the structure.
[[nodiscard]] std::span<const DevmodeField> DevmodeFields();
[[nodiscard]] std::size_t DevmodeFieldWidth(const DevmodeField& field); // bytes
// Null when no field has the name.
[[nodiscard]] const DevmodeField* FindDevmodeField(std::string_view name);
// The field that alone holds a core driver's setting, or null.
[[nodiscard]] const DevmodeField* FindDevmodeFieldOfFeature(std::uint32_t feature);

// "from 1 to 32767"
[[nodiscard]] std::string DevmodeNumberRange(const DevmodeField& field);
// A number in the field's range, decimal or hexadecimal with 0x. Throws Failure, which names the key and the range.
[[nodiscard]] long long ParseDevmodeNumber(const DevmodeField& field, std::string_view key, std::string_view text);

// Parses, checks the range, writes the field and sets its bit in dmFields. Throws Failure, which names the key and the
// limit, and leaves the structure as it was.
void SetDevmodeField(DEVMODEW& devmode, const DevmodeField& field, std::string_view value);

// Every field that lies within the first `publicSize` bytes, by name.
[[nodiscard]] nlohmann::ordered_json DevmodeFieldsToJson(const DEVMODEW& devmode, std::size_t publicSize);
