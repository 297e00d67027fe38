// Devmodes that somebody cut or changed.
#include <gtest/gtest.h>

#include <tvutil/devmodebounds.h>
#include <tvutil/globalcaches.h>

#include "complugins/msdevicecapabilities.h"
#include "complugins/xdevmode.h"
#include "tests/common/oemdevmodebytes.h"
#include "tests/common/testdevmode.h"

namespace
{

namespace Format = OemDevmodeFormat;
using namespace OemDevmodeBytes;

// Every place that is read; of the zeros behind the entries one here and there, odd and even, and the last ones.
std::size_t PlaceBehind(std::size_t at, std::size_t size)
{
    constexpr std::size_t kEntriesEnd = kPartOffset + Format::kEntriesOffset + 400;
    return at < kEntriesEnd || at + 64 > size ? at + 1 : at + 61;
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
        for (std::size_t size = 0; size <= whole.size(); size = PlaceBehind(size, whole.size()))
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
        for (std::size_t at = sizeof(DEVMODEW); at < whole.size(); at = PlaceBehind(at, whole.size()))
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

} // namespace
