#include "constructionrules.h"

#include <algorithm>
#include <map>
#include <utility>

#include "decimalnumber.h"
#include "elementkinds.h"
#include "failure.h"
#include "parameterdefinition.h"
#include "schemavalues.h"

namespace
{

// The texts of an element and of all below it: equal for scored properties that say the same.
void AppendContent(const SchemaElement& element, std::string& content)
{
    const std::string& text = element.textName.uri.empty() ? element.text : element.textName.local;
    content += "<" + element.name.local + "\n" + element.nameAttribute.uri + "\n" + element.nameAttribute.local + "\n" +
               element.textName.uri + "\n" + std::string(WithoutBlanksAround(text));
    for (const SchemaElement& child : element.children)
        AppendContent(child, content);
    content += ">";
}

// What tells an element from its siblings of one kind: the name, and for options, which producers give one name to
// several of (one of 1 and one of 8 bits), the scored properties. Empty for one that has neither.
std::string IdentityOf(const SchemaElement& element, const ElementRow& row)
{
    std::vector<std::string> parts;
    if (row.naming == Naming::OrDescription)
        for (const SchemaElement* const property : element.Children("ScoredProperty"))
            AppendContent(*property, parts.emplace_back());
    std::ranges::sort(parts);
    std::string identity;
    for (const std::string& part : parts)
        identity += part;
    if (identity.empty() && element.nameAttribute.local.empty())
        return {};
    return element.name.local + "\n" + element.nameAttribute.uri + "\n" + element.nameAttribute.local + identity;
}

class ConstructionChecker
{
public:
    ConstructionChecker(const SchemaElement& root, const ElementRow& rootRow,
                        const std::set<const SchemaElement*>& manyChoice, FaultList& faults)
        : m_isTicket(rootRow.kind == ElementKind::PrintTicket), m_manyChoice(manyChoice), m_faults(faults)
    {
        for (const SchemaElement* const parameter : root.Children(ParameterKind()))
            m_parameters.insert(parameter->nameAttribute);
    }

    void Check(const ElementPath& place, const ElementRow& row)
    {
        CheckName(place, row);
        CheckValueCount(place, row);
        CheckRepetitions(place);
        for (const KindCheck& check : kKindChecks)
            if (check.kind == row.kind)
                (this->*check.check)(place);
        for (const SchemaElement& child : place.element.children)
            if (!IsForeign(child.name))
                CheckChild({child, &place}, row);
    }

private:
    struct KindCheck
    {
        ElementKind kind;
        void (ConstructionChecker::*check)(const ElementPath& place);
    };

    static const KindCheck kKindChecks[6];

    [[nodiscard]] const char* ParameterKind() const
    {
        return m_isTicket ? "ParameterInit" : "ParameterDef";
    }

    void CheckChild(const ElementPath& place, const ElementRow& parent)
    {
        const ElementRow* const row = FindElementRow(place.element.name);
        if (row == nullptr)
            m_faults.Add(rules::kChild, place, "is no element of the Print Schema");
        else if (!parent.Allows(row->kind))
            m_faults.Add(rules::kChild, place, "may not stand in " + std::string(parent.name));
        if (row != nullptr)
            Check(place, *row);
    }

    void CheckName(const ElementPath& place, const ElementRow& row)
    {
        if (row.naming == Naming::None)
            return;
        const SchemaElement& element = place.element;
        const std::string written = element.WrittenNameAttribute();
        if (!element.nameAttribute.local.empty())
        {
            if (const std::string fault = DescribeNameFault(written, element.nameAttribute); !fault.empty())
                m_faults.Add(rules::kNamePrefix, place, "the name \"" + Shortened(written) + "\" " + fault);
        }
        else if (row.naming == Naming::Required)
            m_faults.Add(rules::kNameMissing, place, "has no name");
        else if (element.Child("ScoredProperty") == nullptr)
            m_faults.Add(rules::kOptionUndescribed, place, "has neither a name nor scored properties");
    }

