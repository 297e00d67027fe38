#include "ticketreport.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>

#include "driverdatareport.h"
#include "printschemadocument.h"
#include "schemawriter.h"

namespace
{

using nlohmann::ordered_json;

std::string ShownName(const SchemaElement& element)
{
    for (const SchemaNamespace& known : {kFramework, kKeywords, kPrivateKeywords, kXmlSchemaInstance, kXmlSchema})
        if (element.nameAttribute.uri == known.uri)
            return std::string(known.prefix) + ":" + element.nameAttribute.local;
    const bool hasPrefix = !element.nameAttribute.uri.empty() && !element.namePrefix.empty();
    return hasPrefix ? element.namePrefix + ":" + element.nameAttribute.local : element.nameAttribute.local;
}

ordered_json NameOrNull(const SchemaElement& element)
{
    return element.nameAttribute.local.empty() ? ordered_json() : ordered_json(ShownName(element));
}

// A property's value: its text, or the parameter that it refers to.
ordered_json ShownValue(const SchemaElement& property)
{
    if (const SchemaElement* const value = property.Child("Value"))
        return value->text;
    if (const SchemaElement* const reference = property.Child("ParameterRef"))
        return {{"parameterRef", ShownName(*reference)}};
    return nullptr;
}

ordered_json ShownProperties(const SchemaElement& parent, std::string_view kind)
{
    ordered_json shown = ordered_json::array();
    for (const SchemaElement* const property : parent.Children(kind))
    {
        ordered_json row = {{"name", NameOrNull(*property)}, {"value", ShownValue(*property)}};
        for (const std::string_view nested : {"Property", "ScoredProperty"})
            if (ordered_json below = ShownProperties(*property, nested); !below.empty())
                row[nested == "Property" ? "properties" : "scoredProperties"] = std::move(below);
        shown.push_back(std::move(row));
    }
    return shown;
}

ordered_json ShownOption(const SchemaElement& option)
{
    ordered_json shown = {{"name", NameOrNull(option)},
                          {"scoredProperties", ShownProperties(option, "ScoredProperty")}};
    if (ordered_json properties = ShownProperties(option, "Property"); !properties.empty())
        shown["properties"] = std::move(properties);
    return shown;
}

// A list and no object by name: a ticket may hold a feature twice, and a report must not hide that.
ordered_json ShownFeatures(const SchemaElement& parent)
{
    ordered_json features = ordered_json::array();
    for (const SchemaElement* const feature : parent.Children("Feature"))
    {
        ordered_json options = ordered_json::array();
        for (const SchemaElement* const option : feature->Children("Option"))
            options.push_back(ShownOption(*option));
        ordered_json shown = {{"name", NameOrNull(*feature)}, {"options", std::move(options)}};
        if (ordered_json properties = ShownProperties(*feature, "Property"); !properties.empty())
            shown["properties"] = std::move(properties);
        if (ordered_json nested = ShownFeatures(*feature); !nested.empty())
            shown["features"] = std::move(nested);
        features.push_back(std::move(shown));
    }
    return features;
}

ordered_json ShownParameters(const SchemaElement& root)
{
    ordered_json parameters = ordered_json::array();
    for (const SchemaElement* const parameter : root.Children("ParameterInit"))
        parameters.push_back({{"name", NameOrNull(*parameter)}, {"value", ShownValue(*parameter)}});
    return parameters;
}

// The value of one of the maker's own parameters; nothing when the ticket has none. A driver without a namespace of its
// own names them in the one that the service made for it; no other driver reads them there.
std::optional<std::string> PrivateParameter(const SchemaElement& root, std::string_view localName)
{
    const bool hasPrivateNamespace = std::ranges::count(root.declaredUris, kPrivateKeywords.uri) != 0;
    for (const SchemaElement* const parameter : root.Children("ParameterInit"))
        if (parameter->nameAttribute.Is(kPrivateKeywords.uri, localName) ||
            (!hasPrivateNamespace && parameter->namePrefix == SchemaWriter::kDriverPrefix &&
             parameter->nameAttribute.local == localName))
            if (const SchemaElement* const value = parameter->Child("Value"))
                return value->text;
    return std::nullopt;
}

ordered_json ShownDriverData(const SchemaElement& root)
{
    const auto text = PrivateParameter(root, "JobTavlenDriverData");
    return text ? DescribeDriverData(*text) : ordered_json{{"present", false}};
}

ordered_json ShownJobTicket(const SchemaElement& root)
{
    const auto text = PrivateParameter(root, "JobTavlenJtifJobTicket");
    if (!text)
        return nullptr;
    ordered_json lines = ordered_json::array();
    for (std::size_t begin = 0; begin < text->size();)
    {
        const std::size_t end = std::min(text->find('\n', begin), text->size());
        lines.push_back(text->substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

} // namespace

nlohmann::ordered_json DescribeTicket(const SchemaElement& root)
{
    ordered_json shown = {{"features", ShownFeatures(root)}, {"parameters", ShownParameters(root)}};
    if (ordered_json properties = ShownProperties(root, "Property"); !properties.empty())
        shown["properties"] = std::move(properties);
    shown["driverData"] = ShownDriverData(root);
    shown["jobTicket"] = ShownJobTicket(root);
    return shown;
}
