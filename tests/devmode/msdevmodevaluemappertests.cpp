// The data model's paper and colour management, written into a devmode.
#include "complugins/msdevmodevaluemapper.h"

#include <gtest/gtest.h>

#include "complugins/fixedtext.h"
#include "complugins/msdevicecapabilities.h"
#include "msdevmodesamples.h"
#include "tests/common/oemdevmodebytes.h"
#include "tests/common/testprinter.h"

namespace
{

using namespace DataModelIds;
using namespace MsDevmodeSamples;
using Bytes = OemDevmodeBytes::Bytes;

constexpr DWORD kSize = DM_PAPERSIZE;
constexpr DWORD kName = DM_FORMNAME;
constexpr DWORD kBoth = DM_PAPERWIDTH | DM_PAPERLENGTH;
constexpr DWORD kOther = DM_COPIES; // no business of the paper

TestDevmode MakePaper(DWORD fields, WStringView application = {})
{
    OemDevmodeBytes::Entries entries;
    if (!application.empty())
        entries.emplace_back(OemDevmodeFormat::kApplicationNameKey, OemDevmodeBytes::Text(application));
    TestDevmode devmode{OemDevmodeBytes::Make(CoreDriverLayout::PostScript, entries)};
    devmode.Get()->dmFields = fields | kOther;
    devmode.Get()->dmPaperSize = 1;
    devmode.Get()->dmPaperWidth = 2159;
    devmode.Get()->dmPaperLength = 2794;
    SetFixedText(devmode.Get()->dmFormName, W("Letter"));
    return devmode;
}

class PaperWrites : public testing::Test
{
protected:
    void Write(const TestDevmode& devmode, PageSizeTypeEnum type, std::uint32_t paperId, LONG width, LONG length,
               const WCHAR* name, bool reconcile = false)
    {
        MsDevmodeValueMapper(m_printer, devmode.Get(), m_capabilities)
            .SetMsPaperSizeFeaturesCurrentValues(type, paperId, width, length, name, reconcile);
    }

