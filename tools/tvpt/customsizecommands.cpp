#include "customsizecommands.h"

#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include <tvcore/customsizenumber.h>
#include <tvcore/featurevalues.h>
#include <tvutil/datacache.h>
#include <tvutil/exceptions.h>
#include <tvutil/singleline.h>
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
constexpr std::int32_t kLeastToAdd = 100; // thousandths of a millimetre: what a form list tells without rounding it up
constexpr char kUnusable[] = "its width, length and units cannot be read";

struct CustomSizeArguments
{
    std::string name;
    std::string width;
    std::string length;
    std::string units;
    bool json = false;
};

constexpr std::size_t kLongestName = 255; // of a key of the registry

// A name that one key of the registry may have, whoever made it.
CXString RequireKeyName(const char* what, const std::string& name)
{
    const CXString wide = CXString::FromUtf8(name);
    if (wide.ToUtf8() != name)
        Fail(what, OneLine(name), "the name is not UTF-8");
    if (wide.IsEmpty())
        Fail(what, "\"\"", "the name is empty");
    if (name.find('\\') != std::string::npos)
        Fail(what, OneLine(name), "a name has no backslash");
    if (wide.Length() > kLongestName)
        Fail(what, OneLine(name), "a name has at most 255 characters");
    return wide;
}

// A name to be seen in lists.
CXString RequireNewName(const std::string& name)
{
    CXString wide = RequireKeyName(kAdding, name);
    const std::string shown = SingleLine(wide.View()).ToUtf8();
    if (IsBlank(wide.View()))
        Fail(kAdding, "\"" + shown + "\"", "the name is empty");
    if (!IsSingleLine(wide.View()))
        Fail(kAdding, shown, "a name has no control characters and is one line");
    return wide;
}

FeatureCatalogue::Length RequireLength(const CustomSizeArguments& arguments, const char* option,
                                       const std::string& text)
{
    const auto length = FeatureCatalogue::ParseLength(text);
    const Number microns = length ? length->value.GetValue(Dimension::Microns) : Number(0);
    // What is finer than a thousandth counts against the limits, too.
    const bool isTooShort = microns.GetNumerator() < kLeastToAdd * microns.GetDenominator();
    const bool isTooLong = microns.GetNumerator() > CustomForms::kLongest * microns.GetDenominator();
    if (!length || isTooShort || isTooLong)
        Fail(kAdding, arguments.name,
             std::string(option) + " must be a length of 0.1mm to 3276.7mm, such as 100mm or 5.5in, and is \"" +
                 OneLine(text) + "\"");
    return *length;
}

bool IsMetric(const CustomSizeArguments& arguments, bool isGivenInInches)
{
    return arguments.units.empty() ? !isGivenInInches : arguments.units == "metric";
}

// Under the lock of those who change them: a size that is just being added or removed is not one that cannot be read.
CustomForms::Walk WalkSizes()
{
    const DataCache::Lock lock(HKEY_CURRENT_USER);
    return CustomForms::WalkSizes();
}

CustomForms::Walk RequireWhole(const char* what, CustomForms::Walk walk)
{
    if (walk.isCutOff)
        Fail(what, "the user's registry", "it cannot be read");
    return walk;
}

CXString ListedName(const CustomForms::Size& size)
{
    return CXString(CustomForms::FormOf(size).GetName()).ToLower(); // cut
}

// In a list of forms the one would pass for the other.
void RequireDistinct(const CustomForms::Size& size)
{
    const CustomForms::Walk walk = RequireWhole(kAdding, CustomForms::WalkSizes());
    for (const CustomForms::Size& other : walk.sizes)
        if (other.name.ToLower() == size.name.ToLower())
            continue; // the one that Add finds
        else if (ListedName(other) == ListedName(size))
            Fail(kAdding, size.name.ToUtf8(),
                 "its first 63 characters are those of another custom paper size: " + OneLine(other.name.ToUtf8()));
        else if (CustomSizeNumber(other.name) == CustomSizeNumber(size.name))
            Fail(kAdding, size.name.ToUtf8(),
                 "its paper number is that of another custom paper size: " + OneLine(other.name.ToUtf8()));
}

void AddSize(const CustomSizeArguments& arguments)
{
    CustomForms::Size size;
    size.name = RequireNewName(arguments.name);
    const auto width = RequireLength(arguments, "--width", arguments.width);
    const auto length = RequireLength(arguments, "--length", arguments.length);
    size.width = width.value.GetValue(Dimension::Microns).GetLongValue();
    size.length = length.value.GetValue(Dimension::Microns).GetLongValue();
    size.isMetric = IsMetric(arguments, width.unit == Dimension::Inches && length.unit == Dimension::Inches);
    const DataCache::Lock lock(HKEY_CURRENT_USER); // over both: nobody adds another one in between
    RequireDistinct(size);
    if (!CustomForms::Add(size, lock))
        Fail(kAdding, arguments.name, "there is a custom paper size of this name");
}

void RemoveSize(const std::string& name)
{
    if (!CustomForms::Remove(RequireKeyName(kRemoving, name)))
        Fail(kRemoving, OneLine(name), "there is no custom paper size of this name");
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
    const CustomForms::Walk walk = RequireWhole("listing the custom paper sizes", WalkSizes());
    if (asJson)
        return JsonText(SizesToJson(walk));
    std::vector<FormsInfoRecord> forms;
    std::transform(walk.sizes.begin(), walk.sizes.end(), std::back_inserter(forms), CustomForms::FormOf);
    return (forms.empty() ? "" : FormTable(forms)) + UnusableSizesOf(walk);
}

} // namespace

std::string DescribeUnusableSizes()
{
    try
    {
        return UnusableSizesOf(WalkSizes());
    }
    catch (const ExceptionDataCacheFailure&) // somebody holds the lock for long, which keeps nobody from reading
    {
        return UnusableSizesOf(CustomForms::WalkSizes());
    }
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
