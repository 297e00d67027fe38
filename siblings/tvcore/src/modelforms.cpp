#include "modelforms.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <string>

#include <tvcore/customsizenumber.h>
#include <tvcore/datamodelids.h>
#include <tvcore/pagesizetable.h>

#include "modelchoice.h"

namespace
{

constexpr std::int32_t kUnits[] = {DataModelIds::Value::UnitsMetric, DataModelIds::Value::UnitsInches};
constexpr std::int32_t kFormTypes[] = {DataModelIds::PageSizeStandard,     DataModelIds::PageSizeExtended,
                                       DataModelIds::PageSizeDriverCustom, DataModelIds::PageSizeDriverForm,
                                       DataModelIds::PageSizeUserForm,     DataModelIds::PageSizeUnlisted};
constexpr std::int32_t kDictionaryFormTypes[] = {DataModelIds::PageSizeStandard, DataModelIds::PageSizeExtended,
                                                 DataModelIds::PageSizeDriverForm};
// Where another type's form has the same number, the provider lists that one and not these.
constexpr std::int32_t kYieldingFormTypes[] = {DataModelIds::PageSizeDriverCustom, DataModelIds::PageSizeDriverForm};

constexpr std::size_t kMaxFormName = 63;
constexpr std::int64_t kMaxLength = 32767;    // tenths of a millimetre: a devmode's are signed 16-bit words
constexpr std::int32_t kMicronsPerUnit = 100; // of the form list

void CheckPaperId(const JsonCursor& place, std::uint16_t paperId)
{
    if (paperId >= kFirstCustomSizeNumber)
        place.Fault("paper ids from " + std::to_string(kFirstCustomSizeNumber) + " on are for named custom sizes");
}

// The page-size dictionary must find the form by its size and its value, or it would have no option name.
void CheckPageSize(const JsonCursor& place, const PrinterModel::Form& form)
{
    constexpr std::int32_t kTolerance = 499; // microns; the dictionary takes 0.499999 mm
    if (form.valueId == 0)
        place.Fault("a form of type " + std::to_string(form.formType) + " needs a page-size value");
    const PageSizeRow* const row = PageSizeTable::FindRow(form.valueId);
    if (row == nullptr)
        place.Fault("the page-size dictionary has no value " + std::to_string(form.valueId));
    if (std::abs(form.width * kMicronsPerUnit - row->width) > kTolerance ||
        std::abs(form.length * kMicronsPerUnit - row->length) > kTolerance)
        place.Fault("value " + std::to_string(form.valueId) + " is a sheet of " + std::to_string(row->width) + " x " +
                    std::to_string(row->length) + " microns, not of this form's size");
}

PrinterModel::Form ReadForm(const JsonCursor& place)
{
    place.OnlyFields({"paperId", "name", "width", "length", "units", "type", "valueId"});
    PrinterModel::Form form;
    form.paperId = place.Field("paperId").Number<std::uint16_t>(1, kMaxPaperId);
    form.name = place.Field("name").Name(kMaxFormName);
    form.width = place.Field("width").Number<std::int32_t>(1, kMaxLength);
    form.length = place.Field("length").Number<std::int32_t>(1, kMaxLength);
    form.units = ChoiceOf(place.Field("units"), kUnits);
    form.formType = ChoiceOf(place.Field("type"), kFormTypes);
    form.valueId = place.Field("valueId").Number<std::int32_t>(0, kAnyValue);
    CheckPaperId(place.Field("paperId"), form.paperId);
    if (IsOneOf(kDictionaryFormTypes, form.formType))
        CheckPageSize(place.Field("valueId"), form);
    else if (form.valueId != 0)
        place.Field("valueId").Fault("a form of type " + std::to_string(form.formType) +
                                     " has no page-size value: must be 0");
    return form;
}

// What the provider lists.
bool IsListed(const PrinterModel::Form& form, const std::vector<PrinterModel::Form>& forms)
{
    return !IsOneOf(kYieldingFormTypes, form.formType) ||
           std::none_of(forms.begin(), forms.end(),
                        [&form](const PrinterModel::Form& other)
                        { return other.paperId == form.paperId && other.formType != form.formType; });
}

// The page-size value decides the option name; two options of one name could not be told apart.
void CheckOptionNames(const JsonCursor& place, const std::vector<PrinterModel::Form>& forms)
{
    std::set<std::int32_t> known;
    auto form = forms.begin();
    place.ForEachItem(
        [&](const JsonCursor& item)
        {
            const bool hasName = IsOneOf(kDictionaryFormTypes, form->formType) && IsListed(*form, forms);
            if (hasName && !known.insert(form->valueId).second)
                item.Field("valueId").Fault("another form would have the same option name");
            ++form;
        });
}

// Of the forms of one number exactly one is listed: a number that two have, or only forms that yield, means nothing.
void CheckPaperIds(const JsonCursor& place, const std::vector<PrinterModel::Form>& forms)
{
    std::map<std::uint16_t, int> listed;
    for (const PrinterModel::Form& form : forms)
        listed[form.paperId] += IsOneOf(kYieldingFormTypes, form.formType) ? 0 : 1;
    std::map<std::uint16_t, std::set<std::int32_t>> typesOf;
    auto form = forms.begin();
    place.ForEachItem(
        [&](const JsonCursor& item)
        {
            std::set<std::int32_t>& types = typesOf[form->paperId];
            const bool isOneOfSome = !types.empty();
            const std::string twice = "paper id " + std::to_string(form->paperId) + " is given twice";
            if (!types.insert(form->formType).second)
                item.Field("paperId").Fault(twice + " for forms of one type");
            if (isOneOfSome && listed[form->paperId] != 1)
                item.Field("paperId").Fault(twice +
                                            ": only forms of type 25003 or 25004 may have the number of another form");
            ++form;
        });
}

// On every form of that number.
void CheckMarginsFit(const JsonCursor& place, const PrinterModel::Margins& margins, std::uint16_t paperId,
                     const std::vector<PrinterModel::Form>& forms)
{
    bool isKnown = false;
    for (const PrinterModel::Form& form : forms)
    {
        if (form.paperId != paperId)
            continue;
        isKnown = true;
        if (margins.left + margins.right >= form.width * kMicronsPerUnit ||
            margins.top + margins.bottom >= form.length * kMicronsPerUnit)
            place.Fault("the margins leave nothing of the paper");
    }
    if (!isKnown)
        place.Field("paperId").Fault("no form has paper id " + std::to_string(paperId));
}

} // namespace

