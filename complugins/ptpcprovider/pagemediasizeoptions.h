// The options of "PageMediaSize": what they are called, and what a custom size is made of.
//
// Forms and devmodes are measured in tenths of a millimetre, documents in microns.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <span>

#include <tvcore/pagesizedictionary.h>
#include <tvutil/cxstring.h>

#include "complugins/formsinforecord.h"
#include "complugins/ptpcprovider/printschemaxmldocument.h"

namespace PageMediaSize
{

inline constexpr WCHAR kFeature[] = W("PageMediaSize");

// What a value of a custom size says.
enum class Meaning
{
    Width,
    Height,
    Constant,
};

struct CustomProperty
{
    const WCHAR* name;      // of the scored property
    const WCHAR* parameter; // to which it refers
    Meaning meaning;
    LONG constant; // of a constant only
};

struct CustomOption
{
    WStringView name;
    std::span<const CustomProperty> properties;
};

// clang-format off
inline constexpr CustomProperty kCustomProperties[] = {
    // property         parameter                          meaning            constant
    {W("MediaSizeWidth"),  W("PageMediaSizeMediaSizeWidth"),  Meaning::Width,    0},
    {W("MediaSizeHeight"), W("PageMediaSizeMediaSizeHeight"), Meaning::Height,   0},
};
inline constexpr CustomProperty kPostScriptCustomProperties[] = {
    {W("PSWidth"),         W("PageMediaSizePSWidth"),         Meaning::Width,    0},
    {W("PSHeight"),        W("PageMediaSizePSHeight"),        Meaning::Height,   0},
    {W("PSWidthOffset"),   W("PageMediaSizePSWidthOffset"),   Meaning::Constant, 0},
    {W("PSHeightOffset"),  W("PageMediaSizePSHeightOffset"),  Meaning::Constant, 0},
    {W("PSOrientation"),   W("PageMediaSizePSOrientation"),   Meaning::Constant, 1},
};
// clang-format on

inline constexpr CustomOption kCustomMediaSize{W("CustomMediaSize"), kCustomProperties};
inline constexpr CustomOption kPostScriptCustomMediaSize{W("PSCustomMediaSize"), kPostScriptCustomProperties};

// The driver's own.
[[nodiscard]] constexpr const CustomOption& CustomOptionOf(bool isPostScript) noexcept
{
    return isPostScript ? kPostScriptCustomMediaSize : kCustomMediaSize;
}

// Of either kind of driver, since tickets travel; null for any other name.
[[nodiscard]] constexpr const CustomOption* FindCustomOption(WStringView name) noexcept
{
    for (const CustomOption* const option : {&kCustomMediaSize, &kPostScriptCustomMediaSize})
        if (option->name == name)
            return option;
    return nullptr;
}

// The property that says the width or the height. A fixed size has these two of "CustomMediaSize", with plain values.
[[nodiscard]] constexpr const WCHAR* PropertyOf(Meaning meaning, const CustomOption& option) noexcept
{
    for (const CustomProperty& property : option.properties)
        if (property.meaning == meaning)
            return property.name;
    return nullptr;
}

static_assert(PropertyOf(Meaning::Width, kCustomMediaSize) != nullptr &&
              PropertyOf(Meaning::Height, kCustomMediaSize) != nullptr &&
              PropertyOf(Meaning::Width, kPostScriptCustomMediaSize) != nullptr &&
              PropertyOf(Meaning::Height, kPostScriptCustomMediaSize) != nullptr);

struct OptionName
{
    CXString name;
    PrintSchema::MsPrintTicketNamespacesEnum namespaceIndex = PrintSchema::Keywords;
};

// Of a form that is no custom size, by its type. Nothing for a form that the dictionary lacks. A type that is never
// published, or none of the known ones, throws TavlenComException with E_FAIL.
[[nodiscard]] std::optional<OptionName> NameOfForm(const FormsInfoRecord& form, const PageSizeDictionary& dictionary);

// Its scored properties: a custom size refers to parameters, any other (null) has the form's measures.
void AppendSizeProperties(const PrintSchemaXmlDocument& document, IXMLDOMNode* option, const CustomOption* custom,
                          const FormsInfoRecord& form);

// A length that its new unit cannot hold in 32 bits becomes the nearest one that it can.
[[nodiscard]] LONG MicronsOf(std::int32_t tenths);
[[nodiscard]] std::int32_t TenthsOf(LONG microns);

} // namespace PageMediaSize
