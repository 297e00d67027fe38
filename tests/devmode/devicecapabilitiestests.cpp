// A printer's capabilities from its caches, as the configuration module of an installed printer has filled them.
#include "complugins/msdevicecapabilities.h"

#include <array>
#include <optional>

#include <tvcore/customsizenumber.h>
#include <tvcore/datamodelids.h>
#include <tvutil/crc32.h>
#include <tvutil/exceptions.h>
#include <tvutil/executioncontext.h>
#include <tvutil/tavlenexception.h>
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
using CacheState = MSDeviceCapabilities::CacheState;
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

TEST_F(DeviceCapabilities, HashCustomSizesInThousandthsOneAfterTheOther)
{
    EXPECT_EQ(CustomFormsCrc(), 1397442489U);
    const CXString longName(WideString(100, W('A')));
    ASSERT_TRUE(CustomForms::Add({longName, 100049, 139700, false}));
    ASSERT_TRUE(CustomForms::Add({W("B"), 3276700, 51, true})); // behind it in the registry's order
    DWORD expected = 1397442489;
    for (const auto& record :
         {HashedRecord(longName.View(), 100049, 139700, 7492), HashedRecord(W("B"), 3276700, 51, 7491)})
        expected = Crc32::GetCrc(record.data(), record.size(), expected);
    EXPECT_EQ(CustomFormsCrc(), expected);
    EXPECT_EQ(CustomFormsCrc(Context::Spooler), 1397442489U);
    EXPECT_FALSE(CustomForms::Add({W("b"), 1000, 1000, true}));
    EXPECT_EQ(CustomFormsCrc(), expected) << "nothing is written over it";
}

TEST_F(DeviceCapabilities, LeaveOutAndReportCustomSizesThatMakeNoSense)
{
    const User user(CustomForms::kComponent);
    const auto path = [](const WCHAR* name)
    {
        return CXString(CustomForms::kKey) + W("\\") + name;
    };
    ASSERT_TRUE(CustomForms::Add({W("Good"), 100000, 200000, true}));
    const DWORD good = CustomFormsCrc();
    for (const auto& [width, length] : {std::pair(0, 1000), {50, 1000}, {1000, 3276701}, {-1, 1000}})
        ASSERT_TRUE(CustomForms::Add({CXString::FromInteger(width) + W(" wide"), width, length, true}));
    user.SetDword(path(W("Without units")), CustomForms::kWidth, 1000);
    user.SetDword(path(W("Without units")), CustomForms::kLength, 1000);
    ASSERT_TRUE(user.CreateKey(path(W("Empty"))));

    int reports = 0;
    const auto count = [](const TavlenException::Report& report, void* context)
    {
        EXPECT_EQ(CXString(report.text), W("5335"));
        EXPECT_NE(report.exception, nullptr);
        EXPECT_EQ(report.contexts->Top()->id, 5335);
        ++*static_cast<int*>(context);
    };
    const auto former = TavlenException::SetReportSink({count, &reports});
    const CustomForms::Walk walk = CustomForms::WalkSizes();
    TavlenException::SetReportSink(former);
    EXPECT_EQ(walk.sizes.size(), 1U);
    EXPECT_EQ(walk.leftOut.size(), 6U);
    EXPECT_EQ(walk.crc, good);
    EXPECT_FALSE(walk.isCutOff);
    EXPECT_EQ(reports, 6);
}

TEST_F(DeviceCapabilities, GiveTheFormsAgainWhenTheyAreFilledWithTheCustomSizesOfNow)
{
    Forms forms;
    ASSERT_EQ(AskForms(Context::Application, forms), S_OK);
    const std::size_t ofModel = m_model["forms"].size();
    EXPECT_EQ(forms.size(), ofModel);
    ASSERT_TRUE(CustomForms::Add({W("Strip"), 100051, 139700, false}));
    EXPECT_EQ(AskForms(Context::Application, forms), E_FAIL);
    EXPECT_TRUE(forms.empty());
    Fill();
    ASSERT_EQ(AskForms(Context::Application, forms), S_OK);
    EXPECT_EQ(forms.size(), ofModel + 1);
    EXPECT_EQ(forms.back().width, 1001) << "tenths";
    EXPECT_EQ(forms.back().formType, 25003);
    EXPECT_EQ(forms.back().paperId, CustomSizeNumber(W("Strip")));
    ASSERT_TRUE(CustomForms::Remove(W("strip")));
    EXPECT_EQ(AskForms(Context::Application, forms), E_FAIL);

    MSDeviceCapabilities capabilities;
    capabilities.Initialize(Handle(), Context::Application);
    DWORD answer = 0;
    EXPECT_EQ(capabilities.DeviceCapabilities(DC_PAPERS, Validation::CustomForms, answer), E_FAIL);
    EXPECT_EQ(capabilities.DeviceCapabilities(DC_PAPERS, Validation::None, answer), S_OK) << "nobody asked";
    EXPECT_EQ(answer, ofModel) << "all but the unlisted one, and the custom size";

    // The devmode's own list, whatever the store holds.
    const FormsInfoRecord own = OemDevmodeBytes::MakeForm(9, W("Own"), 1, 2, 25001);
    const TestDevmode devmode{
        OemDevmodeBytes::Make(CoreDriverLayout::Unidrv, {{1, OemDevmodeBytes::MakeState(true, {&own, 1})}})};
    ASSERT_EQ(AskForms(Context::Spooler, forms, devmode.Get()), S_OK);
    EXPECT_EQ(forms.size(), 1U);
    EXPECT_EQ(AskForms(Context::Spooler, forms), E_FAIL);
}