std::vector<PrinterModel::Form> ReadModelForms(const JsonCursor& place)
{
    std::vector<PrinterModel::Form> forms;
    place.ForEachItem([&forms](const JsonCursor& item) { forms.push_back(ReadForm(item)); });
    place.NotEmpty();
    CheckPaperIds(place, forms);
    CheckOptionNames(place, forms);
    return forms;
}

std::map<std::uint16_t, PrinterModel::Margins> ReadModelMargins(const JsonCursor& place,
                                                                const std::vector<PrinterModel::Form>& forms)
{
    constexpr std::int64_t kMaxMargin = 1'000'000; // a metre
    std::map<std::uint16_t, PrinterModel::Margins> all;
    place.ForEachItem(
        [&](const JsonCursor& item)
        {
            item.OnlyFields({"paperId", "left", "top", "right", "bottom"});
            const auto paperId = item.Field("paperId").Number<std::uint16_t>(1, kMaxPaperId);
            PrinterModel::Margins margins;
            margins.left = item.Field("left").Number<std::int32_t>(0, kMaxMargin);
            margins.top = item.Field("top").Number<std::int32_t>(0, kMaxMargin);
            margins.right = item.Field("right").Number<std::int32_t>(0, kMaxMargin);
            margins.bottom = item.Field("bottom").Number<std::int32_t>(0, kMaxMargin);
            CheckMarginsFit(item, margins, paperId, forms);
            if (!all.emplace(paperId, margins).second)
                item.Field("paperId").Fault("margins of paper id " + std::to_string(paperId) + " are given twice");
        });
    return all;
}