    HANDLE m_printer = this; // nobody asks it unless the paper is reconciled
    MSDeviceCapabilities m_capabilities;
};

TEST_F(PaperWrites, SayThePaperInTheFieldsOfItsKind)
{
    struct Case
    {
        const char* what = "";
        DWORD before = 0;
        PageSizeTypeEnum type = PageSizeStandard;
        std::uint32_t paperId = 0;
        LONG width = 0;
        LONG length = 0;
        const WCHAR* name = W("");
        DWORD after = 0;
        int paper = 0;
        const WCHAR* formName = W("");
        const WCHAR* application = W("");
    };
    // The devmode has paper 1, "Letter", 2159 by 2794.
    constexpr const WCHAR* kReader = W("Acrobat.exe");
    const Case cases[] = {
        // clang-format off
        {"a form",                         kSize,         PageSizeStandard,     9,   2100, 2970, W("A4"),     kSize, 9,   W("A4")},
        {"no dimensions",                  kSize,         PageSizeStandard,     9,   0,    0,    W("A4"),     kSize, 9,   W("A4")},
        {"no name",                        kName,         PageSizeStandard,     9,   2100, 2970, W(""),       kSize, 9,   W("Letter")},
        {"where the name counts",          kName,         PageSizeExtended,     9,   2100, 2970, W("A4"),     kName, 9,   W("A4")},
        {"where name and number count",    kName | kSize, PageSizeStandard,     9,   2100, 2970, W("A4"),     kSize, 9,   W("A4")},
        {"where nothing counts",           0,             PageSizeUserForm,     9,   2100, 2970, W("A4"),     kSize, 9,   W("A4")},
        {"where the dimensions count",     kBoth,         PageSizeDriverForm,   9,   2100, 2970, W("A4"),     kSize, 9,   W("A4")},
        {"the size it has",                kBoth,         PageSizeStandard,     9,   2159, 2794, W("A4"),     kBoth, 1,   W("Letter")},
        {"half of the size it has",        kBoth,         PageSizeStandard,     9,   2159, 2795, W("A4"),     kSize, 9,   W("A4")},
        {"the size, but it does not count", DM_PAPERWIDTH, PageSizeStandard,    9,   2159, 2794, W("A4"),     kSize, 9,   W("A4")},
        {"a custom size",                  kSize,         PageSizeUnlisted,     300, 1000, 2000, W("Mine"),   kSize | kBoth, 256, W("Mine")},
        {"a custom size without a name",   kName,         PageSizeUnlisted,     0,   1000, 2000, W(""),       kName | kBoth, 256, W("")},
        {"the driver's custom size",       kSize,         PageSizeDriverCustom, 300, 1000, 2000, W("Mine"),   kSize, 300, W("Mine"), W("word.exe")},
        {"the same, nobody's devmode",     kSize,         PageSizeDriverCustom, 300, 1000, 2000, W("Mine"),   kSize, 300, W("Mine")},
        {"the same for a reader",          kName,         PageSizeDriverCustom, 300, 1000, 2000, W("Mine"),   kBoth, 300, W("Mine"), kReader},
        {"the same for its 32-bit version", kSize,        PageSizeDriverCustom, 300, 1000, 2000, W("Mine"),   kBoth, 300, W("Mine"), W("AcroRd32.exe")},
        {"the same for the distiller",     kSize,         PageSizeDriverCustom, 300, 1000, 2000, W("Mine"),   kBoth, 300, W("Mine"), W("acrodist.exe")},
        {"the size it has for a reader",   kBoth | kSize, PageSizeDriverCustom, 300, 2159, 2794, W("Mine"),   kBoth | kSize, 1, W("Letter"), kReader},
        {"31 characters",                  kSize,         PageSizeStandard,     9,   2100, 2970, W("1234567890123456789012345678901"), kSize, 9, W("1234567890123456789012345678901")},
        // clang-format on
    };
    for (const Case& test : cases)
    {
        SCOPED_TRACE(test.what);
        const TestDevmode devmode = MakePaper(test.before, test.application);
        Write(devmode, test.type, test.paperId, test.width, test.length, test.name);
        const DEVMODEW& written = *devmode.Get();
        EXPECT_EQ(written.dmFields, test.after | kOther);
        EXPECT_EQ(written.dmPaperSize, test.paper);
        EXPECT_EQ(written.dmPaperWidth, test.width);
        EXPECT_EQ(written.dmPaperLength, test.length);
        EXPECT_EQ(CXString(GetFixedText(written.dmFormName)), test.formName);
    }
}

TEST_F(PaperWrites, ThatCannotBeLeaveTheDevmodeAlone)
{
    const std::string size = "ExceptionInvalidPaperSizeData MsDevmodeValueMapper::SetMsPaperSizeFeaturesCurrentValues";
    const std::string name = "ExceptionInvalidFormName MsDevmodeValueMapper::SetMsPaperSizeFeaturesCurrentValues 305";
    const WCHAR* const k32 = W("12345678901234567890123456789012");
    const struct
    {
        std::uint32_t paperId;
        LONG width;
        LONG length;
        const WCHAR* name;
        std::string thrown;
    } cases[] = {
        {0, 2159, 0, W(""), size + " 293"},   {0, 0, 2159, W("A4"), size + " 293"}, {0, 0, 0, k32, size + " 293"},
        {9, 2100, 0, W(""), size + " 299"},   {9, 0, 2970, W(""), size + " 299"},   {9, 2100, 2970, k32, name},
        {9, 65536 + 2159, 2794, W(""), size}, {9, 2159, 32768, W(""), size},        {9, -1, 2794, W(""), size},
        {65536 + 9, 2100, 2970, W(""), size},
    };
    for (const auto& test : cases)
        for (const PageSizeTypeEnum type : {PageSizeStandard, PageSizeUnlisted, PageSizeDriverCustom})
        {
            const TestDevmode devmode = MakePaper(kBoth);
            const auto before = devmode.Bytes();
            const std::string thrown =
                ThrownBy([&] { Write(devmode, type, test.paperId, test.width, test.length, test.name, true); });
            EXPECT_EQ(thrown.substr(0, test.thrown.size()), test.thrown) << test.width << " x " << test.length;
            EXPECT_EQ(devmode.Bytes(), before);
        }
    const TestDevmode small(188, 0, 188); // ends within what a paper needs to be reconciled
    const auto before = small.Bytes();
    Write(small, PageSizeStandard, 9, 2100, 2970, W("A4"), true);
    EXPECT_EQ(small.Bytes(), before);
}

// Even when nothing was written.
TEST_F(PaperWrites, AreReconciledWhenThatIsWanted)
{
    const TestPrinter printer(0x200);
    m_printer = printer.Handle();
    m_capabilities.Initialize(m_printer, MSDeviceCapabilities::Context::Spooler);
    const FormsInfoRecord forms[] = {OemDevmodeBytes::MakeForm(1, W("Letter"), 2159, 2794, PageSizeStandard),
                                     OemDevmodeBytes::MakeForm(17, W("11x17"), 2794, 4318, PageSizeStandard)};
    const auto make = [&forms](DWORD fields)
    {
        TestDevmode devmode{
            OemDevmodeBytes::Make(CoreDriverLayout::PostScript, {{1, OemDevmodeBytes::MakeState(true, forms)}})};
        devmode.Get()->dmFields = fields;
        devmode.Get()->dmPaperSize = DMPAPER_TABLOID;
        devmode.Get()->dmPaperWidth = 2794;
        devmode.Get()->dmPaperLength = 4318;
        return devmode;
    };
    for (const bool reconcile : {false, true})
    {
        const TestDevmode same = make(kBoth | kSize);
        Write(same, PageSizeStandard, 17, 2794, 4318, W("Other"), reconcile);
        EXPECT_EQ(same.Get()->dmPaperSize, reconcile ? 17 : DMPAPER_TABLOID);
        const TestDevmode other = make(kSize);
        Write(other, PageSizeStandard, 1, 0, 0, W("Other"), reconcile);
        EXPECT_EQ(other.Get()->dmPaperLength, reconcile ? 2794 : 0);
        EXPECT_EQ(CXString(GetFixedText(other.Get()->dmFormName)), reconcile ? W("Letter") : W("Other"));
    }
}

} // namespace
