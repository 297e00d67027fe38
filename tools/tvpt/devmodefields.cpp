#include "devmodefields.h"

#include <tvutil/cxstring.h>
#include <tvutil/singleline.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "complugins/msdevmodepublicfields.h"
#include "failure.h"

namespace
{

using Type = DevmodeField::Type;

constexpr long long kShortMax = 32767;
constexpr long long kWordMax = 65535;
constexpr long long kDwordMax = 4294967295;
constexpr std::size_t kTextLength = 32; // characters, terminator included

// A field that holds a setting of the core driver: where it lies, the devmode layer knows. Of a setting of two fields
// `half` is 0 for the first and 1 for the second.
constexpr DevmodeField Core(const char* name, std::uint32_t feature, Type type, long long minimum, long long maximum,
                            int half = 0)
{
    for (const MsDevmodePublicField& field : MsDevmodePublicFields::kFields)
        if (field.feature == feature && half-- == 0)
            return {name, field.offset, type, minimum, maximum, field.flag, true, feature};
    throw std::invalid_argument("no such setting"); // and so no constant
}

constexpr DevmodeField kFields[] = {
    // clang-format off
    //  name                offset                                  type         min  max        flag              set
    { "dmDeviceName",       offsetof(DEVMODEW, dmDeviceName),       Type::Text,   0, 0,          0,                true  },
    { "dmSpecVersion",      offsetof(DEVMODEW, dmSpecVersion),      Type::Word,   0, kWordMax,   0,                true  },
    { "dmDriverVersion",    offsetof(DEVMODEW, dmDriverVersion),    Type::Word,   0, kWordMax,   0,                true  },
    { "dmSize",             offsetof(DEVMODEW, dmSize),             Type::Word,   0, kWordMax,   0,                false },
    { "dmDriverExtra",      offsetof(DEVMODEW, dmDriverExtra),      Type::Word,   0, kWordMax,   0,                false },
    { "dmFields",           offsetof(DEVMODEW, dmFields),           Type::Dword,  0, kDwordMax,  0,                true  },
    Core("dmOrientation",        3, Type::Short,  1, 2),
    Core("dmPaperSize",         12, Type::Word,   1, kWordMax),
    Core("dmPaperLength",       14, Type::Short,  0, kShortMax),
    Core("dmPaperWidth",        13, Type::Short,  0, kShortMax),
    Core("dmScale",              4, Type::Short,  1, kShortMax),
    Core("dmCopies",             5, Type::Short,  1, kShortMax),
    Core("dmDefaultSource",      7, Type::Short,  1, kShortMax),
    Core("dmPrintQuality",       8, Type::Short, -4, kShortMax),
    Core("dmColor",              9, Type::Short,  1, 2),
    Core("dmDuplex",            10, Type::Short,  1, 3),
    Core("dmYResolution",        8, Type::Short,  0, kShortMax, 1),
    Core("dmTTOption",          11, Type::Short,  1, 4),
    Core("dmCollate",            6, Type::Short,  0, 1),
    { "dmFormName",         offsetof(DEVMODEW, dmFormName),         Type::Text,   0, 0,          DM_FORMNAME,      true  },
    { "dmLogPixels",        offsetof(DEVMODEW, dmLogPixels),        Type::Word,   0, kWordMax,   DM_LOGPIXELS,     true  },
    { "dmBitsPerPel",       offsetof(DEVMODEW, dmBitsPerPel),       Type::Dword,  0, kDwordMax,  0,                true  },
    { "dmPelsWidth",        offsetof(DEVMODEW, dmPelsWidth),        Type::Dword,  0, kDwordMax,  0,                true  },
    { "dmPelsHeight",       offsetof(DEVMODEW, dmPelsHeight),       Type::Dword,  0, kDwordMax,  0,                true  },
    { "dmNup",              offsetof(DEVMODEW, dmNup),              Type::Dword,  1, 2,          DM_NUP,           true  },
    { "dmDisplayFrequency", offsetof(DEVMODEW, dmDisplayFrequency), Type::Dword,  0, kDwordMax,  0,                true  },
    Core("dmICMMethod",         15, Type::Dword,  1, kDwordMax),
    Core("dmICMIntent",         16, Type::Dword,  1, kDwordMax),
    Core("dmMediaType",         17, Type::Dword,  1, kDwordMax),
    Core("dmDitherType",        18, Type::Dword,  1, kDwordMax),
    { "dmReserved1",        offsetof(DEVMODEW, dmReserved1),        Type::Dword,  0, kDwordMax,  0,                true  },
    { "dmReserved2",        offsetof(DEVMODEW, dmReserved2),        Type::Dword,  0, kDwordMax,  0,                true  },
    { "dmPanningWidth",     offsetof(DEVMODEW, dmPanningWidth),     Type::Dword,  0, kDwordMax,  0,                true  },
    { "dmPanningHeight",    offsetof(DEVMODEW, dmPanningHeight),    Type::Dword,  0, kDwordMax,  0,                true  },
    // clang-format on
};

constexpr std::size_t WidthOf(Type type)
{
    switch (type)
    {
    case Type::Short:
    case Type::Word:
        return 2;
    case Type::Dword:
        return 4;
    case Type::Text:
        return kTextLength * sizeof(WCHAR);
    }
    return 0;
}

constexpr bool RowsAreTheWholeStructureInOrder()
{
    std::size_t end = 0;
    for (const DevmodeField& field : kFields)
    {
        const auto isNamesake = [&field](const DevmodeField& other)
        {
            return std::string_view(other.name) == field.name;
        };
        if (field.offset < end || std::count_if(std::begin(kFields), std::end(kFields), isNamesake) != 1)
            return false;
        end = field.offset + WidthOf(field.type);
    }
    return end == sizeof(DEVMODEW);
}
static_assert(RowsAreTheWholeStructureInOrder());

constexpr char kSetting[] = "setting a field";

std::byte* Place(DEVMODEW& devmode, const DevmodeField& field)
{
    return reinterpret_cast<std::byte*>(&devmode) + field.offset;
}

const std::byte* Place(const DEVMODEW& devmode, const DevmodeField& field)
{
    return reinterpret_cast<const std::byte*>(&devmode) + field.offset;
}

template <class Value>
Value Load(const std::byte* place)
{
    Value value{};
    std::memcpy(&value, place, sizeof value);
    return value;
}

void SetText(DEVMODEW& devmode, const DevmodeField& field, std::string_view value)
{
    const CXString text = CXString::FromUtf8(value);
    if (text.Length() > kTextLength - 1)
        Fail(kSetting, field.name, "longer than " + std::to_string(kTextLength - 1) + " characters");
    if (!IsSingleLine(text.View()) || text.ToUtf8() != value)
        Fail(kSetting, field.name, "not a text in UTF-8 on one line");
    std::array<WCHAR, kTextLength> characters{};
    std::copy(text.View().begin(), text.View().end(), characters.begin());
    std::memcpy(Place(devmode, field), characters.data(), sizeof characters);
}

void SetNumber(DEVMODEW& devmode, const DevmodeField& field, std::string_view value)
{
    const auto bits = static_cast<std::uint32_t>(ParseDevmodeNumber(field, field.name, value));
    std::memcpy(Place(devmode, field), &bits, WidthOf(field.type)); // little-endian: the low bytes come first
}

} // namespace

