#include "coredriverticket.h"

#include <tvcore/datamodelids.h>

#include "coresettings.h"
#include "schemawriter.h"

namespace
{

constexpr std::string_view kDriverNamespaceRoot = "http://schemas.microsoft.com/windows/printing/oemdriverpt/";

// The devmode's option. A resolution that the model does not list is written all the same.
SchemaOption OptionOf(const SchemaFeature& feature, CoreSettings& settings)
{
    if (const SchemaOption* const option = settings.FindOption(feature))
        return *option;
    const std::uint32_t resolution = settings.Number(DataModelIds::Feature::MsResolution);
    SchemaOption unlisted;
    unlisted.properties = ResolutionProperties(HIWORD(resolution), LOWORD(resolution));
    return unlisted;
}

void WriteParameter(const SchemaParameter& parameter, CoreSettings& settings, SchemaWriter& ticket)
{
    ticket.Valued("ParameterInit", parameter.name, settings.ParameterValue(parameter));
}

void WriteFeature(const SchemaFeature& feature, CoreSettings& settings, SchemaWriter& ticket)
{
    const SchemaOption option = OptionOf(feature, settings);
    ticket.Open("Feature", feature.name);
    ticket.Open("Option", option.name);
    WriteScoredProperties(option, ticket);
    ticket.Close();
    ticket.Close();
    for (const SchemaParameter& parameter : feature.parameters)
        if (option.RefersTo(parameter.name))
            WriteParameter(parameter, settings, ticket);
}

// Letters, digits, '.', '-' and '_' stay, each other character becomes one '_', as services do.
std::string UriSegment(WStringView text)
{
    constexpr WStringView kKept = W("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.-_");
    std::string segment;
    for (const WCHAR character : text)
        if (kKept.find(character) != WStringView::npos)
            segment += static_cast<char>(character);
        else if ((character & 0xFC00) != 0xDC00) // the second half of a character beyond the basic plane
            segment += '_';
    return segment;
}

} // namespace

std::string DriverNamespaceUri(const CXString& providerNamespace, const CXString& driverName)
{
    if (!providerNamespace.IsEmpty())
        return providerNamespace.ToUtf8();
    return std::string(kDriverNamespaceRoot) + UriSegment(driverName.View());
}

std::string MakeCoreDriverTicket(const Devmode& devmode, const PrinterModel& model,
                                 const std::string& driverNamespaceUri, IPrintCoreHelper* helper)
{
    const CoreSchema schema = MakeCoreSchema(model);
    CoreSettings settings = CoreSettings::AsMeant(devmode, model, helper);
    SchemaWriter ticket("PrintTicket", driverNamespaceUri);
    for (const SchemaFeature& feature : schema.features)
        WriteFeature(feature, settings, ticket);
    WriteParameter(schema.copies, settings, ticket);
    return ticket.Finish();
}
