// The model state in light mode: the wrapper of the last devmode, and the way of its settings out of it and back.
#include <gtest/gtest.h>

#include <tvutil/persistentattributes.h>

#include "complugins/xdevmode.h"
#include "tests/common/failurecode.h"
#include "tests/common/oemdevmodebytes.h"
#include "tests/ptpcprovider/provideraccess.h"

namespace
{

TEST(ModelState, WrapsTheLastDevmodeAndNullKeepsIt)
{
    ProviderBinding binding;
    TavlenPtProvider& provider = *binding.object;
    EXPECT_EQ(nullptr, provider.InitializeOrReInitializeDataModel(nullptr));
    ExpectCode(E_FAIL, {[&]
                        {
                            provider.GetXDevmodeRef();
                        }});
    const TestDevmode bare;
    const TestDevmode whole(OemDevmodeBytes::Make(CoreDriverLayout::PostScript, {}));
    for (const TestDevmode* devmode : {&whole, &bare})
    {
        EXPECT_EQ(nullptr, provider.InitializeOrReInitializeDataModel(devmode->Get()));
        EXPECT_EQ(nullptr, provider.InitializeOrReInitializeDataModel(nullptr));
        EXPECT_EQ(devmode == &whole, provider.GetXDevmodeRef().HasOemDevmode());
    }
}

TEST(ModelState, StoresSettingsUpToTheirLimitAndNothingElse)
{
    constexpr auto kCapabilities = PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId();
    const auto form = OemDevmodeBytes::MakeForm(9, W("A4"), 2100, 2970, DataModelIds::PageSizeStandard);
    const ByteBuffer state = OemDevmodeBytes::MakeState(true, {&form, 1});
    ByteBuffer later = state;
    later.data()[5] = 2;
    ByteBuffer followed = state;
    followed.resize(followed.size() + 200);
    const ByteBuffer other(std::size_t{490});
    const std::tuple<const char*, OemDevmodeBytes::Entries, std::size_t, bool> kCases[] = {
        {"the longest", {{1, state}}, 5400, true},
        {"a byte more", {{1, state}}, 5401, false},
        {"bytes behind the state do not count", {{1, followed}}, 5400, true},
        {"more than the part has room for", {{1, state}, {2, other}}, 5400, false},
        {"a state of a later format", {{1, later}}, 5000, false},
        {"no settings", {{2, other}}, 5000, false}};
    for (const auto& [name, entries, size, isWritten] : kCases)
    {
        SCOPED_TRACE(name);
        const TestDevmode devmode(OemDevmodeBytes::Make(CoreDriverLayout::PostScript, entries));
        XDevmode wrapper(devmode.Get());
        const std::vector<std::byte> before = devmode.Bytes();
        const auto stored = TavlenPtProviderTestAccess::Settings(wrapper);
        EXPECT_EQ(entries.front().first != 1, stored == nullptr);
        AttributeBytesIndexedList settings = stored ? *stored : AttributeBytesIndexedList();
        settings.SetAttributeBytes(9001, {AttributeBytesKind::Binary, 0, ByteBuffer(size - state.size() - 8)});
        TavlenPtProviderTestAccess::Commit(wrapper, nullptr);
        EXPECT_TRUE(before == devmode.Bytes());
        TavlenPtProviderTestAccess::Commit(wrapper, &settings);
        EXPECT_EQ(isWritten, before != devmode.Bytes());
        if (!isWritten)
            continue;
        const ByteBuffer written = *XDevmode(devmode.Get()).GetPropertyBagEntry(1);
        EXPECT_EQ(size, written.size());
        EXPECT_EQ(
            ByteBuffer(PersistentAttributes(state).GetAttributeBytesListForNameSpace(kCapabilities).GetBytes()),
            ByteBuffer(PersistentAttributes(written).GetAttributeBytesListForNameSpace(kCapabilities).GetBytes()));
    }
}

} // namespace
