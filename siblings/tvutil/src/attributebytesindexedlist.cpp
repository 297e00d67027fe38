#include <tvutil/attributebytesindexedlist.h>

#include <algorithm>
#include <atomic>
#include <numeric>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include <tvutil/attributebytesrawlist.h>
#include <tvutil/bytereader.h>

#include "attributebytesformat.h"

// Content that has once been shared is never edited again, even when its last other user is gone: a count of users
// could not tell whether another thread has finished reading.
struct AttributeBytesIndexedList::Content
{
    struct Entry
    {
        AttributeBytesFeatureId feature;
        AttributeBytesValue value;
    };

    Content() = default;
    Content(const Content& other) : entries(other.entries), index(other.index), hasIndex(other.hasIndex)
    {
    }
    Content& operator=(const Content&) = delete;
    ~Content() = default;

    [[nodiscard]] const Entry* Find(AttributeBytesFeatureId feature, bool byIndex) const noexcept
    {
        if (!byIndex || !hasIndex)
        {
            const auto found = std::find_if(entries.begin(), entries.end(),
                                            [feature](const Entry& entry) { return entry.feature == feature; });
            return found != entries.end() ? &*found : nullptr;
        }
        const auto found = std::lower_bound(index.begin(), index.end(), feature,
                                            [this](std::size_t position, AttributeBytesFeatureId sought)
                                            { return entries[position].feature < sought; });
        return found != index.end() && entries[*found].feature == feature ? &entries[*found] : nullptr;
    }

    void Append(Entry entry)
    {
        const AttributeBytesFeatureId feature = entry.feature;
        entries.push_back(std::move(entry));
        if (!hasIndex)
            return;
        try
        {
            const auto place = std::upper_bound(index.begin(), index.end(), feature,
                                                [this](AttributeBytesFeatureId sought, std::size_t position)
                                                { return sought < entries[position].feature; });
            index.insert(place, entries.size() - 1);
        }
        catch (...)
        {
            entries.pop_back();
            throw;
        }
    }

    bool Remove(AttributeBytesFeatureId feature)
    {
        const auto removed = std::erase_if(entries, [feature](const Entry& entry) { return entry.feature == feature; });
        if (removed != 0 && hasIndex)
            BuildIndex(); // shorter than before: allocates nothing
        return removed != 0;
    }

    // The first of a feature stands before its duplicates.
    void BuildIndex()
    {
        index.resize(entries.size());
        std::iota(index.begin(), index.end(), std::size_t{0});
        std::sort(index.begin(), index.end(),
                  [this](std::size_t left, std::size_t right)
                  {
                      return entries[left].feature != entries[right].feature
                                 ? entries[left].feature < entries[right].feature
                                 : left < right;
                  });
        hasIndex = true;
    }

    std::vector<Entry> entries;
    std::vector<std::size_t> index; // positions by feature
    bool hasIndex = false;
    std::atomic<bool> isShared = false; // set by whoever copies, on several threads at once
};

AttributeBytesIndexedList::AttributeBytesIndexedList() = default;

AttributeBytesIndexedList::AttributeBytesIndexedList(const AttributeBytesIndexedList& other)
    : m_content(other.m_content), m_isIndexed(other.m_isIndexed)
{
    if (m_content)
        m_content->isShared.store(true, std::memory_order_relaxed);
}

AttributeBytesIndexedList& AttributeBytesIndexedList::operator=(const AttributeBytesIndexedList& other)
{
    if (this != &other)
    {
        if (other.m_content)
            other.m_content->isShared.store(true, std::memory_order_relaxed);
        m_content = other.m_content;
        m_isIndexed = other.m_isIndexed;
    }
    return *this;
}

AttributeBytesIndexedList::~AttributeBytesIndexedList() = default;

void AttributeBytesIndexedList::SetIndexed(bool isIndexed)
{
    // The index is made here and not by the first lookup: content that is shared must not change under its readers.
    if (isIndexed && !(m_content && m_content->hasIndex))
        Edit().BuildIndex();
    m_isIndexed = isIndexed;
}

