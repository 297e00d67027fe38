// The page-size dictionary and the numbers of named custom sizes.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include <tvcore/pagesizedictionary.h>
#include <tvcore/productstringloader.h>
#include <tvutil/textresourceloader.h>

namespace
{

using Names = std::vector<std::string>;

Names NamesOf(const PageSizeDictionary::EntryRefs& entries)
{
    Names names;
    for (const PageSizeDictionaryEntry& entry : entries)
        names.push_back(entry.GetMsPageMediaSizeOptionName().ToUtf8());
    return names;
}

TEST(PageSizes, AreFoundBySize)
{
    struct Row
    {
        LONG width;
        LONG length;
        Dimension::UnitsEnum unit;
        Names names;
    };
    const Row rows[] = {
        {215'900, 279'400, Dimension::Microns, {"NorthAmericaLetter", "NorthAmericaNote"}},
        {2794, 2159, Dimension::TenthsOfAMillimeter, {"NorthAmericaLetterRotated"}},
        {2104, 2966, Dimension::TenthsOfAMillimeter, {"ISOA4"}},
        {2105, 2970, Dimension::TenthsOfAMillimeter, {}},
        {1842, 2667, Dimension::TenthsOfAMillimeter, {"NorthAmericaExecutive"}},
        {320, 450, Dimension::Millimeters, {"ISOSRA3"}},
        {-210, -297, Dimension::Millimeters, {}},
    };
    const PageSizeDictionary dictionary;
    for (const Row& row : rows)
    {
        SCOPED_TRACE(testing::Message() << row.width << " x " << row.length << " of unit " << row.unit);
        EXPECT_EQ(
            NamesOf(dictionary.GetPageSizeEntryRefs(Dimension(row.width, row.unit), Dimension(row.length, row.unit))),
            row.names);
    }
}

TEST(PageSizes, AreListedByType)
{
    const PageSizeDictionary dictionary;
    const Names standard = NamesOf(dictionary.GetPageSizeEntryRefs(DataModelIds::PageSizeStandard));
    const Names extended = NamesOf(dictionary.GetPageSizeEntryRefs(DataModelIds::PageSizeExtended));
    const auto holds = [](const Names& names, const char* name)
    {
        return std::find(names.begin(), names.end(), name) != names.end();
    };
    EXPECT_TRUE(holds(standard, "ISOA4") && !holds(extended, "ISOA4"));
    EXPECT_TRUE(holds(extended, "ISOSRA3") && !holds(standard, "ISOSRA3"));
    for (const auto type : {DataModelIds::PageSizeDriverCustom, DataModelIds::PageSizeDriverForm,
                            DataModelIds::PageSizeUserForm, DataModelIds::PageSizeUnlisted})
        EXPECT_TRUE(dictionary.GetPageSizeEntryRefs(type).empty()) << type;
}

TEST(PageSizes, ALoaderAddsDisplayNamesOnly)
{
    const auto kept = TextResourceLoader::Share(W("dictionary's printer"), {{6436, CXString(W("DIN A4"))}});
    TextResourceLoader::Initialize(CXString(W("dictionary's printer")), false);
    const PageSizeDictionary dictionary{ProductStringLoader(ProductData::ControllerFamilyColor)};
    const auto entries = dictionary.GetPageSizeEntryRefs(DataModelIds::PageSizeStandard);
    EXPECT_EQ(NamesOf(entries), NamesOf(PageSizeDictionary().GetPageSizeEntryRefs(DataModelIds::PageSizeStandard)));
    for (const PageSizeDictionaryEntry& entry : entries)
        EXPECT_EQ(entry.GetValueId().GetValueName(),
                  entry.GetValueId().GetValueEnum() == DataModelIds::Value::PageSizeA4
                      ? CXString(W("DIN A4"))
                      : entry.GetMsPageMediaSizeOptionName());
}

TEST(CustomSizes, HaveAStableNumberBeyondEveryForm)
{
    // Stored in devmodes: these may never change. The CRC-32 was computed by another program.
    EXPECT_EQ(PageSizeDictionary::GetCustomSizeMsId(W("")), 0xC000);
    EXPECT_EQ(PageSizeDictionary::GetCustomSizeMsId(W("banner")), 0xDB50);
    EXPECT_EQ(PageSizeDictionary::GetCustomSizeMsId(W("BANNER")), 0xDB50);
    EXPECT_EQ(PageSizeDictionary::GetCustomSizeMsId(W("Gro\u00DFes Plakat")), 0xF7A7);
}

} // namespace
