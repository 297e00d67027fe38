// The forms of a printer: the spooler's, and those that only the driver knows, however it answers.
#include <windows.h>

#include <array>
#include <tuple>

#include <gtest/gtest.h>

#include <tvutil/cforms.h>
#include <tvutil/exceptions.h>

#include "tests/common/testprinter.h"
#include "tests/tvutil/paperssample.h"

namespace
{

constexpr int kRefusal = -1;
constexpr int kTooMany = 0x10001;

// How many papers the driver announces and brings: their numbers, sizes and names.
using Script = std::array<int, 6>;

class Forms : public testing::Test
{
protected:
    // What is found for a paper number; a record of zeros when nothing is.
    [[nodiscard]] CFormRecord Find(DWORD paperNumber, const Script& script) const
    {
        CXString text;
        for (const int count : script)
            text += CXString::FromInteger(count) + W(" ");
        SetEnvironmentVariableW(paperssample::kVariable, text.c_str());
        CFormRecord form;
        const bool isFound = CForms(m_printer.Handle()).GetFormW(paperNumber, form);
        SetEnvironmentVariableW(paperssample::kVariable, nullptr);
        EXPECT_EQ(isFound, form.paperNumber != 0);
        return form;
    }

    TestPrinter m_printer{TestPrinter::SetUp{{}, {}, {}, "papers_sample.dll"}};
};

TEST_F(Forms, OfTheSpoolerGoByTheirPlaceInItsList)
{
    const CFormRecord a4 = Find(9, {});
    EXPECT_EQ(a4.paperNumber, 9u);
    EXPECT_EQ(a4.flags, FORM_BUILTIN);
    EXPECT_EQ(a4.name, W("A4"));
    EXPECT_EQ(a4.width, 210'000);
    EXPECT_EQ(a4.length, 297'000);
    for (const DWORD number : {0u, 300u, 0xFFFFu, 0xFFFFFFFFu})
        EXPECT_EQ(Find(number, {}).paperNumber, 0u) << number;
}

TEST_F(Forms, OfTheDriverAreReadWithinWhatItBrings)
{
    // With the last paper that is found, 0 for none.
    constexpr std::tuple<const char*, Script, DWORD> kCases[] = {
        {"as drivers do", {70, 70, 70, 70, 70, 70}, 369},
        {"fewer than announced", {70, 66, 70, 69, 70, 70}, 365},
        {"more, within reason", {70, 326, 70, 326, 70, 326}, 625},
        {"more than there is room for", {70, 327, 70, 327, 70, 327}, 0},
        {"more than there are numbers", {kTooMany, 70, 70, 70, 70, 70}, 0},
        {"too few sizes", {70, 70, 66, 66, 70, 70}, 365},
        {"too few names", {70, 70, 70, 70, 70, 66}, 365},
        {"a refusal at first", {kRefusal, 70, 70, 70, 70, 70}, 0},
        {"no sizes", {70, 70, kRefusal, kRefusal, 70, 70}, 0},
        {"no names", {70, 70, 70, 70, 70, kRefusal}, 0},
    };
    for (const auto& [what, script, lastFound] : kCases)
    {
        SCOPED_TRACE(what);
        const DWORD last = lastFound == 0 ? 303 : lastFound;
        const CFormRecord form = Find(last, script);
        EXPECT_EQ(Find(last + 1, script).paperNumber, 0u);
        EXPECT_EQ(form.paperNumber, lastFound);
        if (lastFound == 0)
            continue;
        EXPECT_EQ(form.flags, FORM_PRINTER);
        EXPECT_EQ(form.width, static_cast<LONG>(last - 300) * 1'000);
        EXPECT_EQ(form.length, static_cast<LONG>(last - 300) * 2'000);
        EXPECT_EQ(form.name, CXString(WideString(64, W('p')))) << "not terminated";
        EXPECT_EQ(Find(303, script).name, W("ppp"));
    }
}

TEST(FormsOfNoPrinter, AreAFailure)
{
    CFormRecord form;
    EXPECT_THROW(CForms(nullptr).GetFormW(9, form), ExceptionPrinterFailure);
    EXPECT_EQ(form.paperNumber, 0u);
}

} // namespace
