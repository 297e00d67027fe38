#include "customsizecommands.h"

#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include <tvcore/featurevalues.h>
#include <tvutil/datacache.h>
#include <tvutil/tavlencomexception.h>

#include "complugins/customforms.h"
#include "failure.h"
#include "formsreport.h"
#include "jsonoutput.h"

namespace
{

using nlohmann::ordered_json;

constexpr char kAdding[] = "adding the custom paper size";
constexpr char kRemoving[] = "removing the custom paper size";
constexpr char kUnusable[] = "its width, length and units cannot be read";

struct CustomSizeArguments
{
    std::string name;
    std::string width;
    std::string length;
    std::string units;
    bool json = false;
};

// A name that is one key of the registry and one line.
CXString RequireName(const char* what, const std::string& name)
{
    constexpr std::size_t kLongest = 255;
    const CXString wide = CXString::FromUtf8(name);
    if (wide.ToUtf8() != name)
        Fail(what, OneLine(name), "the name is not UTF-8");
    if (std::all_of(name.begin(), name.end(), [](char unit) { return unit == ' '; }))
        Fail(what, "\"" + name + "\"", "the name is empty");
    if (name.find('\\') != std::string::npos)
        Fail(what, name, "a name has no backslash");
    if (wide.Length() > kLongest)
        Fail(what, name, "a name has at most 255 characters");
    if (std::any_of(name.begin(), name.end(), [](char unit) { return (unit >= 0 && unit < ' ') || unit == '\x7F'; }))
        Fail(what, OneLine(name), "a name has no control characters");
    return wide;
}

FeatureCatalogue::Length RequireLength(const CustomSizeArguments& arguments, const char* option,
                                       const std::string& text)
{
    const auto length = FeatureCatalogue::ParseLength(text);
    const Number microns = length ? length->value.GetValue(Dimension::Microns) : Number(0);
    // What is finer than a thousandth counts against the limit, too.
    const bool isTooLong = microns.GetNumerator() > CustomForms::kLongest * microns.GetDenominator();
    if (!length || isTooLong || !CustomForms::IsLength(microns.GetLongValue()))
        Fail(kAdding, arguments.name,
             std::string(option) + " must be a length of 0.1mm to 3276.7mm, such as 100mm or 5.5in, and is \"" +
                 OneLine(text) + "\"");
    return *length;
}

bool IsMetric(const CustomSizeArguments& arguments, bool isGivenInInches)
{
    return arguments.units.empty() ? !isGivenInInches : arguments.units == "metric";
}

void AddSize(const CustomSizeArguments& arguments)
{
    CustomForms::Size size;
    size.name = RequireName(kAdding, arguments.name);
    const auto width = RequireLength(arguments, "--width", arguments.width);
    const auto length = RequireLength(arguments, "--length", arguments.length);
    size.width = width.value.GetValue(Dimension::Microns).GetLongValue();
    size.length = length.value.GetValue(Dimension::Microns).GetLongValue();
    size.isMetric = IsMetric(arguments, width.unit == Dimension::Inches && length.unit == Dimension::Inches);
    if (!CustomForms::Add(size))
        Fail(kAdding, arguments.name, "there is a custom paper size of this name");
}

void RemoveSize(const std::string& name)
{
    if (!CustomForms::Remove(RequireName(kRemoving, name)))
        Fail(kRemoving, name, "there is no custom paper size of this name");
}

// Under the lock of those who change them: a size that is just being added or removed is not one that cannot be read.
CustomForms::Walk WalkSizes()
{
    const DataCache::Lock lock(HKEY_CURRENT_USER);
    return CustomForms::WalkSizes();
}

CustomForms::Walk ReadSizes()
{
    CustomForms::Walk walk = WalkSizes();
    if (walk.isCutOff)
        Fail("listing the custom paper sizes", "the user's registry", "it cannot be read");
    return walk;
}

ordered_json SizesToJson(const CustomForms::Walk& walk)
{
    ordered_json list = ordered_json::array();
    for (const CustomForms::Size& size : walk.sizes)
    {
        const FormsInfoRecord form = CustomForms::FormOf(size);
        list.push_back({{"name", size.name.ToUtf8()},
                        {"paperId", form.paperId},
                        {"width", form.width},
                        {"length", form.length},
                        {"units", form.units},
                        {"widthInThousandthsOfAMillimeter", size.width},
                        {"lengthInThousandthsOfAMillimeter", size.length},
                        {"fault", nullptr}});
    }
    for (const CXString& name : walk.leftOut)
        list.push_back({{"name", name.ToUtf8()}, {"fault", kUnusable}});
    return list;
}

std::string UnusableSizesOf(const CustomForms::Walk& walk)
{
    std::string lines;
    for (const CXString& name : walk.leftOut)
        lines += "The custom paper size \"" + OneLine(name.ToUtf8()) + "\" is left out: " + kUnusable + ".\n";
    return lines;
}

std::string ListSizes(bool asJson)
{
    const CustomForms::Walk walk = ReadSizes();
    if (asJson)
        return JsonText(SizesToJson(walk));
    std::vector<FormsInfoRecord> forms;
    std::transform(walk.sizes.begin(), walk.sizes.end(), std::back_inserter(forms), CustomForms::FormOf);
    return (forms.empty() ? "" : FormTable(forms)) + UnusableSizesOf(walk);
}

} // namespace

std::string DescribeUnusableSizes()
{
    return UnusableSizesOf(WalkSizes());
}

void AddCustomSizeCommands(CLI::App& printer, Action& chosen)
{
    const auto arguments = std::make_shared<CustomSizeArguments>();
    CLI::App& size = *printer.add_subcommand("custom-size", "The user's own paper sizes");
    size.require_subcommand(1);

    CLI::App& add = *size.add_subcommand("add", "Add a size; \"tvpt printer refresh\" puts it into a printer's list");
    add.add_option("NAME", arguments->name, "The size's name")->required();
    add.add_option("--width", arguments->width, "A length, such as 100mm or 5.5in")->required();
    add.add_option("--length", arguments->length, "A length, such as 100mm or 5.5in")->required();
    add.add_option("--units", arguments->units, "metric or inches; else as both lengths are given")
        ->check(CLI::IsMember({"metric", "inches"}));
    OnCommand(add, chosen, [arguments](const StandardStreams&) { AddSize(*arguments); });

    CLI::App& list = *size.add_subcommand("list", "List the sizes");
    list.add_flag("--json", arguments->json, "As JSON");
    OnCommand(list, chosen,
              [arguments](const StandardStreams& streams) { WriteOutput({}, ListSizes(arguments->json), streams); });

    CLI::App& remove = *size.add_subcommand("remove", "Remove a size");
    remove.add_option("NAME", arguments->name, "The size's name")->required();
    OnCommand(remove, chosen, [arguments](const StandardStreams&) { RemoveSize(arguments->name); });
}
