#include <tvcore/attributebyteslisttranslator.h>

#include <cstdint>
#include <optional>
#include <utility>
#include <variant>

#include <tvcore/featurevalues.h>
#include <tvutil/attributebyteslistvalue.h>
#include <tvutil/attributebytesoptionvalue.h>
#include <tvutil/attributebytesreader.h>

namespace
{

using FeatureCatalogue::Kind;
using FeatureCatalogue::Row;
using FeatureCatalogue::Scope;

// Whose settings a list holds. An item of a list feature holds features of a document, but no lists of its own: bytes
// from outside could nest them as deep as they like.
struct Place
{
    Scope scope = Scope::Document;
    bool isItem = false;

    [[nodiscard]] bool Has(const Row& row) const
    {
        return row.scope == scope && !(isItem && row.kind == Kind::List);
    }
};

std::size_t Import(const AttributeBytesIndexedList& list, const Place& place, std::int32_t parent,
                   FeatureSettings& settings);
bool Export(AttributeBytesIndexedList& list, const Place& place, const FeatureSettings& settings,
            const FeatureSettings& defaults);

FeatureIdWithContext IdOf(const Row& row)
{
    return FeatureIdWithContext::FromNumber(row.feature);
}

// ---- Bytes to values -----------------------------------------------------------------------------

template <class Value>
std::optional<FeatureValue> ToFeatureValue(std::optional<Value> value)
{
    return value ? std::optional<FeatureValue>(std::move(*value)) : std::nullopt;
}

std::optional<ValueId> ReadOption(const AttributeBytesIndexedList& list, std::int32_t feature)
{
    const auto option = AttributeBytesReader::GetOptionValueFromAttributeBytes(list, feature);
    if (!option)
        return std::nullopt;
    return ValueId(static_cast<DataModelIds::tagValueEnum>(option->GetValueId()), option->GetValueName());
}

std::optional<AttributeBytesListValue> ReadLevels(const AttributeBytesIndexedList& list, std::int32_t feature)
{
    const AttributeBytesValue* const value = list.GetAttributeBytes(feature);
    return value != nullptr ? AttributeBytesListValue::FromAttributeBytes(*value) : std::nullopt;
}

std::optional<FeatureList> ReadItems(const AttributeBytesIndexedList& list, const Row& row)
{
    const auto levels = ReadLevels(list, row.feature);
    if (!levels)
        return std::nullopt;
    FeatureList items(levels->GetLevelCount());
    for (std::size_t level = 0; level < items.size(); ++level)
    {
        AttributeBytesIndexedList inside;
        if (!inside.ImportFromRawList(levels->GetLevel(level)))
            return std::nullopt;
        Import(inside, {row.scope, true}, 0, items[level]);
    }
    return items;
}

std::optional<FeatureValue> Read(const AttributeBytesIndexedList& list, const Row& row)
{
    switch (row.kind)
    {
    case Kind::Boolean:
        return ToFeatureValue(AttributeBytesReader::GetBooleanValueFromAttributeBytes(list, row.feature));
    case Kind::Integer:
        return ToFeatureValue(AttributeBytesReader::GetIntegerValueFromAttributeBytes(list, row.feature));
    case Kind::String:
        return ToFeatureValue(AttributeBytesReader::GetStringValueFromAttributeBytes(list, row.feature));
    case Kind::Option:
        return ToFeatureValue(ReadOption(list, row.feature));
    case Kind::Dimension:
        return ToFeatureValue(AttributeBytesReader::GetDimensionValueFromAttributeBytes(list, row.feature));
    case Kind::List:
        return ToFeatureValue(ReadItems(list, row));
    case Kind::Collection:
    case Kind::Binary:
        break;
    }
    return std::nullopt;
}

// The features whose collection is the parent; 0: those that stand by themselves.
std::size_t Import(const AttributeBytesIndexedList& list, const Place& place, std::int32_t parent,
                   FeatureSettings& settings)
{
    std::size_t count = 0;
    for (const Row& row : FeatureCatalogue::kRows)
    {
        if (row.parent != parent || !place.Has(row))
            continue;
        if (row.kind == Kind::Collection)
        {
            if (const auto inside = list.GetCollection(row.feature))
                count += Import(*inside, place, row.feature, settings);
            continue;
        }
        std::optional<FeatureValue> value = Read(list, row);
        if (!value || !FeatureSettings::TakesValue(IdOf(row), *value))
            continue;
        settings.SetValue(IdOf(row), std::move(*value));
        ++count;
    }
    return count;
}

// ---- Values to bytes -----------------------------------------------------------------------------

// Makes the value that is stored for a row. A list keeps its flags, and its items what else is stored at their place.
struct Write
{
    const AttributeBytesIndexedList& list;
    const Row& row;