std::string DevmodeNumberRange(const DevmodeField& field)
{
    return "from " + std::to_string(field.minimum) + " to " + std::to_string(field.maximum);
}

long long ParseDevmodeNumber(const DevmodeField& field, std::string_view key, std::string_view text)
{
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    const std::string_view digits = hexadecimal ? text.substr(2) : text;
    long long number = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number, hexadecimal ? 16 : 10);
    const bool isNumber =
        error == std::errc() && end == digits.data() + digits.size() && !(hexadecimal && digits.starts_with('-'));
    if (!isNumber && error != std::errc::result_out_of_range)
        Fail(kSetting, key, "\"" + std::string(text) + "\" is not a number " + DevmodeNumberRange(field));
    if (!isNumber || number < field.minimum || number > field.maximum)
        Fail(kSetting, key, "must be " + DevmodeNumberRange(field));
    return number;
}

std::size_t DevmodeFieldWidth(const DevmodeField& field)
{
    return WidthOf(field.type);
}

std::span<const DevmodeField> DevmodeFields()
{
    return kFields;
}

const DevmodeField* FindDevmodeField(std::string_view name)
{
    const auto found = std::find_if(std::begin(kFields), std::end(kFields),
                                    [name](const DevmodeField& row) { return row.name == name; });
    return found != std::end(kFields) ? found : nullptr;
}

const DevmodeField* FindDevmodeFieldOfFeature(std::uint32_t feature)
{
    const auto isOfFeature = [feature](const DevmodeField& row)
    {
        return row.feature == feature;
    };
    const auto found = std::find_if(std::begin(kFields), std::end(kFields), isOfFeature);
    return std::count_if(std::begin(kFields), std::end(kFields), isOfFeature) == 1 ? found : nullptr;
}

void SetDevmodeField(DEVMODEW& devmode, const DevmodeField& field, std::string_view value)
{
    if (!field.canBeSet)
        Fail(kSetting, field.name, "is given by the devmode itself");
    if (field.type == Type::Text)
        SetText(devmode, field, value);
    else
        SetNumber(devmode, field, value);
    devmode.dmFields |= field.flag;
}

nlohmann::ordered_json DevmodeFieldsToJson(const DEVMODEW& devmode, std::size_t publicSize)
{
    nlohmann::ordered_json fields = nlohmann::ordered_json::object();
    for (const DevmodeField& field : kFields)
    {
        if (field.offset + WidthOf(field.type) > publicSize)
            continue;
        const std::byte* const place = Place(devmode, field);
        if (field.type == Type::Short)
            fields[field.name] = Load<std::int16_t>(place);
        else if (field.type == Type::Word)
            fields[field.name] = Load<std::uint16_t>(place);
        else if (field.type == Type::Dword)
            fields[field.name] = Load<std::uint32_t>(place);
        else
        {
            const auto characters = Load<std::array<WCHAR, kTextLength>>(place);
            const auto end = std::find(characters.begin(), characters.end(), WCHAR());
            fields[field.name] =
                CXString(WStringView(characters.data(), static_cast<std::size_t>(end - characters.begin()))).ToUtf8();
        }
    }
    return fields;
}