bool AttributeBytesIndexedList::ImportFromRawList(const AttributeBytesRawList& list)
{
    auto content = std::make_shared<Content>();
    ByteReader reader(list.GetBytes());
    while (reader.Remaining() != 0)
    {
        const auto feature = reader.I32();
        const auto kind = reader.U8();
        const auto flags = reader.U8();
        const auto length = reader.U16();
        const auto data = reader.Bytes(length);
        if (reader.Ok())
            content->entries.push_back({feature, {static_cast<AttributeBytesKind>(kind), flags, ByteBuffer(data)}});
    }
    if (!reader.Ok())
        content->entries.clear();
    if (m_isIndexed)
        content->BuildIndex();
    m_content = std::move(content);
    return reader.Ok();
}

std::size_t AttributeBytesIndexedList::GetCount() const noexcept
{
    return m_content ? m_content->entries.size() : 0;
}

AttributeBytesFeatureId AttributeBytesIndexedList::GetFeature(std::size_t position) const
{
    if (position >= GetCount())
        throw std::out_of_range("an attribute list has no such position");
    return m_content->entries[position].feature;
}

const AttributeBytesValue& AttributeBytesIndexedList::GetValue(std::size_t position) const
{
    if (position >= GetCount())
        throw std::out_of_range("an attribute list has no such position");
    return m_content->entries[position].value;
}

const AttributeBytesValue* AttributeBytesIndexedList::GetAttributeBytes(AttributeBytesFeatureId feature) const noexcept
{
    const Content::Entry* const entry = m_content ? m_content->Find(feature, m_isIndexed) : nullptr;
    return entry != nullptr ? &entry->value : nullptr;
}

std::unique_ptr<AttributeBytesIndexedList>
AttributeBytesIndexedList::GetCollection(AttributeBytesFeatureId feature) const
{
    const AttributeBytesValue* const value = GetAttributeBytes(feature);
    if (value == nullptr)
        return nullptr;
    const std::optional<AttributeBytesListValue> list = AttributeBytesListValue::FromAttributeBytes(*value);
    auto collection = std::make_unique<AttributeBytesIndexedList>();
    if (!list || list->GetLevelCount() == 0 || !collection->ImportFromRawList(list->GetLevel(0)))
        return nullptr;
    return collection;
}

void AttributeBytesIndexedList::SetAttributeBytes(AttributeBytesFeatureId feature, AttributeBytesValue value)
{
    if (value.data.size() > attributebytesformat::kLongestValue)
        throw std::length_error("the value of an attribute is longer than 65535 bytes");
    Content& content = Edit();
    if (const Content::Entry* const found = content.Find(feature, m_isIndexed))
        content.entries[static_cast<std::size_t>(found - content.entries.data())].value = std::move(value);
    else
        content.Append({feature, std::move(value)});
}

void AttributeBytesIndexedList::SetAttributeBytes(AttributeBytesFeatureId feature,
                                                  const AttributeBytesOptionValue& value)
{
    SetAttributeBytes(feature, value.ToAttributeBytes());
}

void AttributeBytesIndexedList::SetAttributeBytes(AttributeBytesFeatureId feature, const AttributeBytesListValue& value)
{
    SetAttributeBytes(feature, value.ToAttributeBytes());
}

void AttributeBytesIndexedList::SetCollection(AttributeBytesFeatureId feature, const AttributeBytesIndexedList& inside)
{
    AttributeBytesListValue after{AttributeBytesRawList(inside)};
    const AttributeBytesValue* const stored = GetAttributeBytes(feature);
    const auto before = stored != nullptr ? AttributeBytesListValue::FromAttributeBytes(*stored) : std::nullopt;
    for (std::size_t level = 1; before && level < before->GetLevelCount(); ++level)
        after.AddLevel(before->GetLevel(level));
    AttributeBytesValue value = after.ToAttributeBytes();
    value.flags = before ? stored->flags : value.flags;
    SetAttributeBytes(feature, std::move(value));
}

bool AttributeBytesIndexedList::RemoveAttributeBytes(AttributeBytesFeatureId feature)
{
    return GetAttributeBytes(feature) != nullptr && Edit().Remove(feature);
}

AttributeBytesIndexedList::Content& AttributeBytesIndexedList::Edit()
{
    if (!m_content)
        m_content = std::make_shared<Content>();
    else if (m_content->isShared.load(std::memory_order_relaxed))
        m_content = std::make_shared<Content>(*m_content);
    return *m_content;
}