TEST_F(DeviceCapabilities, AnswerEachIndexFromItsCacheOrNotAtAll)
{
    struct Case
    {
        std::vector<WORD> indices;
        const WCHAR* cache;
        std::size_t answer;
    };
    const auto unlisted = std::count_if(m_model["forms"].begin(), m_model["forms"].end(),
                                        [](const nlohmann::json& form) { return form["type"] == 25007; });
    ASSERT_EQ(unlisted, 1);
    const Case kCases[] = {
        {{0, 1, 2, 3, 65529}, W("XPaperCaps"), m_model["forms"].size() - 1},
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
    std::vector<bool> isAnswered(0x10000);
    DWORD answer = 0;
    for (const Case& test : kCases)
        for (const WORD index : test.indices)
        {
            isAnswered[index] = true;
            EXPECT_EQ(capabilities.DeviceCapabilities(index, Validation::CustomForms, answer), S_OK) << index;
            EXPECT_EQ(answer, test.answer) << index;
        }
    for (const Case& test : kCases)
    {
        const std::optional<ByteBuffer> whole = store.Read(test.cache);
        ASSERT_TRUE(whole);
        store.Write(test.cache, whole->bytes().first(whole->size() - 1));
        for (const WORD index : test.indices)
            EXPECT_EQ(capabilities.DeviceCapabilities(index, Validation::None, answer), E_FAIL) << index;
    }
    for (DWORD index = 0; index < 0x10000; ++index)
        if (!isAnswered[index])
        {
            answer = 7;
            EXPECT_EQ(capabilities.DeviceCapabilities(static_cast<WORD>(index), Validation::None, answer), S_OK);
            EXPECT_EQ(answer, 0U) << index;
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
    DWORD answer = 0;
    MSDeviceCapabilities ofUser;
    ofUser.Initialize(Handle(), Context::Application);
    EXPECT_EQ(ofUser.DescribeCache(Cache::Papers)->state, CacheState::Valid);
    EXPECT_EQ(ofUser.DeviceCapabilities(DC_PAPERS, Validation::None, answer), E_FAIL) << "no form list";
    ASSERT_TRUE(CustomForms::Add({W("Strip"), 100000, 139700, false}));
    EXPECT_EQ(AskForms(Context::Application, forms), E_FAIL) << "a machine's has no user's sizes";
    Fill();
    EXPECT_EQ(AskForms(Context::Application, forms), S_OK);
    EXPECT_EQ(forms.size(), m_model["forms"].size() + 1);
    MSDeviceCapabilities forced;
    forced.Initialize(Handle(), Context::Application, {.forceMachineHive = true});
    EXPECT_EQ(forced.GetHive(), HKEY_LOCAL_MACHINE);
    EXPECT_EQ(forced.DeviceCapabilities(DC_PAPERS, Validation::None, answer), S_OK);
    EXPECT_EQ(answer, m_model["forms"].size() - 1);
    EXPECT_EQ(forced.DeviceCapabilities(DC_BINS, Validation::None, answer), E_FAIL);
    EXPECT_TRUE(DataCache::RemovePrinter(m_name, HKEY_LOCAL_MACHINE));
}

TEST_F(DeviceCapabilities, SaveWhatIsDirtyUnlessTheyMustNot)
{
    const DataCache store = Store(HKEY_CURRENT_USER);
    const DataCache::Lock lock(HKEY_CURRENT_USER);
    const std::size_t before = store.Dump().size();
    const ByteBuffer staple = CapabilityCaches::WriteStaple(1);
    MSDeviceCapabilities capabilities;
    capabilities.Initialize(Handle(), Context::Application, {.noSave = true});
    capabilities.SetCache(Cache::Staple, staple);
    EXPECT_EQ(capabilities.Save(lock), S_FALSE);
    EXPECT_NE(store.Read(W("XStaple")), staple);
    capabilities.Initialize(Handle(), Context::Application);
    EXPECT_EQ(capabilities.Save(lock), S_OK);
    EXPECT_EQ(capabilities.Save(lock), S_FALSE) << "nothing is dirty any more";
    EXPECT_EQ(store.Read(W("XStaple")), staple);
    const std::optional<ByteBuffer> flags = store.Read(W("XCapsFlags"));
    EXPECT_EQ(flags,
              CapabilityCaches::WriteFlags({0x10000, MSDeviceCapabilities::kStamp, MSDeviceCapabilities::kStamp}))
        << "the papers stay";
    EXPECT_EQ(store.Dump().size(), before);

    capabilities.SetCache(Cache::Staple, CapabilityCaches::WriteStaple(0));
    capabilities.Initialize(Handle(), Context::Application, {.forceMachineHive = true});
    EXPECT_EQ(capabilities.Save(lock), S_FALSE) << "a user's cache is not for the machine";
    EXPECT_FALSE(Store(HKEY_LOCAL_MACHINE).Read(W("XStaple")));

    HANDLE const nobodys = &capabilities;
    capabilities.Initialize(nobodys, Context::Application);
    capabilities.SetCache(Cache::Staple, staple);
    EXPECT_EQ(capabilities.Save(lock), E_NOTIMPL);
    DWORD answer = 0;
    EXPECT_EQ(capabilities.DeviceCapabilities(DC_STAPLE, Validation::None, answer), E_NOTIMPL);
    EXPECT_FALSE(capabilities.DescribeCache(Cache::Staple));
}

TEST_F(DeviceCapabilities, OfAConversionBindAtTheFirstQuestion)
{
    MSDeviceCapabilities shared;
    DEVMODEW devmode{};
    Forms forms;
    for (HANDLE const unbound : {HANDLE{}, INVALID_HANDLE_VALUE})
    {
        MsCachedDeviceCapabilities early(shared, unbound, &devmode);
        EXPECT_EQ(early.GetCachedDevmode(), &devmode);
        EXPECT_EQ(shared.GetPrinterHandle(), nullptr);
        EXPECT_THROW(early.GetForms(forms), ExceptionInvalidPrinterHandle);
    }
    MsCachedDeviceCapabilities bound(shared, Handle(), nullptr);
    EXPECT_EQ(shared.GetPrinterHandle(), nullptr) << "building one asks nothing";
    std::vector<ResolutionInfoRecord> resolutions;
    EXPECT_EQ(bound.GetResolutions(resolutions), S_OK);
    EXPECT_EQ(shared.GetPrinterHandle(), Handle());
    ASSERT_EQ(resolutions.size(), m_model["resolutions"].size());
    EXPECT_EQ(resolutions[0].x, m_model["resolutions"][0]["x"]);
    EXPECT_EQ(WideString(resolutions[0].name),
              WideString(CXString::FromUtf8(m_model["resolutions"][0]["name"].get<std::string>()).View()));
    std::vector<std::int32_t> values;
    EXPECT_EQ(bound.GetResolutionEnums(values), S_OK);
    ASSERT_FALSE(values.empty());
    EXPECT_EQ(values[0], DataModelIds::Value::MsResolution600x600);
    EXPECT_EQ(bound.GetForms(forms), S_OK);
    const std::size_t count = forms.size();
    EXPECT_TRUE(DataCache::RemovePrinter(m_name, HKEY_CURRENT_USER));
    EXPECT_EQ(bound.GetForms(forms), S_OK) << "kept for the conversion";
    EXPECT_EQ(forms.size(), count);
    values.clear();
    EXPECT_EQ(bound.GetResolutionEnums(values), S_OK);
    EXPECT_EQ(values[0], DataModelIds::Value::MsResolution600x600);
}

TEST_F(DeviceCapabilities, OfAConversionKeepTheirOwnersOptions)
{
    MSDeviceCapabilities shared;
    const Printer other(m_name);
    Forms forms;
    MsCachedDeviceCapabilities cached(shared, Handle(), nullptr);
    for (HANDLE const held : {Handle(), other.GetPrinterHandle()})
    {
        shared.Initialize(held, Context::Application, {.forceMachineHive = true, .noSave = true});
        EXPECT_EQ(cached.GetForms(forms), E_FAIL) << "the machine has none";
        EXPECT_EQ(shared.GetPrinterHandle(), Handle());
        shared.SetCache(Cache::Staple, CapabilityCaches::WriteStaple(1));
        EXPECT_EQ(shared.Save(DataCache::Lock(HKEY_LOCAL_MACHINE)), S_FALSE);
    }
}

} // namespace
