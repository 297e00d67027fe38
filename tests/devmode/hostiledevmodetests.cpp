// Devmodes that somebody cut, changed or hands in by the thousand.
#include <atomic>
#include <cstring>
#include <thread>

#include <gtest/gtest.h>

#include <tvutil/bytewriter.h>
#include <tvutil/devmodebounds.h>
#include <tvutil/globalcaches.h>
#include <tvutil/persistentattributes.h>

#include "complugins/msdevicecapabilities.h"
#include "complugins/xdevmode.h"
#include "tests/common/oemdevmodebytes.h"
#include "tests/common/testdevmode.h"

namespace
{

namespace Format = OemDevmodeFormat;
using namespace OemDevmodeBytes;

constexpr CoreDriverLayout kLayouts[] = {CoreDriverLayout::PostScript, CoreDriverLayout::Unidrv};

// A namespace and an attribute kind that nobody here knows stand among the known ones.
ByteBuffer StateOfALaterVersion()
{
    const std::byte unknownAttribute[] = {std::byte{1},    {},           {}, {},           std::byte{99},
                                          std::byte{0x80}, std::byte{2}, {}, std::byte{7}, std::byte{8}};
    PersistentAttributes state(MakeState(true));
    AttributeBytesNameSpaces more;
    for (const int id : {1, 77})
    {
        const auto known = state.GetAttributeBytesListForNameSpace(AttributeBytesNameSpacesId(id));
        ByteBuffer raw{known.GetBytes()};
        raw.append(unknownAttribute);
        more.SetAttributeBytesList(AttributeBytesNameSpacesId(id), AttributeBytesRawList(raw.bytes()));
    }
    state.SetAttributeBytesNameSpaces(more);
    return state.GetPersistentAttributesState();
}

Entries SampleEntries()
{
    const FormsInfoRecord form = MakeForm(9, W("A4"), 2100, 2970, 25001);
    return {{1, MakeState(true, {&form, 1})}, {2, ByteBuffer("e\0x\0e\0", 6)}, {300, ByteBuffer(40)}};
}

// Everything that a conversion does with a devmode.
void Use(DEVMODEW* fields)
{
    XDevmode devmode(fields);
    devmode.GetDefaultAttributeBytesIndexedList();
    MSDeviceCapabilities capabilities;
    capabilities.Initialize(reinterpret_cast<HANDLE>(1), MSDeviceCapabilities::Context::Spooler);
    std::vector<FormsInfoRecord> forms;
    static_cast<void>(capabilities.GetPaperDatabaseCachedDeviceCapabilitiesVector(nullptr, fields, forms));
    const int sizeBefore = devmode.GetOemDevmodeDataSize();
    EXPECT_LE(sizeBefore, static_cast<int>(Format::kSize));
    CXString application;
    devmode.GetPropertyBagString(2, application);
    const int size = devmode.GetOemDevmodeDataSize();
    devmode.SetPropertyBagEntry(0x1234, ByteBuffer(3));
    const bool fits = size + 7 <= static_cast<int>(Format::kSize);
    EXPECT_EQ(devmode.CommitToDevmode(), devmode.HasOemDevmode() && fits);
}

TEST(HostileDevmodes, CutAtAnyByteStayInTheirBlock)
{
    for (const CoreDriverLayout layout : kLayouts)
    {
        const Bytes whole = Make(layout, SampleEntries());
        for (std::size_t size = 0; size <= whole.size(); ++size)
        {
            const TestDevmode block{std::span(whole).first(size)};
            EXPECT_EQ(DevmodeFitsIn(block.Get(), size), size >= kSmallestPublicDevmode);
            // The gate lets no shorter one through, but the wrapper needs no more than the two sizes.
            if (size < offsetof(DEVMODEW, dmFields))
                continue;
            EXPECT_EQ(XDevmode(block.Get()).HasOemDevmode(), size == whole.size());
            Use(block.Get());
        }
    }
}

// With the CRC as it was a change of the content is seen, whether the process knows the part as it was or not; with the
// CRC made right again it must still do no harm.
TEST(HostileDevmodes, ChangedAtAnyByteReadTheSameOrAsNone)
{
    for (const CoreDriverLayout layout : kLayouts)
    {
        const Bytes whole = Make(layout, SampleEntries());
        for (std::size_t at = sizeof(DEVMODEW); at < whole.size(); ++at)
        {
            Bytes changed = whole;
            changed[at] ^= std::byte{1} << (at % 8);
            const TestDevmode block{changed};
            GlobalCaches::Clear();
            if (at % 2 == 0)
                static_cast<void>(XDevmode(TestDevmode{whole}.Get()).GetPropertyBagEntry(1));
            XDevmode devmode(block.Get());
            const ByteBuffer* const entry = devmode.GetPropertyBagEntry(1);
            if (entry != nullptr)
            {
                EXPECT_EQ(*entry, SampleEntries()[0].second) << at;
                EXPECT_LT(at, kPartOffset + Format::kCrcOffset);
            }
            else
                EXPECT_EQ(devmode.GetDefaultAttributeBytesIndexedList()->GetCount(), 0U) << at;
            StampCrc(PartOf(changed));
            Use(TestDevmode{changed}.Get());
        }
    }
}

TEST(HostileDevmodes, KeepWhatNobodyHereKnows)
{
    const ByteBuffer foreign("\1\2\3", 3);
    const TestDevmode block{Make(CoreDriverLayout::Unidrv, {{0xFFFF, foreign}, {1, StateOfALaterVersion()}, {9, {}}})};
    const PersistentAttributes before(StateOfALaterVersion());
    {
        XDevmode devmode(block.Get());
        AttributeBytesIndexedList list = *devmode.GetDefaultAttributeBytesIndexedList();
        list.SetAttributeBytes(AttributeBytesFeatureId(63), MakeIntegerAttributeBytes(5));
        AttributeBytesNameSpaces nameSpaces;
        nameSpaces.SetAttributeBytesList(PersistentAttributes::GetDataModelDocPropNameSpaceId(),
                                         AttributeBytesRawList(list));
        PersistentAttributes state(*devmode.GetPropertyBagEntry(1));
        EXPECT_TRUE(state.SetAttributeBytesNameSpaces(nameSpaces));
        devmode.SetPropertyBagEntry(1, state.GetPersistentAttributesState());
        EXPECT_TRUE(devmode.CommitToDevmode());
    }
    XDevmode devmode(block.Get());
    EXPECT_EQ(*devmode.GetPropertyBagEntry(0xFFFF), foreign);
    EXPECT_EQ(*devmode.GetPropertyBagEntry(9), ByteBuffer());
    const PersistentAttributes after(*devmode.GetPropertyBagEntry(1));
    for (const int id : {1, 2, 77})
    {
        const AttributeBytesRawList was = before.GetAttributeBytesListForNameSpace(AttributeBytesNameSpacesId(id));
        const AttributeBytesRawList is = after.GetAttributeBytesListForNameSpace(AttributeBytesNameSpacesId(id));
        ASSERT_GE(is.GetBytes().size(), was.GetBytes().size());
        EXPECT_EQ(ByteBuffer(is.GetBytes().first(was.GetBytes().size())), ByteBuffer(was.GetBytes())) << id;
        EXPECT_EQ(is.GetBytes().size() > was.GetBytes().size(), id == 1);
    }
}

TEST(HostileDevmodes, ByTheThousandOnEightThreadsGiveEachItsOwn)
{
    constexpr int kCount = 1000;
    constexpr int kThreads = 8;
    GlobalCaches::Clear();
    std::vector<Bytes> devmodes;
    for (int number = 0; number < kCount; ++number)
        devmodes.push_back(
            Make(kLayouts[number % 2], {{1, MakeState(number % 3 == 0)}, {5, ByteBuffer(&number, sizeof(number))}}));
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread)
        threads.emplace_back(
            [&, thread]
            {
                for (int step = 0; step < kCount; ++step)
                {
                    // Half of the threads walk together, half each on its own.
                    const int number = thread % 2 == 0 ? step : (step + thread * 100) % kCount;
                    const TestDevmode block{devmodes[static_cast<std::size_t>(number)]};
                    XDevmode devmode(block.Get());
                    if (devmode.GetBooleanValueFromAttributeBytes(kFlagFeature) != (number % 3 == 0) ||
                        devmode.GetPropertyBagEntry(5)->getAsLongValue() != number)
                        ++wrong;
                }
            });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_LE(GlobalCaches::GetPropertyBagCounters().entries, GlobalCaches::kCapacity);
    EXPECT_LE(GlobalCaches::GetListCounters().entries, 2 * GlobalCaches::kCapacity);
}

} // namespace
