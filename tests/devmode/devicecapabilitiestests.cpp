// A printer's capabilities from its caches, as the configuration module of an installed printer has filled them.
#include "complugins/msdevicecapabilities.h"

#include <array>
#include <optional>

#include <tvcore/customsizenumber.h>
#include <tvcore/datamodelids.h>
#include <tvutil/crc32.h>
#include <tvutil/exceptions.h>
#include <tvutil/tavlenutilities.h>
#include <tvutil/user.h>

#include "complugins/customforms.h"
#include "complugins/mscacheddevicecapabilities.h"
#include "tests/common/oemdevmodebytes.h"
#include "tests/common/testdevmode.h"
#include "tests/tvui/installedprinter.h"

namespace
{

using Cache = MSDeviceCapabilities::Cache;
using Context = MSDeviceCapabilities::Context;
using Validation = MSDeviceCapabilities::Validation;
using Forms = std::vector<FormsInfoRecord>;

class DeviceCapabilities : public InstalledPrinter
{
protected:
    void SetUp() override
    {
        InstalledPrinter::SetUp();
        ForgetSizes();
        Install("tavlen-b7000-xps");
        m_printer.emplace(m_name);
    }

    void TearDown() override
    {
        ForgetSizes();
        m_printer.reset();
        InstalledPrinter::TearDown();
    }

    [[nodiscard]] HANDLE Handle() const
    {
        return m_printer->GetPrinterHandle();
    }

    [[nodiscard]] DataCache Store(HKEY hive) const
    {
        const CXString port = TavlenUtilities::ConvertPortNameToRegistryKey(m_printer->GetPortName().View());
        return DataCache({m_name, port}, hive, MSDeviceCapabilities::kStamp, false);
    }

    // The module fills the caches of this user.
    void Fill() const
    {
        WideString name = MutableName();
        EXPECT_TRUE(ConfigurationModule().Event(name.data(), PRINTER_EVENT_CACHE_REFRESH));
    }

    HRESULT AskForms(Context context, Forms& forms, DEVMODEW* devmode = nullptr) const
    {
        MSDeviceCapabilities capabilities;
        capabilities.Initialize(Handle(), context);
        return capabilities.GetPaperDatabaseCachedDeviceCapabilitiesVector(Handle(), devmode, forms);
    }

    static DWORD CustomFormsCrc(Context context = Context::Application)
    {
        MSDeviceCapabilities capabilities;
        if (context == Context::Spooler)
            capabilities.Initialize(&capabilities, context);
        return capabilities.GetCustomFormsCRC();
    }

private:
    static void ForgetSizes()
    {
        User(CustomForms::kComponent).DeleteKey(CustomForms::kKey);
    }

