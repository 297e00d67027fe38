// The page-size dictionary and the numbers of named custom sizes.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <tvcore/pagesizedictionary.h>

namespace
{

using Names = std::vector<std::string>;

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
        Names names;
        for (const PageSizeDictionaryEntry& entry :
             dictionary.GetPageSizeEntryRefs(Dimension(row.width, row.unit), Dimension(row.length, row.unit)))
            names.push_back(entry.GetMsPageMediaSizeOptionName().ToUtf8());
        EXPECT_EQ(names, row.names);
    }
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
