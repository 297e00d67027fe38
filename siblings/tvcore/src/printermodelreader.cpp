// The checks of a printer model, section by section, in the order of the document.
#include <tvcore/printermodel.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <limits>
#include <set>
#include <stdexcept>
#include <system_error>

#include <tvcore/customsizenumber.h>
#include <tvcore/pagesizetable.h>
#include <tvcore/workflowmodulenames.h>
#include <tvutil/attributebytesrawlist.h>

#include "jsoncursor.h"
#include "jsontext.h"

namespace
{

constexpr std::int64_t kAnyValue = std::numeric_limits<std::int32_t>::max();
constexpr std::size_t kMaxTextLength = 255;

constexpr std::int32_t kFamilies[] = {5001, 8430, 8431, 8434};
constexpr std::int32_t kUnits[] = {7491, 7492};
constexpr std::int32_t kFormTypes[] = {25001, 25002, 25003, 25004, 25005, 25007};
constexpr std::int32_t kDriverForm = 25004;
constexpr std::int32_t kDictionaryFormTypes[] = {25001, 25002, kDriverForm};

// The private parts that the two core drivers are known to make.
constexpr std::uint16_t kPostScriptSizes[] = {708, 724};
constexpr std::uint16_t kUnidrvSizes[] = {560, 564, 572};

// Every product string that the provider publishes.
constexpr std::array<std::int32_t, 19> kProductStrings = {
    264,   418,   10027, 10029, 10146, 10210, 10211, 10214, 10290, 40373,
    41033, 41034, 41035, 41065, 41066, 41067, 41068, 41069, 41075,
};

constexpr std::int32_t kAutomatic = 5001;
constexpr std::int32_t kFirstMedia = 6799; // published like automatic selection
constexpr std::int32_t kLastMedia = 6878;
constexpr std::int32_t kLastPredefinedMedia = 9686; // values above are custom media types

template <class Row, std::size_t Count>
bool IsOneOf(const Row (&rows)[Count], std::int64_t value)
{
    return std::any_of(std::begin(rows), std::end(rows), [value](Row row) { return row == value; });
}

template <class Row, std::size_t Count>
std::int32_t ChoiceOf(const JsonCursor& place, const Row (&rows)[Count])
{
    const auto value = place.Number<std::int32_t>(0, kAnyValue);
    if (IsOneOf(rows, value))
        return value;
    std::string known;
    for (const Row row : rows)
        known += (known.empty() ? "" : ", ") + std::to_string(row);
    place.Fault(std::to_string(value) + " is unknown; known are " + known);
}

CXString ReadModelName(const JsonCursor& place)
{
    CXString name = place.Text(1, 63);
    // It becomes the driver's name in the spooler and the end of a namespace URI.
    if (name.View().find_first_of(W("\\,!\"<>&")) != WStringView::npos)
        place.Fault("holds one of the characters \\ , ! \" < > &");
    return name;
}

PrinterModel::CoreDriver ReadCoreDriver(const JsonCursor& place)
{
    place.OnlyFields({"kind", "privateSize"});
    PrinterModel::CoreDriver driver;
    const CXString kind = place.Field("kind").Text(1, kMaxTextLength);
    const JsonCursor size = place.Field("privateSize");
    if (kind == W("postscript"))
    {
        driver.kind = PrinterModel::CoreDriverKind::PostScript;
        driver.privateSize = static_cast<std::uint16_t>(ChoiceOf(size, kPostScriptSizes));
    }
    else if (kind == W("unidrv"))
    {
        driver.kind = PrinterModel::CoreDriverKind::Unidrv;
        driver.privateSize = static_cast<std::uint16_t>(ChoiceOf(size, kUnidrvSizes));
    }
    else
        place.Field("kind").Fault("must be \"postscript\" or \"unidrv\"");
    return driver;
}

// In the table's spelling: to a file system the letters' case may matter.
CXString ReadWorkflowModule(const JsonCursor& place)
{
    const CXString name = place.Text(1, kMaxTextLength);
    if (const DWORD kind = WorkflowModuleKind(name); kind != kNoWorkflowModule)
        return kWorkflowModuleNames[kind - 1];
    std::string known;
    for (const WCHAR* const each : kWorkflowModuleNames)
        known += (known.empty() ? "" : ", ") + CXString(each).ToUtf8();
    place.Fault("\"" + name.ToUtf8() + "\" is unknown; known are " + known);
}

std::map<std::int32_t, CXString> ReadNumberedTexts(const JsonCursor& place)
{
    std::map<std::int32_t, CXString> texts;
    place.ForEachNumberedField([&texts](std::int32_t number, const JsonCursor& text)
                               { texts.emplace(number, text.Text(0, kMaxTextLength)); });
    return texts;
}

std::map<std::int32_t, CXString> ReadProductStrings(const JsonCursor& place)
{
    auto texts = ReadNumberedTexts(place);
    for (const std::int32_t number : kProductStrings)
        if (!texts.contains(number))
            place.Fault("product string " + std::to_string(number) + " is missing");
    return texts;
}

void CheckPaperId(const JsonCursor& place, std::uint16_t paperId)
{
    if (paperId >= kFirstCustomSizeNumber)
        place.Fault("paper ids from " + std::to_string(kFirstCustomSizeNumber) + " on are for named custom sizes");
}

// The page-size dictionary must find the form by its size and its value, or it would have no option name.
void CheckPageSize(const JsonCursor& place, const PrinterModel::Form& form)
{
    constexpr std::int32_t kMicronsPerUnit = 100; // of the form list
    constexpr std::int32_t kTolerance = 499;      // microns; the dictionary takes 0.499999 mm
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
    form.paperId = place.Field("paperId").Number<std::uint16_t>(1, 65535);
    form.name = place.Field("name").Text(1, 63);
    form.width = place.Field("width").Number<std::int32_t>(1, 32767);
    form.length = place.Field("length").Number<std::int32_t>(1, 32767);
    form.units = ChoiceOf(place.Field("units"), kUnits);
    form.formType = ChoiceOf(place.Field("type"), kFormTypes);
    form.valueId = place.Field("valueId").Number<std::int32_t>(0, kAnyValue);
    CheckPaperId(place.Field("paperId"), form.paperId);
    if (IsOneOf(kDictionaryFormTypes, form.formType))
        CheckPageSize(place.Field("valueId"), form);
    return form;
}

// What the provider lists: a form of the driver's own only while its number is not another type's too.
bool IsListed(const PrinterModel::Form& form, const std::vector<PrinterModel::Form>& forms)
{
    return form.formType != kDriverForm ||
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

std::vector<PrinterModel::Form> ReadForms(const JsonCursor& place)
{
    std::vector<PrinterModel::Form> forms;
    // A driver's own form may repeat the paper id of another type's: the list of a printer then shows one of them.
    std::set<std::pair<std::uint16_t, std::int32_t>> known;
    place.ForEachItem(
        [&](const JsonCursor& item)
        {
            forms.push_back(ReadForm(item));
            if (!known.emplace(forms.back().paperId, forms.back().formType).second)
                item.Field("paperId").Fault("paper id " + std::to_string(forms.back().paperId) +
                                            " is given twice for forms of one type");
        });
    place.NotEmpty();
    CheckOptionNames(place, forms);
    return forms;
}

std::vector<PrinterModel::Resolution> ReadResolutions(const JsonCursor& place)
{
    std::vector<PrinterModel::Resolution> resolutions;
    std::set<std::pair<std::uint16_t, std::uint16_t>> known;
    place.ForEachItem(
        [&](const JsonCursor& item)
        {
            item.OnlyFields({"x", "y", "name"});
            PrinterModel::Resolution resolution;
            resolution.x = item.Field("x").Number<std::uint16_t>(1, 32767);
            resolution.y = item.Field("y").Number<std::uint16_t>(1, 32767);
            resolution.name = item.Field("name").Text(1, 31);
            if (!known.emplace(resolution.x, resolution.y).second)
                item.Fault("this resolution is given twice");
            resolutions.push_back(std::move(resolution));
        });
    place.NotEmpty();
    return resolutions;
}

// The spooler's standard numbers stand for values of the provider's table.
std::int32_t FoldedMediaId(std::int32_t id)
{
    switch (id)
    {
    case DMMEDIA_STANDARD:
        return 6800;
    case DMMEDIA_TRANSPARENCY:
        return 6801;
    case DMMEDIA_GLOSSY:
        return 6820;
    case kFirstMedia:
        return kAutomatic;
    default:
        return id;
    }
}

void CheckMediaId(const JsonCursor& place, std::int32_t givenId)
{
    const std::int32_t id = FoldedMediaId(givenId);
    const bool isInTable = id > kFirstMedia && id <= kLastMedia;
    if (isInTable && !FeatureCatalogue::Allows(*FeatureCatalogue::Find(DataModelIds::Feature::MediaType), id))
        place.Fault("media value " + std::to_string(id) + " is reserved: it has no option name");
    if (id != kAutomatic && !isInTable && id <= kLastPredefinedMedia)
        place.Fault("media value " + std::to_string(id) + " is unknown");
}

// What a document will call the media type: two types of one name could not be told apart.
std::string OptionKey(const PrinterModel::MediaType& media)
{
    if (media.id > kLastPredefinedMedia)
        return "custom " + media.name.ToUtf8();
    return std::to_string(FoldedMediaId(media.id));
}

std::vector<PrinterModel::MediaType> ReadMediaTypes(const JsonCursor& place)
{
    std::vector<PrinterModel::MediaType> mediaTypes;
    std::set<std::string> known;
    place.ForEachItem(
        [&](const JsonCursor& item)
        {
            item.OnlyFields({"id", "name"});
            PrinterModel::MediaType media;
            media.id = item.Field("id").Number<std::int32_t>(0, kAnyValue);
            media.name = item.Field("name").Text(1, 64);
            CheckMediaId(item.Field("id"), media.id);
            if (!known.insert(OptionKey(media)).second)
                item.Field("id").Fault("another media type would have the same option name");
            mediaTypes.push_back(std::move(media));
        });
    place.NotEmpty();
    return mediaTypes;
}

std::vector<PrinterModel::Bin> ReadBins(const JsonCursor& place)
{
    std::vector<PrinterModel::Bin> bins;
    std::set<std::uint16_t> known;
    place.ForEachItem(
        [&](const JsonCursor& item)
        {
            item.OnlyFields({"id", "name"});
            PrinterModel::Bin bin;
            bin.id = item.Field("id").Number<std::uint16_t>(1, 32767);
            bin.name = item.Field("name").Text(1, 23);
            if (!known.insert(bin.id).second)
                item.Field("id").Fault("bin " + std::to_string(bin.id) + " is given twice");
            bins.push_back(std::move(bin));
        });
    place.NotEmpty();
    return bins;
}

void CheckMarginsFit(const JsonCursor& place, const PrinterModel::Margins& margins, const PrinterModel::Form& form)
{
    constexpr std::int64_t kMicronsPerUnit = 100; // of the form list
    if (margins.left + margins.right >= form.width * kMicronsPerUnit ||
        margins.top + margins.bottom >= form.length * kMicronsPerUnit)
        place.Fault("the margins leave nothing of the paper");
}

std::map<std::uint16_t, PrinterModel::Margins> ReadMargins(const JsonCursor& place, const PrinterModel& model)
{
    constexpr std::int64_t kMaxMargin = 1'000'000; // a metre
    std::map<std::uint16_t, PrinterModel::Margins> all;
    place.ForEachItem(
        [&](const JsonCursor& item)
        {
            item.OnlyFields({"paperId", "left", "top", "right", "bottom"});
            const auto paperId = item.Field("paperId").Number<std::uint16_t>(1, 65535);
            PrinterModel::Margins margins;
            margins.left = item.Field("left").Number<std::int32_t>(0, kMaxMargin);
            margins.top = item.Field("top").Number<std::int32_t>(0, kMaxMargin);
            margins.right = item.Field("right").Number<std::int32_t>(0, kMaxMargin);
            margins.bottom = item.Field("bottom").Number<std::int32_t>(0, kMaxMargin);
            const PrinterModel::Form* const form = model.FindForm(paperId);
            if (form == nullptr)
                item.Field("paperId").Fault("no form has paper id " + std::to_string(paperId));
            CheckMarginsFit(item, margins, *form);
            if (!all.emplace(paperId, margins).second)
                item.Field("paperId").Fault("margins of paper id " + std::to_string(paperId) + " are given twice");
        });
    return all;
}

PrinterModel::Extent ReadExtent(const JsonCursor& place)
{
    place.OnlyFields({"width", "length"});
    return {place.Field("width").Number<std::uint16_t>(1, 65535),
            place.Field("length").Number<std::uint16_t>(1, 65535)};
}

// As the catalogue's values are written.
std::string DefaultText(const JsonCursor& place, const FeatureCatalogue::Row& row)
{
    using FeatureCatalogue::Kind;
    const bool isNumber = row.kind == Kind::Integer || (row.kind == Kind::Option && !place.IsText());
    if (row.kind == Kind::Boolean)
        return place.Switch() ? "true" : "false";
    if (isNumber)
        return std::to_string(place.Number<std::int32_t>(std::numeric_limits<std::int32_t>::min(), kAnyValue));
    return place.Text(0, kMaxTextLength).ToUtf8();
}

AttributeBytesValue ReadDefault(const JsonCursor& place, std::int32_t feature)
{
    const FeatureCatalogue::Row* const row = FeatureCatalogue::Find(feature);
    if (row == nullptr)
        place.Fault("the feature catalogue has no such feature");
    if (row->values.empty() && row->kind != FeatureCatalogue::Kind::Boolean)
        place.Fault(FeatureCatalogue::DescribeLimit(*row));
    try
    {
        return FeatureCatalogue::ParseValue(*row, DefaultText(place, *row), false);
    }
    catch (const std::invalid_argument& limit)
    {
        place.Fault(limit.what());
    }
}

FeatureCatalogue::DefaultValues ReadDefaults(const JsonCursor& place)
{
    FeatureCatalogue::DefaultValues defaults;
    place.ForEachNumberedField([&defaults](std::int32_t feature, const JsonCursor& value)
                               { defaults.emplace(feature, ReadDefault(value, feature)); });
    AttributeBytesRawList bytes;
    bytes.ImportFromIndexedList(FeatureCatalogue::MakeSettings(defaults, FeatureCatalogue::Scope::Document));
    if (bytes.GetBytes().size() > PrinterModel::kMaxDocumentDefaults)
        place.Fault("a document's defaults take " + std::to_string(bytes.GetBytes().size()) +
                    " bytes, a devmode has room for " + std::to_string(PrinterModel::kMaxDocumentDefaults));
    return defaults;
}

void ReadLimits(const JsonCursor& root, PrinterModel& model)
{
    model.maxCopies = root.Field("maxCopies").Number<std::uint16_t>(1, 32767);
    model.printRate = root.Field("printRate").Number<std::uint16_t>(1, 32767);
    model.memory = root.Field("memory").Number<std::int32_t>(1, kAnyValue);
    model.minExtent = ReadExtent(root.Field("minExtent"));
    model.maxExtent = ReadExtent(root.Field("maxExtent"));
    if (model.minExtent.width > model.maxExtent.width || model.minExtent.length > model.maxExtent.length)
        root.Field("minExtent").Fault("greater than the maximum extent");
}

PrinterModel ReadModel(const JsonCursor& root)
{
    root.OnlyFields({"$schema", "name", "capability", "controllerFamily", "coreDriver", "workflowModule",
                     "productInformation", "productStrings", "forms", "resolutions", "mediaTypes", "bins", "margins",
                     "maxCopies", "printRate", "memory", "minExtent", "maxExtent", "defaults"});
    PrinterModel model;
    model.name = ReadModelName(root.Field("name"));
    model.capability = root.Field("capability").HexWord();
    model.controllerFamily = ChoiceOf(root.Field("controllerFamily"), kFamilies);
    model.coreDriver = ReadCoreDriver(root.Field("coreDriver"));
    if (const auto module = root.OptionalField("workflowModule"))
        model.workflowModule = ReadWorkflowModule(*module);
    model.productInformation = ReadNumberedTexts(root.Field("productInformation"));
    model.productStrings = ReadProductStrings(root.Field("productStrings"));
    model.forms = ReadForms(root.Field("forms"));
    model.resolutions = ReadResolutions(root.Field("resolutions"));
    model.mediaTypes = ReadMediaTypes(root.Field("mediaTypes"));
    model.bins = ReadBins(root.Field("bins"));
    model.margins = ReadMargins(root.Field("margins"), model);
    ReadLimits(root, model);
    if (const auto defaults = root.OptionalField("defaults"))
        model.defaults = ReadDefaults(*defaults);
    return model;
}

std::string Utf8Name(const std::filesystem::path& file)
{
    const std::u8string name = file.u8string();
    return std::string(name.begin(), name.end());
}

} // namespace

PrinterModel ReadPrinterModel(const std::filesystem::path& file)
{
    const std::string name = Utf8Name(file);
    std::error_code error;
    std::string text;
    std::ifstream stream;
    if (std::filesystem::is_regular_file(file, error))
        stream.open(file, std::ios::binary);
    if (stream.is_open())
    {
        const std::uintmax_t size = std::filesystem::file_size(file, error);
        text.resize(static_cast<std::size_t>(std::min<std::uintmax_t>(error ? 0 : size, kMaxJsonSize + 1)));
        stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    }
    if (!stream.is_open() || error || !stream)
        ThrowModelFault(name, "cannot be read");
    return ParsePrinterModel(text, name);
}

PrinterModel ParsePrinterModel(std::string_view text, std::string_view fileName)
{
    const nlohmann::json document = ParseJsonText(text, fileName);
    return ReadModel(JsonCursor(document, fileName));
}
