// The core drivers' settings asked of the core driver, and that both ways to them agree.
#include "complugins/msdevmodeusingiprintcorehelper.h"

#include <cstring>
#include <functional>
#include <set>

#include <gtest/gtest.h>

#include "complugins/fixedtext.h"
#include "complugins/msdevmodeusingreverseengineering.h"
#include "corehelper.h"
#include "msdevmodesamples.h"

namespace
{

using namespace MsDevmodeSamples;
using Access = MsDevmodeUsingIPrintCoreHelper;
using Bytes = std::vector<std::byte>;
constexpr auto Raw = MsDevmodeBase::Raw;
constexpr auto DataModel = MsDevmodeBase::DataModel;

// A colour printer with every resolution that any driver can have.
PrinterModel ModelOf(const MsDriverKind& driver)
{
    PrinterModel model;
    model.capability = driver.kind | driver.platform | driver.coreFlags;
    model.productInformation[13] = W("Color");
    constexpr std::pair<std::uint16_t, std::uint16_t> kResolutions[] = {{600, 600},   {200, 200},   {300, 300},
                                                                        {400, 400},   {600, 1200},  {1200, 600},
                                                                        {1200, 1200}, {1800, 1800}, {2400, 2400}};
    for (const auto& [x, y] : kResolutions)
        model.resolutions.push_back({x, y, {}});
    return model;
}

// A core driver that does as a test says, in place of or around what the reference does.
class ScriptedHelper final : public CoreHelper
{
public:
    explicit ScriptedHelper(const MsDriverKind& driver) : CoreHelper(ModelOf(driver))
    {
    }

    // What the next questions are answered with.
    void Answer(PCSTR text, HRESULT result = S_OK)
    {
        onGet = [text, result](PCSTR* option)
        {
            *option = text;
            return result;
        };
    }

    std::function<HRESULT(PCSTR* option)> onGet;
    std::function<HRESULT(DEVMODEW* devmode)> onSet;
    DWORD taken = 1;     // pairs, where onSet is asked
    std::string keyword; // of the last call
    std::string setOption;

    HRESULT STDMETHODCALLTYPE GetOption(const DEVMODEW* devmode, DWORD devmodeSize, PCSTR feature,
                                        PCSTR* option) override
    {
        keyword = feature;
        return onGet ? onGet(option) : CoreHelper::GetOption(devmode, devmodeSize, feature, option);
    }

