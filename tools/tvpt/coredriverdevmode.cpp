#include "coredriverdevmode.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>
#include <vector>

#include "coresettings.h"
#include "printschemadocument.h"
#include "schemawriter.h"

namespace
{

// An option with the numbers of its parameters.
struct Choice
{
    const SchemaOption* option = nullptr;
    std::vector<std::pair<const SchemaParameter*, long>> numbers;
};

std::optional<long> ParseInteger(std::string_view text)
{
    constexpr std::string_view kBlanks = " \t\r\n";
    const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
    text.remove_prefix(begin);
    text.remove_suffix(text.size() - (text.find_last_not_of(kBlanks) + 1));
    long value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

// The choices that a ticket makes of the core driver's features.
class TicketChoices
{
public:
    TicketChoices(const SchemaElement& ticket, const std::string& driverNamespaceUri)
        : m_ticket(ticket), m_driverNamespaceUri(driverNamespaceUri)
    {
    }

    // Without an option when the ticket chooses none that the driver knows.
    [[nodiscard]] Choice Find(const SchemaFeature& feature) const
    {
        const SchemaElement* const chosen = FindChild(m_ticket, "Feature", feature.name);
        const SchemaElement* const element = chosen != nullptr ? chosen->Child("Option") : nullptr;
        Choice choice;
        if (chosen != nullptr)
            choice.option = FindOption(feature, NameOfOption(*chosen), element);
        for (const SchemaParameter& parameter : feature.parameters)
        {
            if (choice.option == nullptr || !choice.option->RefersTo(parameter.name) || parameter.feature == 0)
                continue;
            const std::optional<long> value =
                element != nullptr ? ParameterOf(*choice.option, *element, parameter) : std::nullopt;
            if (!value || *value < parameter.minimum || *value > parameter.maximum)
                return {};
            choice.numbers.emplace_back(&parameter, *value / parameter.factor);
        }
        return choice;
    }

private:
    [[nodiscard]] bool Is(const SchemaName& name, std::string_view prefixed) const
    {
        const std::size_t colon = std::min(prefixed.find(':'), prefixed.size());
        const bool isDriver = prefixed.substr(0, colon) == SchemaWriter::kDriverPrefix;
        return colon < prefixed.size() &&
               name.Is(isDriver ? std::string_view(m_driverNamespaceUri) : kKeywords.uri, prefixed.substr(colon + 1));
    }

    // The last one of its name, or null.
    [[nodiscard]] const SchemaElement* FindChild(const SchemaElement& parent, std::string_view element,
                                                 std::string_view name) const
    {
        const SchemaElement* found = nullptr;
        for (const SchemaElement* const child : parent.Children(element))
            if (Is(child->nameAttribute, name))
                found = child;
        return found;
    }

    // The option's own, or the value of the feature's property that stands for it.
    [[nodiscard]] SchemaName NameOfOption(const SchemaElement& feature) const
    {
        if (const SchemaElement* const option = feature.Child("Option"))
            return option->nameAttribute;
        const SchemaElement* const property = FindChild(feature, "ScoredProperty", "psk:OptionName");
        const SchemaElement* const value = property != nullptr ? property->Child("Value") : nullptr;
        return value != nullptr ? value->textName : SchemaName();
    }

    [[nodiscard]] const SchemaOption* FindOption(const SchemaFeature& feature, const SchemaName& name,
                                                 const SchemaElement* element) const
    {
        for (const SchemaOption& option : feature.options)
            if (Is(name, option.name))
                return &option;
        for (const SchemaOption& option : feature.options)
            if (element != nullptr && HasNumbersOf(*element, option))
                return &option;
        return nullptr;
    }

    // Whether there are any, and all of them agree.
    [[nodiscard]] bool HasNumbersOf(const SchemaElement& element, const SchemaOption& option) const
    {
        bool hasSome = false;
        for (const SchemaProperty& property : option.properties)
        {
            if (property.kind != SchemaProperty::Kind::Integer)
                continue;
            hasSome = true;
            const std::optional<long> value = IntegerOf(element, property.name);
            if (!value || std::to_string(*value) != property.value)
                return false;
        }
        return hasSome;
    }

    [[nodiscard]] std::optional<long> ParameterOf(const SchemaOption& option, const SchemaElement& element,
                                                  const SchemaParameter& parameter) const
    {
        for (const SchemaProperty& property : option.properties)
            if (property.value == parameter.name)
                return IntegerOf(element, property.name);
        return std::nullopt;
    }

    // Of a scored property, or of the parameter to which it refers.
    [[nodiscard]] std::optional<long> IntegerOf(const SchemaElement& option, std::string_view propertyName) const
    {
        const SchemaElement* holder = FindChild(option, "ScoredProperty", propertyName);
        const SchemaElement* const reference = holder != nullptr ? holder->Child("ParameterRef") : nullptr;
        if (reference != nullptr)
        {
            holder = nullptr;
            for (const SchemaElement* const parameter : m_ticket.Children("ParameterInit"))
                if (parameter->nameAttribute.Is(reference->nameAttribute.uri, reference->nameAttribute.local))
                    holder = parameter;
        }
        const SchemaElement* const value = holder != nullptr ? holder->Child("Value") : nullptr;
        return value != nullptr ? ParseInteger(value->text) : std::nullopt;
    }

    const SchemaElement& m_ticket;
    const std::string& m_driverNamespaceUri;
};

bool IsMade(const SchemaFeature& feature, const Choice& choice, CoreSettings settings)
{
    return settings.FindOption(feature) == choice.option &&
           std::all_of(choice.numbers.begin(), choice.numbers.end(),
                       [&settings](const auto& number)
                       { return settings.ParameterValue(*number.first) == number.second * number.first->factor; });
}

void Make(const Choice& choice, CoreSettings settings, Devmode& devmode)
{
    for (const CoreSetting& setting : choice.option->settings)
        settings.Write(setting);
    for (const auto& [parameter, number] : choice.numbers)
        settings.Write({CoreSetting::Kind::Number, parameter->feature, static_cast<std::uint32_t>(number)});
    settings.CopyTo(devmode);
}

} // namespace

void ApplyCoreDriverTicket(const SchemaElement& ticket, const PrinterModel& model,
                           const std::string& driverNamespaceUri, IPrintCoreHelper* helper, Devmode& devmode)
{
    const CoreSchema schema = MakeCoreSchema(model);
    const TicketChoices choices(ticket, driverNamespaceUri);
    for (const SchemaFeature& feature : schema.features)
    {
        const Choice choice = feature.isProviders ? Choice() : choices.Find(feature);
        // Both as it means and as it stands: what it does not claim may be left over from another setting.
        if (choice.option == nullptr || (IsMade(feature, choice, CoreSettings::AsMeant(devmode, model, helper)) &&
                                         IsMade(feature, choice, CoreSettings(devmode, model, helper))))
            continue;
        Make(choice, CoreSettings(devmode, model, helper), devmode);
    }
}
