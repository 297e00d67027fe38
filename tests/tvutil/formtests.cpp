// The forms of a printer: the spooler's, and those that only the driver knows, however it answers.
#include <windows.h>

#include <algorithm>
#include <array>
#include <tuple>

#include <gtest/gtest.h>

#include <tvutil/cforms.h>
#include <tvutil/exceptions.h>

#include "tests/common/scriptedconfiguration.h"
#include "tests/common/testprinter.h"

namespace
{

constexpr int kRefusal = -1;
constexpr int kTooMany = 0x10001;

// How many papers the driver announces and brings: their numbers, sizes and names.
using Script = std::array<int, 6>;
Script g_script = {};

// Paper n, from 0 on, is number 300 + n, of n by 2n millimetres; its name is n times 'p', at most all of its room.
void PutPaper(WORD capability, void* output, std::size_t paper)
{
    constexpr std::size_t kNameLength = 64;
    const auto millimeters = static_cast<LONG>(paper);
    if (capability == DC_PAPERS)
        static_cast<WORD*>(output)[paper] = static_cast<WORD>(300 + paper);
    else if (capability == DC_PAPERSIZE)
        static_cast<POINTL*>(output)[paper] = {millimeters * 10, millimeters * 20};
    else
        std::fill_n(static_cast<WCHAR*>(output) + paper * kNameLength, std::min(paper, kNameLength), W('p'));
}

DWORD Answer(WORD capability, LPVOID output)
{
    constexpr WORD kAsked[] = {DC_PAPERS, DC_PAPERSIZE, DC_PAPERNAMES};
    const auto at = static_cast<std::size_t>(std::find(std::begin(kAsked), std::end(kAsked), capability) - kAsked);
    if (at == std::size(kAsked))
        return static_cast<DWORD>(-1);
    const int announced = g_script[2 * at];
    const int brought = g_script[2 * at + 1];
    if (output == nullptr)
        return static_cast<DWORD>(announced);
    // Nobody could stop a driver that wrote many more than it had announced; this one only says so.
    constexpr int kWithinReason = 256;
    for (int paper = 0; paper < std::min(brought, announced + kWithinReason); ++paper)
        PutPaper(capability, output, static_cast<std::size_t>(paper));
    return static_cast<DWORD>(brought);
}

class Forms : public testing::Test
{
protected:
    // What is found for a paper number; a record of zeros when nothing is.
    [[nodiscard]] CFormRecord Find(DWORD paperNumber, const Script& script) const
    {
        g_script = script;
        ScriptConfiguration(&Answer);
        CFormRecord form;
        const bool isFound = CForms(m_printer.Handle()).GetFormW(paperNumber, form);
        ScriptConfiguration(nullptr);
        EXPECT_EQ(isFound, form.paperNumber != 0);
        return form;
    }

    TestPrinter m_printer{TestPrinter::SetUp{{}, {}, {}, kScriptedConfigurationModule}};
};

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
