// The checks of a printer model, section by section, in the order of the document.
#include <tvcore/printermodel.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <locale>
#include <set>
#include <system_error>

#include <tvcore/datamodelids.h>
#include <tvcore/workflowmodulenames.h>

#include "jsoncursor.h"
#include "jsontext.h"
#include "modelchoice.h"
#include "modeldefaults.h"
#include "modelforms.h"
#include "modelmediatypes.h"

namespace
{

namespace Value = DataModelIds::Value;

// A stream needs the process's locale. The Windows tool chain makes that at first use, and ends the process when it
// finds no memory for it; so it is used first while the library is loaded.
[[maybe_unused]] const std::locale kMadeWithTheLibrary;

constexpr std::int32_t kFamilies[] = {Value::Automatic, Value::ControllerFamilyXps, Value::ControllerFamilyMonochrome,
                                      Value::ControllerFamilyColor};

// The private parts that the two core drivers are known to make.
constexpr std::uint16_t kPostScriptSizes[] = {708, 724};
constexpr std::uint16_t kUnidrvSizes[] = {560, 564, 572};

// Every product string that the provider publishes.
constexpr std::array<std::int32_t, 19> kProductStrings = {
    264,   418,   10027, 10029, 10146, 10210, 10211, 10214, 10290, 40373,
    41033, 41034, 41035, 41065, 41066, 41067, 41068, 41069, 41075,
};

// Where the texts end up there is room for so many characters: of a driver's name with its path, of DC_BINNAMES, of a
// resolution that is shown.
constexpr std::size_t kMaxModelName = 63;
constexpr std::size_t kMaxBinName = 23;
constexpr std::size_t kMaxResolutionName = 31;

constexpr std::int64_t kMaxWord = 0xFFFF;
constexpr std::int64_t kMaxShort = 0x7FFF; // of a devmode's signed 16-bit words

CXString ReadModelName(const JsonCursor& place)
{
    CXString name = place.Name(kMaxModelName);
    // It becomes the driver's name in the spooler and the end of a namespace URI.
    if (name.View().find_first_of(W("\\,!\"<>&")) != WStringView::npos)
        place.Fault("holds one of the characters \\ , ! \" < > &");
    return name;
}

PrinterModel::CoreDriver ReadCoreDriver(const JsonCursor& place)
{
    place.OnlyFields({"kind", "privateSize"});
    PrinterModel::CoreDriver driver;
    const CXString kind = place.Field("kind").Name(kMaxTextLength);
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
    const CXString name = place.Name(kMaxTextLength);
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
                               { texts.emplace(number, text.Text(kMaxTextLength)); });
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

std::vector<PrinterModel::Resolution> ReadResolutions(const JsonCursor& place)
{
    std::vector<PrinterModel::Resolution> resolutions;
    std::set<std::pair<std::uint16_t, std::uint16_t>> known;
    place.ForEachItem(
        [&](const JsonCursor& item)
        {
            item.OnlyFields({"x", "y", "name"});
            PrinterModel::Resolution resolution;
            resolution.x = item.Field("x").Number<std::uint16_t>(1, kMaxShort);
            resolution.y = item.Field("y").Number<std::uint16_t>(1, kMaxShort);
            resolution.name = item.Field("name").Name(kMaxResolutionName);
            if (!known.emplace(resolution.x, resolution.y).second)
                item.Fault("this resolution is given twice");
            resolutions.push_back(std::move(resolution));
        });
    place.NotEmpty();
    return resolutions;
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
            bin.id = item.Field("id").Number<std::uint16_t>(1, kMaxShort);
            bin.name = item.Field("name").Name(kMaxBinName);
            if (!known.insert(bin.id).second)
                item.Field("id").Fault("bin " + std::to_string(bin.id) + " is given twice");
            bins.push_back(std::move(bin));
        });
    place.NotEmpty();
    return bins;
}

PrinterModel::Extent ReadExtent(const JsonCursor& place)
{
    place.OnlyFields({"width", "length"});
    return {place.Field("width").Number<std::uint16_t>(1, kMaxWord),
            place.Field("length").Number<std::uint16_t>(1, kMaxWord)};
}

void ReadLimits(const JsonCursor& root, PrinterModel& model)
{
    model.maxCopies = root.Field("maxCopies").Number<std::uint16_t>(1, kMaxShort);
    model.printRate = root.Field("printRate").Number<std::uint16_t>(1, kMaxShort);
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
    model.forms = ReadModelForms(root.Field("forms"));
    model.resolutions = ReadResolutions(root.Field("resolutions"));
    model.mediaTypes = ReadModelMediaTypes(root.Field("mediaTypes"));
    model.bins = ReadBins(root.Field("bins"));
    model.margins = ReadModelMargins(root.Field("margins"), model.forms);
    ReadLimits(root, model);
    if (const auto defaults = root.OptionalField("defaults"))
        model.defaults = ReadModelDefaults(*defaults);
    return model;
}

// By way of wide characters, as FindDriverDataFile has it.
std::string Utf8Name(const std::filesystem::path& file)
{
    return CXString(WStringView(file.string<WCHAR>())).ToUtf8();
}

[[noreturn]] void ThrowUnreadable(std::string_view name, const std::error_code& reason)
{
    ThrowModelFault(name, "cannot be read: " + reason.message());
}

// As much as there is, one byte more than a model may have at most.
std::string ReadModelText(const std::filesystem::path& file, std::string_view name)
{
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    if (error)
        ThrowUnreadable(name, error);
    if (!std::filesystem::is_regular_file(status)) // nor is anything read that might never end
        ThrowModelFault(name, "cannot be read: it is no file");
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    if (error)
        ThrowUnreadable(name, error);
    std::string text(static_cast<std::size_t>(std::min<std::uintmax_t>(size, PrinterModel::kMaxFileSize + 1)), '\0');
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    if (!stream.read(text.data(), static_cast<std::streamsize>(text.size())))
        ThrowUnreadable(name, std::error_code(errno != 0 ? errno : EIO, std::generic_category()));
    return text;
}

} // namespace

PrinterModel ReadPrinterModel(const std::filesystem::path& file)
{
    const std::string name = Utf8Name(file);
    return ParsePrinterModel(ReadModelText(file, name), name);
}

PrinterModel ParsePrinterModel(std::string_view text, std::string_view fileName)
{
    const JsonValue document = ParseJsonText(text, fileName);
    return ReadModel(JsonCursor(document, fileName));
}
