// The core driver's settings of a devmode, by feature number, as commands show and write them. The devmode layer
// (complugins/msdevmodebase.h) knows which there are and where they lie.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>

#include <tvcore/printermodel.h>

#include "complugins/msdriverkind.h"
#include "devmode.h"
#include "oempart.h"

// The driver whose settings they are: a printer's or, where nobody names one or the devmode is not of its layout, any
// of the devmode's own layout, whose private part is then shown but not written.
struct CoreDriver
{
    MsDriverKind kind;
    bool isOfPrinter = false;
};

// Nothing when neither a printer nor the devmode tells. `model` may be null.
[[nodiscard]] std::optional<CoreDriver> FindCoreDriver(const std::optional<DriverParts>& parts,
                                                       const PrinterModel* model);

[[nodiscard]] CoreDriverLayout LayoutOf(const MsDriverKind& driver) noexcept;

// Number to "name", "value" (as the devmode has it), "option" (the data model's value; null for numbers and for what no
// table has) and "text" (the option's display name, or null). The value is null where this devmode has none. Settings
// in a private part of an unknown size are left out, and those whose place only a printer tells.
[[nodiscard]] nlohmann::ordered_json DescribeCoreFeatures(const Devmode& devmode,
                                                          const std::optional<CoreDriver>& driver);
// Whether the private part has one of the sizes that its layout is known to have.
[[nodiscard]] bool IsCorePartRecognized(const Devmode& devmode, const std::optional<CoreDriver>& driver);
// The same settings for people: "duplex": "flip on the long edge".
[[nodiscard]] nlohmann::ordered_json CoreFeaturesInWords(const nlohmann::ordered_json& features);

// "ms.N": VALUE as the devmode has it, or "@5422", a value of the data model. Throws Failure, which names the key, the
// driver and what would be possible, with the devmode unchanged.
void SetCoreFeature(const std::string& key, std::string_view value, Devmode& devmode, const PrinterModel* model);
inline constexpr std::string_view kCoreFeaturePrefix = "ms.";
