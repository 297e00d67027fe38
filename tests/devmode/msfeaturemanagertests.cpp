// A devmode's core driver settings and paper, brought into the data model.
#include "complugins/msfeaturemanager.h"

#include <map>
#include <new>

#include <gtest/gtest.h>

#include <tvutil/utilitiesdllperthreadstorage.h>

#include "complugins/fixedtext.h"
#include "complugins/msdevicecapabilities.h"
#include "corehelper.h"
#include "msdevmodesamples.h"
#include "tests/common/oemdevmodebytes.h"
#include "tests/common/testprinter.h"

namespace
{

using namespace MsDevmodeSamples;

constexpr ULONGLONG kCapability = 0xE02; // PostScript, with a second kind of the same orientation

// Keeps what it is told.
class RecordingDataModel final : public DataModelContext
{
public:
    explicit RecordingDataModel(DEVMODEW* devmode) : m_devmode(devmode)
    {
    }

    std::map<std::int32_t, std::int32_t> options;
    std::map<std::int32_t, std::int32_t> integers;
    std::vector<PageSize> papers;
    bool isOutOfMemory = false;

    DEVMODEW* GetDevmode() override
    {
        return m_devmode;
    }
    void SetOptionValue(std::int32_t feature, std::int32_t valueId) override
    {
        ExpectContext();
        if (isOutOfMemory)
            throw std::bad_alloc();
        EXPECT_TRUE(options.emplace(feature, valueId).second) << feature;
    }
    void SetIntegerValue(std::int32_t feature, std::int32_t value) override
    {
        ExpectContext();
        EXPECT_TRUE(integers.emplace(feature, value).second) << feature;
    }
    void SetPageSize(const PageSize& pageSize) override
    {
        ExpectContext();
        papers.push_back(pageSize);
    }

private:
    static void ExpectContext()
    {
        const BasicExecutionContext* const context = UtilitiesDllPerThreadStorage::GetExecutionContextStack().Top();
        ASSERT_NE(context, nullptr);
        EXPECT_EQ(context->id, 31555);
    }

    DEVMODEW* m_devmode;
};

class FeatureTransfers : public testing::Test
{
protected:
    FeatureTransfers()
    {
        m_capabilities.Initialize(m_printer.Handle(), MSDeviceCapabilities::Context::Spooler);
        DEVMODEW& fields = *m_devmode.Get();
        fields.dmFields = kClaims;
        fields.dmOrientation = DMORIENT_LANDSCAPE;
        fields.dmScale = 50;
        fields.dmCopies = 3;
        fields.dmPrintQuality = fields.dmYResolution = 600;
        fields.dmDuplex = DMDUP_HORIZONTAL;
        fields.dmTTOption = DMTT_BITMAP; // no row
        fields.dmCollate = DMCOLLATE_TRUE;
        fields.dmColor = DMCOLOR_COLOR;
        fields.dmICMMethod = DMICMMETHOD_DRIVER;
        fields.dmICMIntent = DMICM_CONTRAST;
        fields.dmPaperWidth = 2102;
        fields.dmPaperLength = 2968;
        fields.dmPaperSize = 70;
    }

    static ComPtr<CoreHelper> MakeHelper()
    {
        PrinterModel product;
        product.capability = kCapability;
        product.resolutions = {{600, 600, {}}};
        return CoreHelper::Make(product);
    }

    static constexpr DWORD kClaims = DM_ORIENTATION | DM_SCALE | DM_COPIES | DM_PRINTQUALITY | DM_YRESOLUTION |
                                     DM_TTOPTION | DM_COLLATE | DM_COLOR | DM_ICMMETHOD | DM_ICMINTENT;

    void Transfer(RecordingDataModel& model, IPrintCoreHelper* helper = nullptr)
    {
        MsFeatureManager(m_printer.Handle(), model, helper, m_capabilities)
            .SetCurrentMsPublicAndPrivateDmSettingsInDataModel();
        EXPECT_EQ(UtilitiesDllPerThreadStorage::GetExecutionContextStack().Depth(), 0u);
    }

