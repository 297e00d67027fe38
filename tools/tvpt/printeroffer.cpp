#include "printeroffer.h"

#include <algorithm>

#include "failure.h"
#include "printschemadocument.h"
#include "schemavalues.h"

namespace
{

bool PicksMany(const SchemaElement& feature)
{
    const SchemaElement* const type = feature.FrameworkProperty("SelectionType");
    const SchemaElement* const value = type != nullptr ? type->Child("Value") : nullptr;
    return value != nullptr && value->textName.Is(kKeywords.uri, "PickMany");
}

void CollectFeatures(const SchemaElement& parent, OfferedFeature& offer)
{
    for (const SchemaElement* const feature : parent.Children("Feature"))
    {
        std::unique_ptr<OfferedFeature>& offered = offer.features[feature->nameAttribute];
        if (!offered)
            offered = std::make_unique<OfferedFeature>();
        offered->picksMany = offered->picksMany || PicksMany(*feature);
        for (const SchemaElement* const option : feature->Children("Option"))
        {
            offered->optionOfName.try_emplace(option->nameAttribute, option);
            offered->options.push_back(option);
        }
        CollectFeatures(*feature, *offered);
    }
}

const OfferedFeature* Find(const OfferedFeature& offer, const SchemaElement& feature)
{
    const auto found = offer.features.find(feature.nameAttribute);
    return found != offer.features.end() ? found->second.get() : nullptr;
}

void CollectManyChoice(const SchemaElement& parent, const OfferedFeature& offer, std::set<const SchemaElement*>& found)
{
    for (const SchemaElement* const feature : parent.Children("Feature"))
        if (const OfferedFeature* const offered = Find(offer, *feature))
        {
            if (offered->picksMany)
                found.insert(feature);
            CollectManyChoice(*feature, *offered, found);
        }
}

class Comparison
{
public:
    Comparison(const std::map<SchemaName, ParameterDefinition>& parameters, FaultList& faults)
        : m_parameters(parameters), m_faults(faults)
    {
    }

    void CompareFeatures(const ElementPath& parent, const OfferedFeature& offer)
    {
        for (const SchemaElement* const feature : parent.element.Children("Feature"))
        {
            const ElementPath place{*feature, &parent};
            if (const OfferedFeature* const offered = Find(offer, *feature))
                CompareWith(*offered, place);
            else if (!feature->nameAttribute.uri.empty())
                m_faults.Add(rules::kFeatureNotOffered, place, "the printer has no such feature");
        }
    }

private:
    void CompareWith(const OfferedFeature& offered, const ElementPath& place)
    {
        for (const SchemaElement* const option : place.element.Children("Option"))
            if (!IsOffered(*option, offered))
                m_faults.Add(rules::kOptionNotOffered, {*option, &place}, "the printer has no such option");
            else
                CompareValues({*option, &place}, offered);
        CompareFeatures(place, offered);
    }

    // A value where the printer's option of that name leaves it to a parameter is bound as the parameter is.
    void CompareValues(const ElementPath& option, const OfferedFeature& feature)
    {
        const auto offered = feature.optionOfName.find(option.element.nameAttribute);
        if (option.element.nameAttribute.local.empty() || offered == feature.optionOfName.end())
            return;
        const auto references = offered->second->Children("ScoredProperty");
        for (const SchemaElement* const property : option.element.Children("ScoredProperty"))
        {
            Spend(1 + references.size());
            const SchemaElement* const value = property->Child("Value");
            const ParameterDefinition* const definition =
                value != nullptr ? FindDefinition(references, property->nameAttribute) : nullptr;
            if (definition == nullptr)
                continue;
            if (std::string misfit = definition->DescribeMisfit(*value); !misfit.empty())
                m_faults.Add(rules::kParameterValue, {*property, &option}, std::move(misfit));
        }
    }

    [[nodiscard]] const ParameterDefinition* FindDefinition(const std::vector<const SchemaElement*>& properties,
                                                            const SchemaName& name) const
    {
        for (const SchemaElement* const property : properties)
            if (const SchemaElement* const reference = property->Child("ParameterRef");
                reference != nullptr && property->nameAttribute == name)
            {
                const auto found = m_parameters.find(reference->nameAttribute);
                return found != m_parameters.end() ? &found->second : nullptr;
            }
        return nullptr;
    }

    bool IsOffered(const SchemaElement& option, const OfferedFeature& feature)
    {
        if (!option.nameAttribute.local.empty())
            return option.nameAttribute.uri.empty() || feature.optionOfName.contains(option.nameAttribute);
        return std::ranges::any_of(feature.options, [&](const SchemaElement* other) { return MayBe(option, *other); });
    }

    // Scored properties of which both have a value agree. What only one of them has, or what is left to a parameter,
    // says nothing against it.
    bool MayBe(const SchemaElement& asked, const SchemaElement& offered)
    {
        const auto others = offered.Children("ScoredProperty");
        const auto properties = asked.Children("ScoredProperty");
        Spend(1 + properties.size() * others.size());
        for (const SchemaElement* const property : properties)
            for (const SchemaElement* const other : others)
            {
                const SchemaElement* const value = property->Child("Value");
                const SchemaElement* const otherValue = other->Child("Value");
                if (property->nameAttribute == other->nameAttribute && value != nullptr && otherValue != nullptr &&
                    !IsSameValue(*value, *otherValue))
                    return false;
            }
        return true;
    }

    // Each of a ticket's options without a name may meet each of the printer's, and each scored property each of its
    // option's: two large files could take hours.
    void Spend(std::size_t comparisons)
    {
        constexpr std::size_t kMostComparisons = 1u << 22;
        m_spent += comparisons;
        if (m_spent > kMostComparisons)
            Fail("comparing the ticket with the printer", "", "there are too many options and properties");
    }

    const std::map<SchemaName, ParameterDefinition>& m_parameters;
    FaultList& m_faults;
    std::size_t m_spent = 0;
};

} // namespace

PrinterOffer::PrinterOffer(const SchemaElement& capabilities)
{
    CollectFeatures(capabilities, m_root);
    for (const SchemaElement* const parameter : capabilities.Children("ParameterDef"))
        m_parameters.try_emplace(parameter->nameAttribute, *parameter);
}

std::set<const SchemaElement*> PrinterOffer::FindManyChoice(const SchemaElement& ticket) const
{
    std::set<const SchemaElement*> found;
    CollectManyChoice(ticket, m_root, found);
    return found;
}

void PrinterOffer::Compare(const SchemaElement& ticket, FaultList& faults) const
{
    if (!ticket.name.Is(kFramework.uri, "PrintTicket"))
        return;
    const ElementPath root{ticket};
    Comparison(m_parameters, faults).CompareFeatures(root, m_root);
    for (const SchemaElement* const parameter : ticket.Children("ParameterInit"))
    {
        const ElementPath place{*parameter, &root};
        const auto found = m_parameters.find(parameter->nameAttribute);
        const SchemaElement* const value = parameter->Child("Value");
        if (found == m_parameters.end())
        {
            if (!parameter->nameAttribute.uri.empty())
                faults.Add(rules::kParameterNotOffered, place, "the printer has no such parameter");
        }
        else if (value != nullptr)
            if (std::string misfit = found->second.DescribeMisfit(*value); !misfit.empty())
                faults.Add(rules::kParameterValue, place, std::move(misfit));
    }
}
