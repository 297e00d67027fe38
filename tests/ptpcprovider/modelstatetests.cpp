// The model state in light mode: the wrapper of the last devmode, and the way of its settings out of it and back.
#include <gtest/gtest.h>

#include <tvutil/persistentattributes.h>

#include <cstddef>
#include <vector>

#include "complugins/oemdevmode.h"
#include "complugins/xdevmode.h"
#include "tests/common/failurecode.h"
#include "tests/common/oemdevmodebytes.h"
#include "tests/common/testdevmode.h"
#include "tests/ptpcprovider/provideraccess.h"

namespace
{

using Access = TavlenPtProviderTestAccess;
using OemDevmodeBytes::Entries;

constexpr auto kDocument = PersistentAttributes::GetDataModelDocPropNameSpaceId();
constexpr auto kCapabilities = PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId();

TestDevmode DevmodeOf(const Entries& entries)
{
    return TestDevmode(OemDevmodeBytes::Make(CoreDriverLayout::PostScript, entries));
}

ByteBuffer SampleState()
{
    const auto form = OemDevmodeBytes::MakeForm(9, W("A4"), 2100, 2970, DataModelIds::PageSizeStandard);
    return OemDevmodeBytes::MakeState(true, {&form, 1});
}

std::vector<std::byte> ListOf(const ByteBuffer& state, AttributeBytesNameSpacesId id)
{
    const AttributeBytesRawList list = PersistentAttributes(state).GetAttributeBytesListForNameSpace(id);
    return {list.GetBytes().begin(), list.GetBytes().end()};
}

class ModelState : public testing::Test, protected ProviderBinding
{
};

TEST_F(ModelState, WrapsTheLastDevmodeAndNullKeepsIt)
{
    ExpectCode(E_FAIL, {[&]
                        {
                            object->GetXDevmodeRef();
                        }});
    EXPECT_EQ(nullptr, object->InitializeOrReInitializeDataModel(nullptr));
    ExpectCode(E_FAIL, {[&]
                        {
                            object->GetXDevmodeRef();
                        }});
    const TestDevmode bare;
    const TestDevmode whole = DevmodeOf({{1, SampleState()}});
    for (const TestDevmode* devmode : {&bare, &whole, &bare})
    {
        EXPECT_EQ(nullptr, object->InitializeOrReInitializeDataModel(devmode->Get()));
        const XDevmode* const wrapper = &object->GetXDevmodeRef();
        EXPECT_EQ(devmode == &whole, wrapper->HasOemDevmode());
        EXPECT_EQ(nullptr, object->InitializeOrReInitializeDataModel(nullptr));
        EXPECT_EQ(wrapper, &object->GetXDevmodeRef());
    }
}

TEST_F(ModelState, StoresSettingsUpToTheirLimitAndNothingElse)
{
    ByteBuffer later = SampleState();
    later.data()[5] = 2; // of a later format
    ByteBuffer followed = SampleState();
    followed.resize(followed.size() + 200); // bytes that do not belong to the state
    struct Case
    {
        const char* name;
        Entries entries;
        std::size_t size; // of the state that a commit makes
        bool isWritten;
    };
    const Case kCases[] = {
        {"the longest", {{1, SampleState()}}, 5400, true},
        {"a byte more", {{1, SampleState()}}, 5401, false},
        {"bytes behind the state do not count", {{1, followed}}, 5400, true},
        {"more than the part has room for", {{1, SampleState()}, {2, ByteBuffer(std::size_t{480})}}, 5400, false},
        {"a state of a later format", {{1, later}}, 5000, false},
        {"no settings", {{2, ByteBuffer(std::size_t{4})}}, 5000, false},
    };
    for (const Case& test : kCases)
    {
        SCOPED_TRACE(test.name);
        const TestDevmode devmode = DevmodeOf(test.entries);
        const std::vector<std::byte> before = devmode.Bytes();
        XDevmode wrapper(devmode.Get());
        std::unique_ptr<AttributeBytesIndexedList> settings = Access::Settings(wrapper);
        EXPECT_EQ(test.entries.front().first != 1, settings == nullptr);
        Access::Commit(wrapper, nullptr);
        EXPECT_EQ(before, devmode.Bytes());
        if (!settings)
            settings = std::make_unique<AttributeBytesIndexedList>();
        const std::size_t padding = test.size - SampleState().size() - 8;
        settings->SetAttributeBytes(9001, {AttributeBytesKind::Binary, 0, ByteBuffer(padding)});
        Access::Commit(wrapper, settings.get());
        EXPECT_EQ(test.isWritten, before != devmode.Bytes());
        if (!test.isWritten)
            continue;
        XDevmode again(devmode.Get());
        const ByteBuffer* const state = again.GetPropertyBagEntry(OemDevmodeFormat::kPersistentAttributesKey);
        ASSERT_NE(nullptr, state);
        EXPECT_EQ(test.size, state->size());
        EXPECT_EQ(ListOf(SampleState(), kCapabilities), ListOf(*state, kCapabilities));
        const auto stored = AttributeBytesRawList(*settings);
        EXPECT_EQ(std::vector(stored.GetBytes().begin(), stored.GetBytes().end()), ListOf(*state, kDocument));
    }
}

} // namespace