    TestPrinter m_printer{kCapability};
    MSDeviceCapabilities m_capabilities;
    const FormsInfoRecord m_forms[4] = {
        OemDevmodeBytes::MakeForm(301, W("A name of more than thirty-one characters"), 900, 1800, 25004),
        OemDevmodeBytes::MakeForm(1, W("Letter"), 2159, 2794, 25001),
        OemDevmodeBytes::MakeForm(9, W("A4"), 2100, 2970, 25001),
        OemDevmodeBytes::MakeForm(300, W("My A4"), 2100, 2970, 25004)};
    const TestDevmode m_devmode{
        OemDevmodeBytes::Make(CoreDriverLayout::PostScript, {{1, OemDevmodeBytes::MakeState(true, m_forms)}})};
};

TEST_F(FeatureTransfers, BringEverySettingThatIsShownAndClaimed)
{
    const std::map<std::int32_t, std::int32_t> options = {
        {3, 5011},  {6, 5410},  {8, 5023},  {9, 5970},  {15, 5072}, {16, 5092},
        {21, 5120}, {23, 5150}, {24, 5160}, {26, 5180}, {27, 5190}, {29, 5210},
    };
    const std::map<std::int32_t, std::int32_t> integers = {{4, 50}, {5, 3}};
    const ComPtr<CoreHelper> helper = MakeHelper();
    for (IPrintCoreHelper* const asked :
         {static_cast<IPrintCoreHelper*>(nullptr), static_cast<IPrintCoreHelper*>(helper.Get())})
    {
        const auto before = m_devmode.Bytes();
        RecordingDataModel model(m_devmode.Get());
        Transfer(model, asked);
        EXPECT_EQ(model.options, options); // neither the language level 0 nor the fonts as bitmaps: no values
        EXPECT_EQ(model.integers, integers);
        ASSERT_EQ(model.papers.size(), 1u); // to half a millimetre
        EXPECT_EQ(model.papers[0].paperId, 9);
        EXPECT_EQ(model.papers[0].type, DataModelIds::PageSizeStandard);
        EXPECT_EQ(model.papers[0].name, W("A4"));
        EXPECT_EQ(model.papers[0].length, Dimension(Number(297), Dimension::Millimeters));
        EXPECT_TRUE(
            std::equal(before.begin() + sizeof(DEVMODEW), before.end(), m_devmode.Bytes().begin() + sizeof(DEVMODEW)));
        for (const auto& [flag, feature] : {std::pair<DWORD, int>{DM_ORIENTATION, 3},
                                            {DM_PRINTQUALITY, 8},
                                            {DM_YRESOLUTION, 8},
                                            {DM_COPIES, 5},
                                            {DM_ICMINTENT, 16}})
        {
            m_devmode.Get()->dmFields = kClaims & ~flag;
            RecordingDataModel others(m_devmode.Get());
            Transfer(others, asked);
            EXPECT_EQ(others.options.count(feature) + others.integers.count(feature), 0u) << feature;
            EXPECT_EQ(others.options.size() + others.integers.size(), 13u) << feature;
        }
        m_devmode.Get()->dmFields = kClaims;
    }
}

// What the devmode does not claim may be left over from another paper.
TEST_F(FeatureTransfers, GoByWhatTheDevmodeClaimsOfItsPaper)
{
    constexpr DWORD kSize = DM_PAPERWIDTH | DM_PAPERLENGTH;
    const struct
    {
        DWORD fields;
        short number;
        const WCHAR* name;
        int form; // -1 for none
    } cases[] = {
        {DM_PAPERSIZE, 1, W("A4"), 1},
        {DM_PAPERSIZE | DM_FORMNAME | kSize, 1, W("A4"), 1},
        {DM_PAPERSIZE, 70, W("A4"), -1},
        {DM_FORMNAME, 9, W("letter"), 1},
        {DM_FORMNAME | kSize, 1, W("Letter"), 9},
        {DM_FORMNAME | kSize, 1, W("my a4"), 300},
        {DM_FORMNAME, 9, W("A name of more than thirty-one characters"), 301},
        {kSize, 1, W("Letter"), 9},
        {kSize, 300, W("My A4"), 9},
        {0, 300, W("Letter"), 300},
        {DM_PAPERSIZE | kSize, 256, W("No"), 9},
        {DM_PAPERWIDTH, 1, W("Letter"), -1},
    };
    DEVMODEW& devmode = *m_devmode.Get();
    for (const auto& test : cases)
    {
        devmode.dmFields = test.fields;
        devmode.dmPaperSize = test.number; // the dimensions are those of A4
        SetFixedText(devmode.dmFormName, test.name);
        RecordingDataModel model(&devmode);
        Transfer(model);
        EXPECT_EQ(model.papers.empty() ? -1 : model.papers[0].paperId, test.form)
            << test.fields << ", number " << test.number;
    }
}

TEST_F(FeatureTransfers, EndWithWhatTheDataModelThrows)
{
    RecordingDataModel model(m_devmode.Get());
    model.isOutOfMemory = true;
    EXPECT_THROW(Transfer(model), std::bad_alloc);
    EXPECT_EQ(UtilitiesDllPerThreadStorage::GetExecutionContextStack().Depth(), 0u);
}

} // namespace
