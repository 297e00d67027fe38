#include <tvcore/pagesizedictionary.h>

#include <cstddef>
#include <iterator>

#include <tvcore/pagesizetable.h>
#include <tvcore/productstringloader.h>

namespace
{

using PageSizeTable::kRows;

constexpr bool EveryValueAndNameOnce()
{
    for (std::size_t i = 0; i < std::size(kRows); ++i)
        for (std::size_t j = i + 1; j < std::size(kRows); ++j)
            if (kRows[i].valueId == kRows[j].valueId || kRows[i].optionName == kRows[j].optionName)
                return false;
    return true;
}

// Value ids lie in their range, which other values do not enter; sizes fit a form's 16-bit tenths of a millimetre and
// are no smaller than a stamp; every row has a name, which begins with a capital letter where it is a keyword of the
// Print Schema; the standard sizes stand first.
constexpr bool EveryRowIsSane()
{
    constexpr std::int32_t kMinimum = 20'000;
    constexpr std::int32_t kMaximum = 3'276'700;
    bool isExtended = false;
    for (const PageSizeRow& row : kRows)
    {
        if (row.valueId < DataModelIds::Value::PageSizeFirst || row.valueId > DataModelIds::Value::PageSizeLast)
            return false;
        if (row.width < kMinimum || row.width > kMaximum || row.length < kMinimum || row.length > kMaximum)
            return false;
        if (row.optionName.empty() || (isExtended && row.type == PageSizeTable::kStandard))
            return false;
        if (row.isKeyword != (row.optionName.front() >= W('A') && row.optionName.front() <= W('Z')))
            return false;
        isExtended = row.type == PageSizeTable::kExtended;
    }
    return true;
}

// "ISOA4Rotated" is "ISOA4" turned.
constexpr bool EveryRotatedSheetIsItsOriginalTurned()
{
    constexpr WStringView kSuffix = W("Rotated");
    for (const PageSizeRow& row : kRows)
    {
        if (!row.optionName.ends_with(kSuffix))
            continue;
        const WStringView name = row.optionName.substr(0, row.optionName.size() - kSuffix.size());
        bool isTurned = false;
        for (const PageSizeRow& original : kRows)
            isTurned |= original.optionName == name && original.width == row.length && original.length == row.width;
        if (!isTurned)
            return false;
    }
    return true;
}

constexpr bool IsCalled(DataModelIds::tagValueEnum value, WStringView optionName)
{
    const PageSizeRow* const row = PageSizeTable::FindRow(value);
    return row != nullptr && row->optionName == optionName;
}

static_assert(EveryValueAndNameOnce());
static_assert(EveryRowIsSane());
static_assert(EveryRotatedSheetIsItsOriginalTurned());
static_assert(IsCalled(DataModelIds::Value::PageSizeLetter, W("NorthAmericaLetter")));
static_assert(IsCalled(DataModelIds::Value::PageSizeA4, W("ISOA4")));

bool IsSame(const Dimension& left, const Dimension& right)
{
    return Dimension::IsEquivalent(left, right, Dimension::Millimeters, 0, Number::RoundingConstant());
}

template <class Text>
std::vector<PageSizeDictionaryEntry> MakeEntries(Text displayName)
{
    std::vector<PageSizeDictionaryEntry> entries;
    entries.reserve(std::size(kRows));
    for (const PageSizeRow& row : kRows)
        entries.emplace_back(row, displayName(row.valueId));
    return entries;
}

template <class Condition>
PageSizeDictionary::EntryRefs Select(const std::vector<PageSizeDictionaryEntry>& entries, Condition condition)
{
    PageSizeDictionary::EntryRefs refs;
    for (const PageSizeDictionaryEntry& entry : entries)
        if (condition(entry))
            refs.emplace_back(entry);
    return refs;
}

} // namespace

PageSizeDictionary::PageSizeDictionary() : m_entries(MakeEntries([](std::int32_t) { return CXString(); }))
{
}

PageSizeDictionary::PageSizeDictionary(const ProductStringLoader& loader)
    : m_entries(MakeEntries([&loader](std::int32_t valueId) { return loader.LoadStringW(valueId); }))
{
}

PageSizeDictionary::~PageSizeDictionary() = default;

PageSizeDictionary::EntryRefs PageSizeDictionary::GetPageSizeEntryRefs(const Dimension& width,
                                                                       const Dimension& length) const
{
    return Select(m_entries, [&](const PageSizeDictionaryEntry& entry)
                  { return IsSame(entry.GetWidth(), width) && IsSame(entry.GetLength(), length); });
}

PageSizeDictionary::EntryRefs PageSizeDictionary::GetPageSizeEntryRefs(DataModelIds::PageSizeTypeEnum type) const
{
    return Select(m_entries, [type](const PageSizeDictionaryEntry& entry) { return entry.GetPageSizeType() == type; });
}