    void CheckValueCount(const ElementPath& place, const ElementRow& row)
    {
        if (!row.Allows(ElementKind::Value))
            return;
        const std::size_t count =
            place.element.Children("Value").size() + place.element.Children("ParameterRef").size();
        if (count > 1)
            m_faults.Add(rules::kValueCount, place, "has " + std::to_string(count) + " values");
        else if (count == 0 && row.needsValue)
            m_faults.Add(rules::kValueCount, place, "has no value");
    }

    void CheckRepetitions(const ElementPath& place)
    {
        std::map<std::string, std::size_t> lines;
        for (const SchemaElement& child : place.element.children)
        {
            const ElementRow* const row = FindElementRow(child.name);
            const std::string identity = row != nullptr ? IdentityOf(child, *row) : std::string();
            if (identity.empty())
                continue;
            const auto [first, isNew] = lines.emplace(identity, child.line);
            if (!isNew)
                m_faults.Add(rules::kNameRepeated, {child, &place},
                             "is there already: line " + std::to_string(first->second));
        }
    }

    void CheckVersion(const ElementPath& place)
    {
        const auto& attributes = place.element.attributes;
        const auto version =
            std::ranges::find(attributes, SchemaName{{}, "version"}, &std::pair<SchemaName, std::string>::first);
        if (version == attributes.end())
            m_faults.Add(rules::kVersion, place, "has no version");
        else if (!DecimalNumber::Parse(version->second))
            m_faults.Add(rules::kVersion, place, "the version \"" + Shortened(version->second) + "\" is no number");
    }

    void CheckFeature(const ElementPath& place)
    {
        const auto options = place.element.Children("Option");
        if (!m_isTicket && options.empty())
            m_faults.Add(rules::kNoOptions, place, "has no options");
        if (m_isTicket && options.size() > 1 && !m_manyChoice.contains(&place.element))
            m_faults.Add(rules::kOneOption, {*options[1], &place},
                         "the feature has " + std::to_string(options.size()) + " options");
    }

    void CheckValue(const ElementPath& place)
    {
        if (std::string fault = DescribeValueFault(place.element); !fault.empty())
            m_faults.Add(rules::kValueType, place, std::move(fault));
    }

    void CheckReference(const ElementPath& place)
    {
        if (!place.element.nameAttribute.local.empty() && !m_parameters.contains(place.element.nameAttribute))
            m_faults.Add(rules::kParameterUndefined, place, std::string("has no ") + ParameterKind());
    }

    void CheckParameterDefinition(const ElementPath& place)
    {
        CheckDefinition(place, m_faults);
    }

    bool m_isTicket;
    std::set<SchemaName> m_parameters;
    const std::set<const SchemaElement*>& m_manyChoice;
    FaultList& m_faults;
};

constexpr ConstructionChecker::KindCheck ConstructionChecker::kKindChecks[6] = {
    {ElementKind::PrintTicket, &ConstructionChecker::CheckVersion},
    {ElementKind::PrintCapabilities, &ConstructionChecker::CheckVersion},
    {ElementKind::Feature, &ConstructionChecker::CheckFeature},
    {ElementKind::Value, &ConstructionChecker::CheckValue},
    {ElementKind::ParameterRef, &ConstructionChecker::CheckReference},
    {ElementKind::ParameterDef, &ConstructionChecker::CheckParameterDefinition},
};

} // namespace

void CheckConstruction(const SchemaElement& root, const std::set<const SchemaElement*>& manyChoice, FaultList& faults)
{
    const ElementRow* const row = FindElementRow(root.name);
    const ElementPath place{root};
    if (row != nullptr && (row->kind == ElementKind::PrintTicket || row->kind == ElementKind::PrintCapabilities))
        ConstructionChecker(root, *row, manyChoice, faults).Check(place, *row);
    else
        faults.Add(rules::kRoot, place, DescribeRootFault(root, "PrintTicket or PrintCapabilities"));
}
