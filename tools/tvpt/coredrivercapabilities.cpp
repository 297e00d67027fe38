#include "coredrivercapabilities.h"

#include <algorithm>

#include <tvcore/datamodelids.h>

#include "coresettings.h"
#include "schemawriter.h"

namespace
{

namespace Features = DataModelIds::Feature;
namespace Values = DataModelIds::Value;

constexpr long kMicronsPerUnit = 100; // a devmode and a model count tenths of a millimetre

void WriteProperty(SchemaWriter& document, std::string_view name, std::string_view type, std::string_view value)
{
    document.Valued("Property", name, type, value);
}

void WriteDisplayName(SchemaWriter& document, std::string_view text)
{
    if (!text.empty())
        WriteProperty(document, "psk:DisplayName", "string", text);
}

void WriteOption(const SchemaOption& option, SchemaWriter& document)
{
    document.OpenUnconstrainedOption(option.name);
    WriteScoredProperties(option, document);
    WriteDisplayName(document, option.displayName);
    if (option.isIdentity)
        WriteProperty(document, "psf:IdentityOption", "string", "True");
    document.Close();
}

void WriteParameterDefinition(const SchemaParameter& parameter, SchemaWriter& document)
{
    const auto number = [&document](std::string_view name, long value)
    {
        document.Valued("Property", name, value);
    };
    document.Open("ParameterDef", parameter.name);
    WriteProperty(document, "psf:DataType", "QName", "xsd:integer");
    WriteProperty(document, "psf:UnitType", "string", parameter.unit);
    number("psf:Multiple", 1);
    number("psf:MaxValue", parameter.maximum);
    number("psf:MinValue", parameter.minimum);
    number("psf:DefaultValue", parameter.defaultValue);
    WriteProperty(document, "psf:Mandatory", "QName", parameter.isMandatory ? "psk:Unconditional" : "psk:Conditional");
    WriteDisplayName(document, parameter.displayName);
    document.Close();
}

void WriteFeature(const SchemaFeature& feature, SchemaWriter& document)
{
    document.Open("Feature", feature.name);
    WriteProperty(document, "psf:SelectionType", "QName", "psk:PickOne");
    WriteDisplayName(document, feature.displayName);
    for (const SchemaOption& option : feature.options)
        WriteOption(option, document);
    document.Close();
    for (const SchemaParameter& parameter : feature.parameters)
        WriteParameterDefinition(parameter, document);
}

// In microns.
struct ImageableSize
{
    long width = 0;
    long height = 0;
    PrinterModel::Margins margins;
};

ImageableSize ImageableSizeOf(CoreSettings& settings, const PrinterModel& model)
{
    const auto paperId = static_cast<std::uint16_t>(settings.Number(Features::MsPaperSize));
    const PrinterModel::Form* const known = model.FindForm(paperId);
    const PrinterModel::Form& form = known != nullptr ? *known : model.forms.front();
    ImageableSize size{form.width * kMicronsPerUnit, form.length * kMicronsPerUnit, {}};
    if (paperId == DMPAPER_USER)
    {
        size.width = static_cast<long>(settings.Number(Features::MsPaperWidth)) * kMicronsPerUnit;
        size.height = static_cast<long>(settings.Number(Features::MsPaperLength)) * kMicronsPerUnit;
    }
    if (const auto row = model.margins.find(form.paperId); row != model.margins.end())
        size.margins = row->second;
    return size;
}

// As the reader of the page sees it: a page across is turned, anticlockwise for landscape.
ImageableSize Turned(const ImageableSize& size, CoreSettings& settings)
{
    const PrinterModel::Margins& upright = size.margins;
    if (settings.Has({CoreSetting::Kind::Option, Features::MsOrientation, Values::MsLandscape}))
        return {size.height, size.width, {upright.bottom, upright.left, upright.top, upright.right}};
    if (settings.Has({CoreSetting::Kind::Option, Features::MsOrientation, Values::MsRotatedLandscape}))
        return {size.height, size.width, {upright.top, upright.right, upright.bottom, upright.left}};
    return size;
}

void WriteImageableSize(const ImageableSize& size, SchemaWriter& document)
{
    constexpr std::string_view kElement = "Property";
    document.Open(kElement, "psk:PageImageableSize");
    document.Valued(kElement, "psk:ImageableSizeWidth", size.width);
    document.Valued(kElement, "psk:ImageableSizeHeight", size.height);
    document.Open(kElement, "psk:ImageableArea");
    document.Valued(kElement, "psk:OriginWidth", size.margins.left);
    document.Valued(kElement, "psk:OriginHeight", size.margins.top);
    // A custom paper may be smaller than the margins.
    document.Valued(kElement, "psk:ExtentWidth", std::max(0L, size.width - size.margins.left - size.margins.right));
    document.Valued(kElement, "psk:ExtentHeight", std::max(0L, size.height - size.margins.top - size.margins.bottom));
    document.Close();
    document.Close();
}

} // namespace

std::string MakeCoreDriverCapabilities(const Devmode& devmode, const PrinterModel& model,
                                       const std::string& driverNamespaceUri, IPrintCoreHelper* helper)
{
    const CoreSchema schema = MakeCoreSchema(model);
    CoreSettings settings = CoreSettings::AsMeant(devmode, model, helper);
    SchemaWriter document("PrintCapabilities", driverNamespaceUri);
    for (const SchemaFeature& feature : schema.features)
        WriteFeature(feature, document);
    WriteParameterDefinition(schema.copies, document);
    WriteImageableSize(Turned(ImageableSizeOf(settings, model), settings), document);
    return document.Finish();
}