    AttributeBytesValue operator()(bool value) const
    {
        return MakeBooleanAttributeBytes(value);
    }
    AttributeBytesValue operator()(std::int32_t value) const
    {
        return MakeIntegerAttributeBytes(value);
    }
    AttributeBytesValue operator()(const CXString& value) const
    {
        return MakeStringAttributeBytes(value.View());
    }
    AttributeBytesValue operator()(const ValueId& value) const
    {
        const AttributeBytesNewValueId id(value.GetValueEnum(), value.GetValueName());
        return AttributeBytesOptionValue(id, id.GetId() != DataModelIds::Value::Automatic).ToAttributeBytes();
    }
    AttributeBytesValue operator()(const Dimension& value) const
    {
        return MakeDimensionAttributeBytes(value);
    }
    AttributeBytesValue operator()(const FeatureList& items) const
    {
        const AttributeBytesListValue before = ReadLevels(list, row.feature).value_or(AttributeBytesListValue());
        AttributeBytesListValue after;
        for (std::size_t level = 0; level < items.size(); ++level)
        {
            AttributeBytesIndexedList inside;
            if (level < before.GetLevelCount())
                inside.ImportFromRawList(before.GetLevel(level));
            Export(inside, {row.scope, true}, items[level], FeatureSettings());
            after.AddLevel(AttributeBytesRawList(inside));
        }
        AttributeBytesValue written = after.ToAttributeBytes();
        const AttributeBytesValue* const stored = list.GetAttributeBytes(row.feature);
        if (stored != nullptr && stored->kind == AttributeBytesKind::List)
            written.flags = stored->flags;
        return written;
    }
};

bool Export(AttributeBytesIndexedList& list, const Place& place, const FeatureSettings& settings,
            const FeatureSettings& defaults)
{
    FeatureSettings before = defaults;
    Import(list, place, 0, before);
    bool isChanged = false;
    for (const Row& row : FeatureCatalogue::kRows)
    {
        if (!place.Has(row))
            continue;
        const FeatureValue* const was = before.FindValue(IdOf(row));
        const FeatureValue* const is = settings.FindValue(IdOf(row));
        if (is != nullptr && (was == nullptr || !(*was == *is)))
        {
            FeatureCatalogue::StoreValue(list, row, std::visit(Write{list, row}, *is));
            isChanged = true;
        }
        else if (is == nullptr && was != nullptr)
            isChanged |= FeatureCatalogue::RemoveValue(list, row);
    }
    return isChanged;
}

} // namespace

AttributeBytesListTranslator::AttributeBytesListTranslator(Scope scope, FeatureSettings& settings,
                                                           const FeatureSettings& defaults)
    : m_scope(scope), m_settings(settings), m_defaults(defaults)
{
}

std::size_t AttributeBytesListTranslator::ImportSettings(const AttributeBytesIndexedList& list)
{
    return Import(list, {m_scope}, 0, m_settings);
}

bool AttributeBytesListTranslator::ExportSettings(AttributeBytesIndexedList& list) const
{
    AttributeBytesIndexedList exported = list;
    if (!Export(exported, {m_scope}, m_settings, m_defaults))
        return false;
    list = exported;
    return true;
}
