// The paper of a devmode, reconciled for an installed printer.
#include "complugins/reconciledevmodepapersize.h"

#include <tvcore/datamodelids.h>
#include <tvutil/datacache.h>
#include <tvutil/devicesettingsmanager.h>
#include <tvutil/exceptions.h>
#include <tvutil/operatingsystem.h>

#include "complugins/msdevicecapabilities.h"
#include "printerhandle.h"
#include "tests/common/oemdevmodebytes.h"
#include "tests/common/testdevmode.h"
#include "tests/tvui/installedprinter.h"

namespace
{

using namespace OemDevmodeBytes;

constexpr int kDriverPaper = 320;      // a paper that the driver of this model has, and the spooler has not
constexpr int kFirstDriverPaper = 119; // made one of them here, with the number before it
constexpr int kByCountry = -1;

using Reconciliation = InstalledPrinter;

TestDevmode MakeDevmode(WStringView application, int number)
{
    const FormsInfoRecord forms[] = {MakeForm(1, W("Letter"), 2159, 2794, DataModelIds::PageSizeStandard),
                                     MakeForm(9, W("A4"), 2100, 2970, DataModelIds::PageSizeStandard),
                                     MakeForm(17, W("11x17"), 2794, 4318, DataModelIds::PageSizeStandard),
                                     MakeForm(kDriverPaper, W("SRA3"), 3200, 4500, DataModelIds::PageSizeExtended)};
    TestDevmode devmode{Make(CoreDriverLayout::Unidrv, {{1, MakeState(true, forms)}, {2, Text(application)}})};
    devmode.Get()->dmFields = DM_PAPERSIZE | DM_FORMNAME | DM_COPIES;
    devmode.Get()->dmPaperSize = static_cast<short>(number);
    devmode.Get()->dmPaperWidth = 20;
    devmode.Get()->dmPaperLength = 10;
    return devmode;
}

TEST_F(Reconciliation, ReplacesDriversPapersOfOneProgramWhereTheSettingsAskForIt)
{
    constexpr struct
    {
        bool setting;
        WStringView application;
        int before;
        int after;
    } kCases[] = {
        {false, W("excel.exe"), kDriverPaper, kDriverPaper},
        {true, W("excel.exe"), kDriverPaper, kByCountry},
        {true, W("Excel.exe"), kDriverPaper, kDriverPaper},
        {true, W("excel.exe"), kFirstDriverPaper, kByCountry},
        {true, W("excel.exe"), kFirstDriverPaper - 1, kFirstDriverPaper - 1},
        {true, W("excel.exe"), DMPAPER_11X17, DMPAPER_11X17}, // the platform's own
        {true, W("excel.exe"), 65000, 65000},                 // compared unsigned; nobody has such a form
        {true, W("winword.exe"), DMPAPER_TABLOID, DMPAPER_11X17},
    };
    Install("tavlen-b7000-xps",
            [](nlohmann::json& model)
            {
                nlohmann::json form = model["forms"].back();
                for (const int number : {kFirstDriverPaper - 1, kFirstDriverPaper})
                {
                    form["paperId"] = number;
                    form["name"] = "Paper " + std::to_string(number);
                    model["forms"].push_back(form);
                }
            });
    const PrinterHandle handle = PrinterHandle::Open(m_name.ToUtf8(), PrinterHandle::Access::Administer);
    const Printer printer(handle.Get());
    MSDeviceCapabilities capabilities;
    capabilities.Initialize(handle.Get(), MSDeviceCapabilities::Context::Spooler);
    // Where the environment tells the country, both kinds of country are asked for.
    for (const WCHAR* const country : {W("en_US"), W("de_DE")})
    {
        SetEnvironmentVariableW(W("LC_ALL"), country);
        const int byCountry = OperatingSystem::IsMetricCountry() ? DMPAPER_A4 : DMPAPER_LETTER;
        for (const auto& test : kCases)
        {
            SCOPED_TRACE(CXString(country).ToUtf8() + ", row " + std::to_string(&test - kCases));
            AttributeBytesIndexedList settings;
            settings.SetAttributeBytes(DataModelIds::Feature::ReplaceDriverPaperInSpreadsheets,
                                       MakeBooleanAttributeBytes(test.setting));
            DeviceSettingsManager::Store(printer, settings);
            const int expected = test.after == kByCountry ? byCountry : test.after;
            const bool isKnown = expected != 65000 && expected != kFirstDriverPaper - 1; // on the devmode's own list
            const TestDevmode devmode = MakeDevmode(test.application, test.before);
            EXPECT_EQ(ReconcileDevmodePaperSize(handle.Get(), devmode.Get(), capabilities), isKnown);
            EXPECT_EQ(static_cast<WORD>(devmode.Get()->dmPaperSize), expected);
            EXPECT_EQ(devmode.Get()->dmFields, DWORD{DM_PAPERSIZE | DM_COPIES}) << "a number wins over a name";
            EXPECT_EQ(devmode.Get()->dmPaperWidth == 10, !isKnown) << "portrait, or the form's";
        }
    }
    SetEnvironmentVariableW(W("LC_ALL"), nullptr); // other tests do with any country
}

TEST_F(Reconciliation, NeedsAPrinterButNoListAndNoShortDevmode)
{
    Install("tavlen-b7000-xps");
    const Printer printer(m_name);
    ASSERT_TRUE(DataCache::RemovePrinter(m_name, HKEY_CURRENT_USER));
    MSDeviceCapabilities capabilities;
    capabilities.Initialize(printer.GetPrinterHandle(), MSDeviceCapabilities::Context::Application);
    const TestDevmode devmode = MakeDevmode({}, DMPAPER_TABLOID);
    EXPECT_FALSE(ReconcileDevmodePaperSize(printer.GetPrinterHandle(), devmode.Get(), capabilities));
    EXPECT_EQ(devmode.Get()->dmPaperSize, DMPAPER_11X17);
    EXPECT_EQ(devmode.Get()->dmPaperWidth, 20) << "without a list the size stays";

    const Bytes shortOne(203);
    const TestDevmode cut{shortOne};
    const auto before = cut.Bytes();
    EXPECT_FALSE(ReconcileDevmodePaperSize(printer.GetPrinterHandle(), cut.Get(), capabilities));
    EXPECT_FALSE(ReconcileDevmodePaperSize(printer.GetPrinterHandle(), nullptr, capabilities));
    EXPECT_EQ(cut.Bytes(), before);
    EXPECT_THROW(ReconcileDevmodePaperSize(nullptr, devmode.Get(), capabilities), ExceptionPrinterFailure);
}

} // namespace
