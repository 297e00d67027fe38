// What the wrapper reads from a devmode and writes into it.
#include "complugins/xdevmode.h"

#include <array>
#include <bit>

#include <gtest/gtest.h>

#include <tvutil/bytewriter.h>
#include <tvutil/globalcaches.h>
#include <tvutil/persistentattributes.h>

#include "tests/common/oemdevmodebytes.h"
#include "tests/common/testdevmode.h"

struct XDevmodeTestAccess
{
    static bool Parse(XDevmode& devmode)
    {
        return devmode.ParseIfUnparsed();
    }
};

namespace
{

namespace Format = OemDevmodeFormat;
using namespace OemDevmodeBytes;

constexpr auto kDocument = PersistentAttributes::GetDataModelDocPropNameSpaceId();
constexpr auto kDevice = PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId();

Entries SampleEntries()
{
    return {{1, MakeState(true)}, {2, Text(W("excel.exe"))}, {0xFFFE, Text(W("of somebody else"))}};
}

std::size_t CountOf(XDevmode& devmode, AttributeBytesNameSpacesId id)
{
    return devmode.GetAttributeBytesIndexedList(id)->GetCount();
}

class Devmodes : public testing::Test
{
protected:
    void SetUp() override
    {
        GlobalCaches::Clear();
    }
};

TEST_F(Devmodes, HoldThePartWhereTheCoreDriversSizeLeads)
{
    struct Case
    {
        const char* name = nullptr;
        std::uint16_t postScriptSize = 0;
        std::uint16_t unidrvSize = 0;
        std::size_t areaSize = 0;
        std::ptrdiff_t expected = 0; // -1: none
        std::uint32_t size = Format::kSize;
        std::uint32_t signature = Format::kSignature;
    };
    constexpr std::size_t kFirst = 300; // where one part lies, and where another may
    constexpr std::size_t kSecond = kFirst + Format::kSize;
    constexpr Case kCases[] = {
        {"PostScript", kFirst, 0, kSecond, kFirst},
        {"PostScript before Unidrv", kFirst, kSecond, 2 * kSecond, kFirst},
        {"more behind the part", kFirst, 0, kSecond + 7, kFirst},
        {"one byte short", kFirst, 0, kSecond - 1, -1},
        {"Unidrv", 0, kFirst, kSecond, kFirst},
        {"PostScript's size is garbage", 60000, kFirst, kSecond, kFirst},
        {"PostScript's size leads to something else", 150, kFirst, kSecond, kFirst},
        {"no sizes", 0, 0, kSecond, -1},
        {"no room behind PostScript's size", 0x1234, 16, 116, -1},
        {"size of another part", kFirst, kFirst, kSecond, -1, Format::kSize - 1},
        {"signature of another part", kFirst, kFirst, kSecond, -1, Format::kSize, Format::kSignature + 1},
        {"nothing", 0, 0, 0, -1},
        {"no room for any size", 9, 9, 10, -1},
    };
    for (const Case& test : kCases)
    {
        SCOPED_TRACE(test.name);
        Bytes bytes(sizeof(DEVMODEW) + test.areaSize);
        const auto at = [&](std::size_t offset) // what does not fit there is not written
        {
            return ByteWriter(std::span(bytes).subspan(sizeof(DEVMODEW) + std::min(offset, test.areaSize)));
        };
        at(114).U16(test.postScriptSize);
        at(8).U16(test.unidrvSize);
        for (const std::size_t place : {kFirst, kSecond})
        {
            at(place).U32(test.size);
            at(place + sizeof(test.size)).U32(test.signature);
        }
        const TestDevmode devmode{bytes};
        const OemDevmode* const found = XDevmode::GetOemDevmodeFromDevmode(devmode.Get());
        const auto* const area = reinterpret_cast<const std::byte*>(devmode.Get()) + sizeof(DEVMODEW);
        EXPECT_EQ(found != nullptr ? found->bytes - area : -1, test.expected);
    }
}

TEST_F(Devmodes, KeepTheWrapperAsItWasWhenTheyHaveNoPart)
{
    for (const WORD publicSize : {WORD{220}, WORD{219}})
    {
        const TestDevmode known{Make(CoreDriverLayout::Unidrv, SampleEntries())};
        XDevmode devmode(known.Get());
        Bytes bytes = Make(CoreDriverLayout::Unidrv, {});
        PartOf(bytes)[4] = {};
        const TestDevmode foreign{bytes};
        foreign.Get()->dmSize = publicSize;
        EXPECT_FALSE(devmode.SetDevmode(foreign.Get()));
        EXPECT_NE(devmode.GetPropertyBagEntry(2), nullptr);
        // Only a full public part has its names terminated.
        EXPECT_EQ(foreign.Get()->dmFormName[31], publicSize == 220 ? WCHAR() : W('f'));
        EXPECT_EQ(foreign.Get()->dmDeviceName[31], publicSize == 220 ? WCHAR() : W('n'));
    }
}

TEST_F(Devmodes, CommitEntriesInOrderAndKeepTheRest)
{
    for (const CoreDriverLayout layout : kLayouts)
    {
        const ByteBuffer replacement = Text(W("a.exe")); // shorter: what stood behind it must not stay
        const TestDevmode block{Make(layout, {{0xFFFE, Text(W("of somebody else"))}, {2, Text(W("excel.exe"))}})};
        const TestDevmode expected{Make(layout, {{2, replacement}, {7, {}}, {0xFFFE, Text(W("of somebody else"))}})};
        XDevmode devmode(block.Get());
        CXString application;
        EXPECT_TRUE(devmode.GetPropertyBagString(2, application));
        EXPECT_EQ(application, W("excel.exe"));
        EXPECT_FALSE(devmode.GetPropertyBagString(3, application));
        const auto before = block.Bytes();
        EXPECT_TRUE(devmode.CommitToDevmode()); // nothing to write
        devmode.SetPropertyBagEntry(7, {});
        devmode.SetPropertyBagEntry(2, replacement);
        EXPECT_EQ(block.Bytes(), before);
        EXPECT_TRUE(devmode.CommitToDevmode());
        const XDevmode terminateNames(expected.Get());
        EXPECT_EQ(block.Bytes(), expected.Bytes());
    }
}

TEST_F(Devmodes, RefuseEntriesThatDoNotFitThePart)
{
    constexpr std::size_t kRoom = Format::kSize - Format::kEntriesOffset - Format::kEntryHeaderSize;
    for (const std::size_t size : {kRoom, kRoom + 1, std::size_t{0x10000}, std::size_t{0x10004}})
    {
        const TestDevmode block{Make(CoreDriverLayout::Unidrv, {})};
        XDevmode devmode(block.Get());
        devmode.SetPropertyBagEntry(9, ByteBuffer(size));
        const auto before = block.Bytes();
        EXPECT_EQ(devmode.CommitToDevmode(), size == kRoom) << size;
        EXPECT_EQ(block.Bytes() == before, size != kRoom) << size;
        EXPECT_EQ(devmode.GetOemDevmodeDataSize(), static_cast<int>(66 + size));
    }
    XDevmode nowhere;
    nowhere.SetPropertyBagEntry(9, {});
    EXPECT_FALSE(nowhere.CommitToDevmode());
}

TEST_F(Devmodes, CorruptPartsHoldNoSettings)
{
    constexpr struct
    {
        const char* name;
        std::uint16_t count;
        std::uint16_t lengthOfFirst;
        bool hasRightCrc;
        bool isSound;
        int sizeBefore; // the entries are believed until they are read
    } kCases[] = {
        {"sound", 1, 10, true, true, 76},
        {"wrong CRC", 1, 10, false, false, 76},
        {"up to the end", 1, 5890, true, true, 5956},
        {"past the end by one byte", 1, 5891, true, false, 5956},
        {"past the end by far", 1, 0xFFFF, true, false, 5956},
        {"no room for another header", 2, 5888, true, false, 5956},
        {"no room for another key", 2, 5889, true, false, 5955},
        {"another header ends the part", 2, 5886, true, true, 5956},
        {"more than a part can hold", 0xFFFF, 10, true, false, 5956},
        {"none", 0, 10, true, true, 62},
        {"none, wrong CRC", 0, 10, false, false, 62},
    };
    for (const auto& test : kCases)
    {
        SCOPED_TRACE(test.name);
        Bytes bytes = Make(CoreDriverLayout::PostScript, {{0, {}}});
        ByteWriter content(PartOf(bytes).subspan(Format::kCountOffset));
        content.U16(test.count);
        content.U16(5);
        content.U16(test.lengthOfFirst);
        StampCrc(PartOf(bytes));
        if (!test.hasRightCrc)
            PartOf(bytes)[Format::kCrcOffset] ^= std::byte{1};
        const TestDevmode block{bytes};
        XDevmode devmode;
        EXPECT_TRUE(devmode.SetDevmode(block.Get()));
        EXPECT_EQ(devmode.GetOemDevmodeDataSize(), test.sizeBefore);
        EXPECT_EQ(XDevmodeTestAccess::Parse(devmode), test.isSound);
        EXPECT_EQ(devmode.GetOemDevmodeDataSize(), test.isSound ? test.sizeBefore : 62);
        EXPECT_EQ(devmode.GetPropertyBagEntry(5) != nullptr, test.isSound && test.count != 0);
        auto now = block.Bytes();
        EXPECT_EQ(ByteBuffer(PartOf(now)), ByteBuffer(PartOf(bytes))) << "nothing is repaired";
    }
}

TEST_F(Devmodes, AttachedAnewAreReadAnew)
{
    const TestDevmode first{Make(CoreDriverLayout::Unidrv, SampleEntries())};
    const TestDevmode second{Make(CoreDriverLayout::PostScript, {{1, MakeState(true)}, {2, Text(W("winword.exe"))}})};
    const TestDevmode empty{Make(CoreDriverLayout::PostScript, {})};
    XDevmode devmode(first.Get());
    EXPECT_EQ(CountOf(devmode, kDocument), 1U);
    devmode.SetPropertyBagEntry(9, ByteBuffer(Format::kSize));
    EXPECT_FALSE(devmode.CommitToDevmode());
    EXPECT_FALSE(devmode.CommitToDevmode()) << "what could not be written stays to be written";
    EXPECT_EQ(CountOf(devmode, kDocument), 0U);

    EXPECT_TRUE(devmode.SetDevmode(second.Get()));
    EXPECT_TRUE(devmode.CommitToDevmode()) << "nothing to write";
    EXPECT_EQ(CountOf(devmode, kDocument), 1U);
    ASSERT_NE(devmode.GetPropertyBagEntry(2), nullptr);
    EXPECT_EQ(*devmode.GetPropertyBagEntry(2), Text(W("winword.exe")));
    EXPECT_EQ(devmode.GetPropertyBagEntry(9), nullptr);
    EXPECT_FALSE(devmode.SetDevmode(empty.Get()));
    EXPECT_EQ(devmode.GetPropertyBagEntry(2), nullptr);
    EXPECT_EQ(devmode.GetOemDevmodeDataSize(), 62);
}

// Modules built apart derive from the reader. A pointer to a virtual function is its place in the table here, plus
// one; a destructor takes two places.
TEST_F(Devmodes, HaveTheReadersSlotsInOrder)
{
    const auto slotOf = [](auto function)
    {
        return std::bit_cast<std::array<std::uintptr_t, 2>>(function)[0] / sizeof(void*);
    };
    EXPECT_EQ(slotOf(&AttributeBytesReader::GetDefaultAttributeBytesIndexedList), 2U);
    EXPECT_EQ(slotOf(&AttributeBytesReader::GetDataModelDocPropAttributeBytesIndexedList), 3U);
    EXPECT_EQ(slotOf(&AttributeBytesReader::OnAttributeBytesStored), 4U);
    EXPECT_EQ(slotOf(&AttributeBytesReader::GetAttributeBytesIndexedListOf), 5U);
    EXPECT_EQ(slotOf(&AttributeBytesReader::GetAttributeBytesIndexedList), 6U);
}

TEST_F(Devmodes, GiveTheirSettingsByNamespaceButNoneWhileTheyAreBeingChanged)
{
    const TestDevmode block{Make(CoreDriverLayout::Unidrv, SampleEntries())};
    XDevmode devmode(block.Get());
    EXPECT_EQ(CountOf(devmode, AttributeBytesNameSpacesId(77)), 0U);
    EXPECT_EQ(CountOf(devmode, kDocument), 1U);
    EXPECT_EQ(devmode.GetDefaultAttributeBytesIndexedList(), devmode.GetAttributeBytesIndexedListOf(kDocument));
    devmode.SetPropertyBagEntry(1, MakeState(false));
    EXPECT_EQ(CountOf(devmode, kDocument), 0U);
    EXPECT_TRUE(devmode.CommitToDevmode());
    EXPECT_EQ(CountOf(devmode, kDocument), 0U) << "the empty list survives the commit";
    EXPECT_EQ(CountOf(devmode, kDevice), 1U);
    EXPECT_EQ(devmode.GetBooleanValueFromAttributeBytes(kFlagFeature), false) << "asked for anew";
}

TEST_F(Devmodes, OfTheSameBytesAreReadOnce)
{
    const Bytes bytes = Make(CoreDriverLayout::PostScript, SampleEntries());
    for (int time = 0; time < 2; ++time)
    {
        const TestDevmode block{bytes};
        XDevmode devmode(block.Get());
        EXPECT_EQ(CountOf(devmode, kDocument), 1U);
        EXPECT_EQ(CountOf(devmode, kDevice), 1U);
        EXPECT_NE(devmode.GetPropertyBagEntry(2), nullptr);
    }
    EXPECT_EQ(GlobalCaches::GetPropertyBagCounters().misses, 1U);
    EXPECT_EQ(GlobalCaches::GetPropertyBagCounters().hits, 1U);
    EXPECT_EQ(GlobalCaches::GetListCounters().misses, 2U);
    EXPECT_EQ(GlobalCaches::GetListCounters().hits, 2U);
}

// Read through one wrapper, committed through another: the first one's settings are not those of the new CRC.
TEST_F(Devmodes, ShareOnlyListsOfWhatTheirCrcStandsFor)
{
    const TestDevmode block{Make(CoreDriverLayout::Unidrv, SampleEntries())};
    XDevmode reader(block.Get());
    EXPECT_NE(reader.GetPropertyBagEntry(1), nullptr);
    XDevmode writer(block.Get());
    writer.SetPropertyBagEntry(1, MakeState(false));
    EXPECT_TRUE(writer.CommitToDevmode());
    EXPECT_EQ(reader.GetBooleanValueFromAttributeBytes(kFlagFeature), true) << "its own bag";
    EXPECT_EQ(writer.GetBooleanValueFromAttributeBytes(kFlagFeature), false);
    EXPECT_EQ(XDevmode(block.Get()).GetBooleanValueFromAttributeBytes(kFlagFeature), false);
    EXPECT_EQ(GlobalCaches::GetListCounters().hits, 1U) << "the writer's list";

    // Zero CRC and count: no entries, whoever else has a CRC of 0.
    GlobalCaches::AddXDevmodePropertyBagCacheEntry(
        0, {{std::uint16_t{2}, GlobalCaches::MakeBuffer(Text(W("excel.exe")).bytes())}});
    AttributeBytesIndexedList list;
    list.SetAttributeBytes(kFlagFeature, MakeBooleanAttributeBytes(true));
    GlobalCaches::AddXDevmodeAttributeBytesIndexedListCacheEntry(GlobalCaches::kDocPropListCacheName, kDocument, 0,
                                                                 list);
    Bytes bytes = Make(CoreDriverLayout::Unidrv, {});
    PartOf(bytes)[Format::kEntriesOffset] = std::byte{2};
    const TestDevmode unchecked{bytes};
    XDevmode devmode;
    EXPECT_TRUE(devmode.SetDevmode(unchecked.Get())) << "the first key says that it holds data";
    EXPECT_EQ(CountOf(devmode, kDocument), 0U);
    EXPECT_EQ(devmode.GetPropertyBagEntry(2), nullptr);
}

} // namespace
