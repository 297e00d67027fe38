// CoreSchema: what the core driver of a printer says in the Print Schema: its features, their options with the settings
// of a devmode that make them, and its parameters.
//
// The core driver's tickets (coredriverticket.h), its capabilities (coredrivercapabilities.h) and the way back from a
// ticket to a devmode (coredriverdevmode.h) all go by it, and so agree.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <tvcore/printermodel.h>

class SchemaWriter;

// A setting of the core driver (DataModelIds::Feature) with a value.
struct CoreSetting
{
    enum class Kind
    {
        Option, // a value of the data model (DataModelIds::Value), kept where this driver keeps it
        Number, // a field of the public devmode, as it has it
    };

    Kind kind = Kind::Option;
    std::uint32_t feature = 0;
    std::uint32_t value = 0;
};

struct SchemaProperty
{
    enum class Kind
    {
        Integer,
        QName,
        Parameter, // the value is the name of one
    };

    std::string name;
    Kind kind = Kind::Integer;
    std::string value;
};

// Names have their prefix: "psk:" for the keywords, SchemaWriter::kDriverPrefix for the driver's own.
struct SchemaOption
{
    std::string name; // empty: the scored properties say which it is
    std::string displayName;
    std::vector<SchemaProperty> properties = {};
    // The first tells the option, the others are written with it. Without any it is whatever no option before it is.
    std::vector<CoreSetting> settings = {};
    bool isIdentity = false; // the page stays as it is

    // Whether one of its properties does, by the parameter's name.
    [[nodiscard]] bool RefersTo(std::string_view parameter) const noexcept;
};

struct SchemaParameter
{
    std::string_view name;
    std::string_view displayName; // may be empty
    std::string_view unit;
    bool isMandatory = false;
    long defaultValue = 0;
    long minimum = 0;
    long maximum = 0;
    std::uint32_t feature = 0; // the setting whose number it is; 0: always the default
    long factor = 1;           // from the devmode's number to the document's
};

struct SchemaFeature
{
    std::string_view name;
    std::string_view displayName;
    std::vector<SchemaOption> options = {}; // never empty; the first stands for what is none of them
    std::vector<SchemaParameter> parameters = {};
    bool isProviders = false; // the provider brings it into the devmode, not the core driver
};

struct CoreSchema
{
    // A later one may take back what an earlier one has set, as in the devmode.
    std::vector<SchemaFeature> features;
    SchemaParameter copies; // the provider's, too

    // Null when the driver has none of that name.
    [[nodiscard]] const SchemaFeature* Find(std::string_view name) const noexcept;
};

// Features that this driver has no place for are left out, and options that its tables do not have.
[[nodiscard]] CoreSchema MakeCoreSchema(const PrinterModel& model);

// As tickets and capabilities have them alike.
void WriteScoredProperties(const SchemaOption& option, SchemaWriter& document);

// Of any resolution, in dots per inch.
[[nodiscard]] std::vector<SchemaProperty> ResolutionProperties(long x, long y);