    std::optional<Printer> m_printer;
};

// The record that is hashed for a custom size, by the format.
std::array<BYTE, 152> HashedRecord(WStringView name, DWORD width, DWORD length, DWORD units)
{
    std::array<BYTE, 152> bytes{};
    const WORD number = CustomSizeNumber(name);
    const DWORD words[] = {width, length, 0, units, 25003};
    memcpy(bytes.data(), &number, sizeof number);
    memcpy(bytes.data() + 4, words, sizeof words);
    memcpy(bytes.data() + 24, name.data(), std::min<std::size_t>(name.size(), 63) * sizeof(WCHAR));
    return bytes;
}

TEST_F(DeviceCapabilities, HashCustomSizesInThousandthsOneAfterTheOtherButNoneThatMakesNoSense)
{
    EXPECT_EQ(CustomFormsCrc(), 1397442489U);
    const CXString longName(WideString(100, W('A')));
    ASSERT_TRUE(CustomForms::Add({longName, 100049, 139700, false}));
    ASSERT_TRUE(CustomForms::Add({W("B"), 3276700, 51, true})); // behind it in the registry's order
    for (const auto& [width, length] : {std::pair(0, 1000), {50, 1000}, {1000, 3276701}, {-1, 1000}})
        ASSERT_TRUE(CustomForms::Add({CXString::FromInteger(width) + W(" wide"), width, length, true}));
    DWORD expected = 1397442489;
    for (const auto& record :
         {HashedRecord(longName.View(), 100049, 139700, 7492), HashedRecord(W("B"), 3276700, 51, 7491)})
        expected = Crc32::GetCrc(record.data(), record.size(), expected);
    EXPECT_EQ(CustomFormsCrc(), expected);
    EXPECT_EQ(CustomFormsCrc(Context::Spooler), 1397442489U);
    const CustomForms::Walk walk = CustomForms::WalkSizes();
    EXPECT_EQ(walk.sizes.size(), 2U);
    EXPECT_EQ(walk.leftOut.size(), 4U);
    EXPECT_FALSE(walk.isCutOff);
}

TEST_F(DeviceCapabilities, GiveTheFormsAgainWhenTheyAreFilledWithTheCustomSizesOfNow)
{
    Forms forms;
    ASSERT_TRUE(CustomForms::Add({W("Strip"), 100051, 139700, false}));
    EXPECT_EQ(AskForms(Context::Application, forms), E_FAIL);
    EXPECT_TRUE(forms.empty());
    Fill();
    ASSERT_EQ(AskForms(Context::Application, forms), S_OK);
    EXPECT_EQ(forms.size(), m_model["forms"].size() + 1);
    EXPECT_EQ(forms.back().width, 1001) << "tenths";
    EXPECT_EQ(forms.back().formType, 25003);
    EXPECT_EQ(forms.back().paperId, CustomSizeNumber(W("Strip")));

    // The devmode's own list, whatever the store holds.
    const FormsInfoRecord own = OemDevmodeBytes::MakeForm(9, W("Own"), 1, 2, 25001);
    const TestDevmode devmode{
        OemDevmodeBytes::Make(CoreDriverLayout::Unidrv, {{1, OemDevmodeBytes::MakeState(true, {&own, 1})}})};
    ASSERT_EQ(AskForms(Context::Spooler, forms, devmode.Get()), S_OK);
    EXPECT_EQ(forms.size(), 1U);
    const TestDevmode without{OemDevmodeBytes::Make(CoreDriverLayout::Unidrv, {})};
    for (DEVMODEW* const none : {without.Get(), static_cast<DEVMODEW*>(nullptr)})
        EXPECT_EQ(AskForms(Context::Spooler, forms, none), E_FAIL);
}

TEST_F(DeviceCapabilities, AnswerEachIndexFromItsCacheOrNotAtAll)
{
    const struct
    {
        std::vector<WORD> indices;
        const WCHAR* cache;
        std::size_t answer;
    } cases[] = {
        {{0, 1, 2, 3, 65529}, W("XPaperCaps"), m_model["forms"].size() - 1}, // without the unlisted one
        {{6, 65526}, W("XBinCaps"), m_model["bins"].size()},
        {{13, 65527}, W("XResolutions"), m_model["resolutions"].size()},
        {{14}, W("XDependentFilesCaps"), 6},
        {{29, 65528}, W("XMediaReady"), 1},
        {{30}, W("XStaple"), 0},
        {{34, 35}, W("XMediaCaps"), m_model["mediaTypes"].size()},
        {{4, 5, 26, 27, 28, 31, 32, 65533}, W("XDevCaps"), 11},
    };
    MSDeviceCapabilities capabilities;
    capabilities.Initialize(Handle(), Context::Application);
    const DataCache store = Store(HKEY_CURRENT_USER);
    DWORD answer = 7;
    EXPECT_EQ(capabilities.DeviceCapabilities(7, Validation::None, answer), S_OK) << "nobody's index";
    EXPECT_EQ(answer, 0U);
    for (const auto& test : cases)
    {
        for (const WORD index : test.indices)
        {
            EXPECT_EQ(capabilities.DeviceCapabilities(index, Validation::CustomForms, answer), S_OK) << index;
            EXPECT_EQ(answer, test.answer) << index;
        }
        const std::optional<ByteBuffer> whole = store.Read(test.cache);
        ASSERT_TRUE(whole);
        store.Write(test.cache, whole->bytes().first(whole->size() - 1));
        EXPECT_EQ(capabilities.DeviceCapabilities(test.indices[0], Validation::None, answer), E_FAIL)
            << CXString(test.cache).ToUtf8();
    }
}

TEST_F(DeviceCapabilities, TakeTheMachinesFormsWhereTheUserHasNone)
{
    const std::optional<ByteBuffer> papers = Store(HKEY_CURRENT_USER).Read(W("XPaperCaps"));
    ASSERT_TRUE(papers);
    ASSERT_TRUE(DataCache::RemovePrinter(m_name, HKEY_CURRENT_USER));
    Forms forms;
    EXPECT_EQ(AskForms(Context::Application, forms), E_FAIL);
    Store(HKEY_LOCAL_MACHINE).Write(W("XPaperCaps"), papers->bytes());
    EXPECT_EQ(AskForms(Context::Application, forms), S_OK);
    EXPECT_EQ(forms.size(), m_model["forms"].size());
    ASSERT_TRUE(CustomForms::Add({W("Strip"), 100000, 139700, false}));
    EXPECT_EQ(AskForms(Context::Application, forms), E_FAIL) << "a machine's has no user's sizes";
    Fill();
    EXPECT_EQ(AskForms(Context::Application, forms), S_OK);
    EXPECT_EQ(forms.size(), m_model["forms"].size() + 1);
    EXPECT_TRUE(DataCache::RemovePrinter(m_name, HKEY_LOCAL_MACHINE));
}

TEST_F(DeviceCapabilities, SaveWhatIsDirtyOfTheirPrinterOnce)
{
    const DataCache store = Store(HKEY_CURRENT_USER);
    const DataCache::Lock lock(HKEY_CURRENT_USER);
    const ByteBuffer staple = CapabilityCaches::WriteStaple(1);
    MSDeviceCapabilities capabilities;
    capabilities.Initialize(Handle(), Context::Application);
    capabilities.SetCache(Cache::Staple, staple);
    EXPECT_EQ(capabilities.Save(lock), S_OK);
    EXPECT_EQ(capabilities.Save(lock), S_FALSE) << "nothing is dirty any more";
    EXPECT_EQ(store.Read(W("XStaple")), staple);
    EXPECT_EQ(store.Read(W("XCapsFlags")),
              CapabilityCaches::WriteFlags({0x10000, MSDeviceCapabilities::kStamp, MSDeviceCapabilities::kStamp}))
        << "the papers stay";

    HANDLE const nobodys = &capabilities;
    capabilities.Initialize(nobodys, Context::Application);
    capabilities.SetCache(Cache::Staple, CapabilityCaches::WriteStaple(0));
    EXPECT_EQ(capabilities.Save(lock), E_NOTIMPL);
    EXPECT_FALSE(capabilities.DescribeCache(Cache::Staple));
    Forms forms;
    EXPECT_EQ(capabilities.GetPaperDatabaseCachedDeviceCapabilitiesVector(nullptr, nullptr, forms), E_NOTIMPL);
    capabilities.Initialize(Handle(), Context::Application);
    EXPECT_EQ(capabilities.Save(lock), S_FALSE) << "it was meant for another one";
}

TEST_F(DeviceCapabilities, OfAConversionBindAtTheFirstQuestion)
{
    MSDeviceCapabilities shared;
    Forms forms;
    for (HANDLE const unbound : {HANDLE{}, INVALID_HANDLE_VALUE})
        EXPECT_THROW(MsCachedDeviceCapabilities(shared, unbound, nullptr).GetForms(forms),
                     ExceptionInvalidPrinterHandle);
    MsCachedDeviceCapabilities bound(shared, Handle(), nullptr);
    EXPECT_EQ(shared.GetPrinterHandle(), nullptr) << "building one asks nothing";
    std::vector<ResolutionInfoRecord> resolutions;
    EXPECT_EQ(bound.GetResolutions(resolutions), S_OK);
    EXPECT_EQ(shared.GetPrinterHandle(), Handle());
    const nlohmann::json& ofModel = m_model["resolutions"];
    ASSERT_EQ(resolutions.size(), ofModel.size());
    EXPECT_EQ(resolutions[0].x, ofModel[0]["x"]);
    EXPECT_EQ(CXString(resolutions[0].name).ToUtf8(), ofModel[0]["name"]);
    EXPECT_EQ(bound.GetForms(forms), S_OK);
    const std::size_t count = forms.size();
    EXPECT_TRUE(DataCache::RemovePrinter(m_name, HKEY_CURRENT_USER));
    EXPECT_EQ(bound.GetForms(forms), S_OK) << "kept for the conversion";
    EXPECT_EQ(forms.size(), count);
    std::vector<std::int32_t> values;
    EXPECT_EQ(bound.GetResolutionEnums(values), S_OK);
    ASSERT_FALSE(values.empty());
    EXPECT_EQ(values[0], DataModelIds::Value::MsResolution600x600);
}

} // namespace
