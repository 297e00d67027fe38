// Values of the catalogue's features: as people write them in printer models and on command lines, and at their place
// among a document's or a device's settings.
//
// Linked statically by whoever uses it; no state.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include <tvcore/featurecatalogue.h>
#include <tvutil/attributebytesindexedlist.h>
#include <tvutil/attributebytesvalue.h>
#include <tvutil/dimension.h>

namespace FeatureCatalogue
{

// Which values the feature takes, as a complaint: "JobCopies must be a whole number from 1 to 32767".
[[nodiscard]] std::string DescribeLimit(const Row& row);

// Whether the length, however fine, lies within those that the feature takes.
[[nodiscard]] bool AllowsLength(const Row& row, const Dimension& length);

// The text in UTF-8: true or false; a whole number; an option's number, for one that no table has with its name
// ("9700:Blue 90g"); a length ("12.5mm", also cm, um, in); a text as it is. Throws std::invalid_argument, with
// DescribeLimit's text, for anything else. An option is marked as somebody's choice when `isChosen` says so and it is
// not the automatic value.
[[nodiscard]] AttributeBytesValue ParseValue(const Row& row, std::string_view text, bool isChosen);

// A length as ParseValue reads one, of any sign and size, and the unit it was given in. Nothing for another text.
struct Length
{
    Dimension value;
    Dimension::UnitsEnum unit = Dimension::Millimeters;
};
[[nodiscard]] std::optional<Length> ParseLength(std::string_view text);

// Puts the value where the catalogue says, in collections that keep what else they hold and are made when absent.
// Throws std::invalid_argument, with nothing changed, when something else is stored in a collection's place, and
// std::length_error for more than a list can hold.
void StoreValue(AttributeBytesIndexedList& settings, const Row& row, const AttributeBytesValue& value);

// Takes it away again; its collections stay. Whether there was one. Throws std::invalid_argument as StoreValue does.
bool RemoveValue(AttributeBytesIndexedList& settings, const Row& row);

// By feature number; only features of the catalogue.
using DefaultValues = std::map<std::int32_t, AttributeBytesValue>;

// The settings that defaults amount to, for the features of one scope.
[[nodiscard]] AttributeBytesIndexedList MakeSettings(const DefaultValues& defaults, Scope scope);

} // namespace FeatureCatalogue