    HRESULT STDMETHODCALLTYPE SetOptions(DEVMODEW* devmode, DWORD devmodeSize, BOOL resolve,
                                         const PRINT_FEATURE_OPTION* pairs, DWORD count, DWORD* written,
                                         DWORD* result) override
    {
        keyword = pairs->pszFeature;
        setOption = pairs->pszOption;
        if (!onSet)
            return CoreHelper::SetOptions(devmode, devmodeSize, resolve, pairs, count, written, result);
        *written = taken;
        return onSet(devmode);
    }
};

ComPtr<ScriptedHelper> MakeHelper(const MsDriverKind& driver)
{
    ComPtr<ScriptedHelper> helper;
    helper.Attach(new ScriptedHelper(driver));
    return helper;
}

std::vector<MsDriverKind> EveryDriver()
{
    std::vector<MsDriverKind> drivers;
    for (const std::uint32_t kind : {0x40u, 0x80u, 0x200u, 0x400u, 0x600u, 0x440u})
        for (const std::uint32_t platform : {0u, 0x800u, 0x1000u, 0x1800u})
            for (const std::uint32_t flags : {0u, 0x2u, 0x4u, 0x8u, 0xCu})
                drivers.push_back({kind, platform, flags});
    return drivers;
}

// One value of one driver's setting by both ways, from the same devmode on.
void WriteAndReadBack(const MsDriverKind& driver, std::uint32_t feature, const MsDevmodeValueRow& row)
{
    const TestDevmode first = MakeDevmodeOf(driver);
    const TestDevmode second = MakeDevmodeOf(driver);
    const ComPtr<CoreHelper> helper = CoreHelper::Make(ModelOf(driver));
    Access asked(driver, helper.Get(), first.Get(), first.Size());
    MsDevmodeUsingReverseEngineering known(driver, second.Get());
    const auto valueId = static_cast<std::uint32_t>(row.valueId);
    for (MsDevmodeBase* const way : {static_cast<MsDevmodeBase*>(&asked), static_cast<MsDevmodeBase*>(&known)})
    {
        way->SetMsFeatureValue(feature, valueId, DataModel);
        EXPECT_EQ(way->GetMsFeatureValue(feature, DataModel), valueId);
        EXPECT_EQ(way->GetMsFeatureValue(feature, Raw), row.devmodeValue);
        way->SetMsFeatureValue(feature, row.devmodeValue, Raw);
        EXPECT_EQ(way->GetMsFeatureValue(feature, Raw), row.devmodeValue);
    }
    if (feature == 34) // only one of them takes the colour with it
    {
        EXPECT_EQ(first.Get()->dmColor, 0);
        EXPECT_EQ(second.Get()->dmColor, row.valueId == 5970 ? DMCOLOR_COLOR : DMCOLOR_MONOCHROME);
        known.SetMsFeatureValue(9, 0, Raw);
        first.Get()->dmFields |= DM_COLOR;
    }
    EXPECT_EQ(first.Bytes(), second.Bytes());
}

TEST(BothWaysToASetting, WriteAndReadEveryValueOfEveryDriverAlike)
{
    std::set<std::uint32_t> met;
    for (const MsDriverKind& driver : EveryDriver())
    {
        const TestDevmode devmode;
        const MsDevmodeUsingReverseEngineering list(driver, devmode.Get());
        for (const MsDevmodeBase::Feature& feature : list.GetFeatures())
            for (const MsDevmodeValueRow& row : feature.values)
            {
                const MsDevmodeCell cell = MsDevmodeOffsets::FindPlace(feature.feature, driver).cell;
                if (cell == MsDevmodeCell::NotAvailable || cell == MsDevmodeCell::NoOffset)
                    continue;
                SCOPED_TRACE(NameOf(driver) + ", feature " + std::to_string(feature.feature) + ": " + row.displayName);
                met.insert(feature.feature);
                WriteAndReadBack(driver, feature.feature, row);
            }
    }
    EXPECT_EQ(met.size(), 24u); // all that have tables but the quality, which no driver has
}

constexpr MsDriverKind kPostScript = {0x200, 0x800, 0x2};

class AskedSettings : public testing::Test
{
protected:
    TestDevmode m_devmode = MakeDevmodeOf(kPostScript);
    ComPtr<ScriptedHelper> m_helper = MakeHelper(kPostScript);
    Access m_access{kPostScript, m_helper.Get(), m_devmode.Get(), m_devmode.Size()};
};

TEST_F(AskedSettings, ComeFromTheKeywordOrFromThePublicFieldFirst)
{
    m_devmode.Get()->dmDuplex = DMDUP_VERTICAL;
    m_devmode.Get()->dmCopies = 7;
    m_helper->Answer("DuplexTumble");
    EXPECT_EQ(m_access.GetMsFeatureValue(10, Raw), 3u);
    EXPECT_EQ(m_helper->keyword, "Duplex");
    m_helper->keyword.clear();
    EXPECT_EQ(m_access.GetMsFeatureValue(5, Raw), 7u); // no keyword
    m_access.SetAccessMode(Access::PublicFirst);
    EXPECT_EQ(m_access.GetMsFeatureValue(10, DataModel), 5421u);
    EXPECT_EQ(m_helper->keyword, "");
    m_devmode.Get()->dmDuplex = 9; // stands for nothing: the core driver knows
    EXPECT_EQ(m_access.GetMsFeatureValue(10, DataModel), 5422u);
    m_access.SetMsFeatureValue(10, 1, Raw); // is always the core driver's to write
    EXPECT_EQ(m_helper->keyword, "Duplex");
}

TEST_F(AskedSettings, OfABadCoreDriverAreNamedFailures)
{
    const std::string reading =
        "ExceptionIPrintCoreHelperReadFailure MsDevmodeUsingIPrintCoreHelper::GetMsFeatureValue 329";
    const std::string unknown = "ExceptionMicrosoftDevmodeValueMappingFailed "
                                "MsDevmodeBase::GetFeatureValueFromIPrintCoreHelperValue_Helper 543";
    const struct
    {
        PCSTR option;
        HRESULT result;
        std::string thrown;
        bool hasOption;
    } cases[] = {
        {nullptr, S_OK, reading, false},          {"", S_OK, reading, false},
        {"DuplexTumble", E_FAIL, reading, false}, {nullptr, E_OUTOFMEMORY, reading, false},
        {"DuplexBoth", S_OK, unknown, true},      {"DuplexTumble", S_FALSE, "", true},
    };
    const Bytes before = m_devmode.Bytes();
    for (const auto& test : cases)
    {
        SCOPED_TRACE(test.option != nullptr ? test.option : "null");
        m_helper->Answer(test.option, test.result);
        EXPECT_EQ(ThrownBy([this] { (void)m_access.GetMsFeatureValue(10, DataModel); }), test.thrown);
        EXPECT_EQ(m_access.HasCurrentOption(10), test.hasOption);
        EXPECT_FALSE(m_access.HasCurrentOption(5)); // no keyword
    }
    for (const auto& [result, taken] : {std::pair{E_ACCESSDENIED, 1u}, {E_FAIL, 0u}, {S_OK, 0u}, {S_FALSE, 0u}})
    {
        m_helper->taken = taken;
        m_helper->onSet = [result = result](DEVMODEW* devmode)
        {
            std::memset(devmode + 1, 0x55, devmode->dmDriverExtra);
            devmode->dmDuplex = DMDUP_VERTICAL;
            devmode->dmSize = 40;
            return result;
        };
        EXPECT_EQ(ThrownBy([this] { m_access.SetMsFeatureValue(10, 5421, DataModel); }),
                  "ExceptionIPrintCoreHelperWriteFailure MsDevmodeUsingIPrintCoreHelper::SetMsFeatureValue 464");
    }
    m_helper->keyword.clear();
    EXPECT_THROW(m_access.SetMsFeatureValue(10, 9, Raw), ExceptionMicrosoftDevmodeValueMappingFailed);
    EXPECT_EQ(m_helper->keyword, ""); // was not even asked
    EXPECT_EQ(m_devmode.Bytes(), before);
}

// The core driver rewrites the paper whenever it is asked; even when it asks back in between.
TEST_F(AskedSettings, LeaveThePaperAsItWas)
{
    DEVMODEW& devmode = *m_devmode.Get();
    const auto setPaper = [](DEVMODEW& paper, short number, WStringView name)
    {
        paper.dmPaperSize = number;
        paper.dmPaperWidth = static_cast<short>(number + 2000);
        paper.dmPaperLength = static_cast<short>(number + 3000);
        SetFixedText(paper.dmFormName, name);
    };
    const auto spoil = [&setPaper](DEVMODEW& paper)
    {
        setPaper(paper, 99, W("Spoilt"));
        paper.dmFields ^= 0x1000E | DM_COPIES;
        paper.dmSize = 40;
        paper.dmDriverExtra = 0xFFFF; // more than there is
    };
    m_helper->onGet = [&](PCSTR* option)
    {
        spoil(devmode);
        *option = "None";
        return S_OK;
    };
    HRESULT written = S_OK;
    m_helper->onSet = [&](DEVMODEW* copy)
    {
        spoil(*copy);
        EXPECT_TRUE(m_access.HasCurrentOption(10)); // the inner one neither keeps nor restores
        EXPECT_EQ(devmode.dmPaperSize, 99);
        return written;
    };
    const std::function<void()> questions[] = {
        [&] { EXPECT_EQ(m_access.GetMsFeatureValue(10, Raw), 1u); },
        [&] { EXPECT_TRUE(m_access.HasCurrentOption(10)); },
        [&] { EXPECT_NE(ThrownBy([&] { m_access.SetMsFeatureValue(10, 1, Raw); }), ""); },
        [&] { m_access.SetMsFeatureValue(10, 1, Raw); },
    };
    for (const DWORD fields :
         {DWORD{0}, DWORD{DM_PAPERSIZE | DM_DUPLEX}, DWORD{0x1000E}, DWORD{DM_FORMNAME | DM_COPIES}})
        for (const auto& ask : questions)
        {
            const std::ptrdiff_t at = &ask - questions;
            devmode.dmFields = fields;
            setPaper(devmode, 9, W("A4"));
            written = at == 2 ? E_FAIL : S_OK;
            ask();
            EXPECT_EQ(devmode.dmFields, fields ^ DM_COPIES) << at; // not the paper's
            EXPECT_EQ(devmode.dmPaperSize, 9) << at;
            EXPECT_EQ(devmode.dmPaperWidth, 2009) << at;
            EXPECT_EQ(devmode.dmPaperLength, 3009) << at;
            EXPECT_EQ(GetFixedText(devmode.dmFormName), W("A4")) << at;
            EXPECT_EQ(std::size_t{devmode.dmSize} + devmode.dmDriverExtra, m_devmode.Size()) << at;
        }
}

// The words that core drivers use, as they stand: the tables are not asked.
TEST(AskedKeywords, AreThoseOfTheCoreDrivers)
{
    constexpr MsDriverKind kPages = {0x200, 0x1000, 0x4};
    constexpr MsDriverKind kUnidrv = {0x80, 0x800, 0x8};
    constexpr MsDriverKind kXps = {0x400, 0x800, 0x8};
    using Options = std::vector<std::pair<const char*, std::uint32_t>>;
    const struct
    {
        MsDriverKind driver;
        std::uint32_t feature;
        const char* keyword;
        Options options; // the first one of a value is written for it
    } cases[] = {
        // clang-format off
        {kPostScript, 23, "%MetafileSpooling", {{"True", 1}, {"False", 0}}},
        {kUnidrv, 30, "%TextAsGraphics", {{"False", 1}, {"True", 0}}},
        {kPostScript, 3, "%Orientation", {{"Portrait", 1}, {"Landscape", 2}, {"RotatedLandscape", 3}}},
        {kPages, 3, "PageOrientation", {{"RotatedLandscape", 3}}},
        {kUnidrv, 3, "Orientation", {{"PORTRAIT", 1}, {"LANDSCAPE_CC90", 2}}},
        {kXps, 3, "Orientation", {{"PORTRAIT", 1}}},
        {kPostScript, 10, "Duplex", {{"None", 1}, {"DuplexNoTumble", 2}, {"DuplexTumble", 3}}},
        {kUnidrv, 10, "Duplex", {{"NONE", 1}, {"HORIZONTAL", 3}, {"VERTICAL", 2}}},
        {kUnidrv, 19, "%PagePerSheet", {{"1", 0}, {"2", 1}, {"4", 2}, {"6", 3}, {"9", 4}, {"16", 5}, {"Booklet", 0}}},
        {kUnidrv, 20, "%PagePerSheet", {{"1", 0}, {"2", 0}, {"4", 0}, {"6", 0}, {"9", 0}, {"16", 0}, {"Booklet", 1}}},
        {kPostScript, 21, "%PageOrder", {{"FrontToBack", 0}, {"BackToFront", 1}}},
        {kPostScript, 24, "%OutputFormat", {{"Speed", 0}, {"Portability", 1}, {"EPS", 2}, {"Archive", 3}}},
        {kPostScript, 27, "%Mirroring", {{"False", 0}, {"True", 1}}},
        {kPages, 28, "%Negative", {{"False", 0}, {"True", 1}}},
        {kPostScript, 25, "%OutputPSLevel", {{"3", 3}, {"2", 2}, {"1", 1}}},
        {kPostScript, 26, "%PSErrorHandler", {{"True", 1}, {"False", 0}}},
        {kPostScript, 29, "%TTDownloadFormat", {{"Automatic", 0}, {"Outline", 1}, {"Bitmap", 2}, {"NativeTrueType", 3}}},
        {kPostScript, 8, "Resolution", {{"600x1200dpi", 0x025804B0}, {"1800x1800dpi", 0x07080708}}},
        {kUnidrv, 8, "Resolution", {{"Res600x600", 0x02580258}, {"Res2400x2400", 0x09600960}}},
        {kUnidrv, 31, "GraphicsMode", {{"HPGL2MODE", 0}, {"RASTERMODE", 1}}},
        {kUnidrv, 32, "TvlTrueTypeFontDlOption", {{"TTF_DOWNLOAD_AS_TRUETYPE", 0}, {"TTF_DOWNLOAD_AS_BITMAP", 1}, {"TTF_DOWNLOAD_NONE", 2}}},
        {kUnidrv, 33, "TvlHalftone", {{"TVL_NORMAL_HT", 0}, {"TVL_HIGH_CONTRAST_HT", 1}, {"TVL_HIGH_BRIGHT_HT", 2}}},
        {kUnidrv, 34, "ColorMode", {{"24bpp", 1}, {"Mono", 0}}},
        {kUnidrv, 35, "TvlEdgeToEdge", {{"EDGE_TO_EDGE_OFF", 0}, {"EDGE_TO_EDGE_ON", 1}}},
        // clang-format on
    };
    for (const auto& test : cases)
    {
        const TestDevmode devmode = MakeDevmode(708, 0);
        const ComPtr<ScriptedHelper> helper = MakeHelper(test.driver);
        helper->onSet = [](DEVMODEW*)
        {
            return S_OK;
        };
        Access access(test.driver, helper.Get(), devmode.Get(), devmode.Size());
        std::set<std::uint32_t> written;
        for (const auto& [option, value] : test.options)
        {
            SCOPED_TRACE(std::to_string(test.feature) + " " + option);
            helper->Answer(option);
            EXPECT_EQ(access.GetMsFeatureValue(test.feature, Raw), value);
            EXPECT_EQ(helper->keyword, test.keyword);
            if (!written.insert(value).second)
                continue;
            access.SetMsFeatureValue(test.feature, value, Raw);
            EXPECT_EQ(helper->keyword + "=" + helper->setOption, std::string(test.keyword) + "=" + option);
        }
    }
}

} // namespace
