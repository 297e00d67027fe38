// The printer's papers: the list that a devmode carries, and the devmode that is made to agree with it.
#include <windows.h>

#include <iterator>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include <tvcore/datamodelids.h>
#include <tvutil/bytewriter.h>
#include <tvutil/operatingsystem.h>

#include "complugins/devicepaperlist.h"
#include "complugins/fixedtext.h"
#include "complugins/papermatching.h"
#include "tests/common/oemdevmodebytes.h"

namespace
{

using namespace OemDevmodeBytes;
using Forms = std::vector<FormsInfoRecord>;

bool AreSame(const FormsInfoRecord& left, const FormsInfoRecord& right)
{
    return memcmp(&left, &right, sizeof(left)) == 0;
}

Forms NumberedForms(int count, std::size_t nameLength)
{
    Forms forms;
    for (int at = 0; at < count; ++at)
        forms.push_back(MakeForm(at + 1, WideString(nameLength, W('x')), 0x12345 + at, -at, 25001 + at % 7));
    return forms;
}

TEST(PaperLists, HoldWhatFitsAndAlwaysTheOwnForm)
{
    // Kept in order from the first; the own form may stand behind those.
    // 2396 bytes behind the header: 20 and the name a form.
    constexpr std::tuple<int, std::size_t, std::size_t, std::size_t, bool> kCases[] = {
        {0, 0, 0, 0, false},      {119, 0, 119, 119, false}, {120, 0, 200, 119, false}, {120, 0, 118, 119, false},
        {120, 0, 119, 118, true}, {500, 63, 0, 16, false},   {500, 63, 15, 16, false},  {500, 63, 499, 15, true},
    };
    for (const auto& [count, nameLength, own, kept, isOwnBehind] : kCases)
    {
        SCOPED_TRACE(std::to_string(count) + " forms, own " + std::to_string(own));
        const Forms forms = NumberedForms(count, nameLength);
        Forms expected(forms.begin(), forms.begin() + static_cast<std::ptrdiff_t>(kept));
        if (isOwnBehind)
            expected.push_back(forms[own]);
        const ByteBuffer bytes = DevicePaperList::Write(forms, own);
        EXPECT_LE(bytes.size(), DevicePaperList::kMaxSize);
        const auto read = DevicePaperList::Read(bytes.bytes());
        ASSERT_TRUE(read);
        EXPECT_TRUE(std::equal(read->begin(), read->end(), expected.begin(), expected.end(), AreSame));
    }
    // A record whose name nobody terminated, as the last thing in its memory.
    Forms unterminated(1);
    std::fill(std::begin(unterminated[0].name), std::end(unterminated[0].name), W('y'));
    EXPECT_EQ(DevicePaperList::Read(DevicePaperList::Write(unterminated, 0).bytes())->front().GetName(),
              WideString(63, W('y')));
}

TEST(PaperLists, ThatContradictThemselvesAreNotBelieved)
{
    const ByteBuffer whole = DevicePaperList::Write(NumberedForms(3, 7), 0);
    for (std::size_t size = 0; size < whole.size(); ++size)
    {
        const ByteBuffer cut(whole.data(), size);
        EXPECT_FALSE(DevicePaperList::Read(cut.bytes())) << size;
    }
    ByteBuffer longer = whole;
    longer.resize(whole.size() + 1);
    EXPECT_FALSE(DevicePaperList::Read(longer.bytes()));
    for (const std::size_t at : {0U, 2U, 10U}) // format, count, length of the first name
    {
        ByteBuffer changed = DevicePaperList::Write(NumberedForms(1, 63), 0);
        ByteWriter(changed.bytes().subspan(at)).U16(64);
        changed.resize(changed.size() + sizeof(WCHAR));
        EXPECT_FALSE(DevicePaperList::Read(changed.bytes())) << at;
    }
}

constexpr const WCHAR* kUsual = nullptr; // the country's name

struct Paper
{
    DWORD fields;
    int number;
    int width;
    int length;
    const WCHAR* name;
};

std::string TextOf(const Paper& paper)
{
    return std::to_string(paper.number) + ", " + std::to_string(paper.width) + " x " + std::to_string(paper.length) +
           ", \"" + CXString(paper.name).ToUtf8() + "\", fields " + std::to_string(paper.fields);
}

const Forms& TestForms()
{
    static const Forms forms = {
        MakeForm(256, W("Custom"), 2159, 3000, DataModelIds::PageSizeDriverCustom),
        MakeForm(1, W("Letter"), 2159, 2794, DataModelIds::PageSizeStandard),
        MakeForm(3, W("Tabloid"), 2794, 4318, DataModelIds::PageSizeDriverForm),
        MakeForm(334, W("Ledger"), 2794, 4318, DataModelIds::PageSizeDriverForm),
        MakeForm(17, W("11x17"), 2794, 4318, DataModelIds::PageSizeStandard),
        MakeForm(9, W("A4"), 2100, 2970, DataModelIds::PageSizeStandard),
        MakeForm(9, W("A4 again"), 2101, 2971, DataModelIds::PageSizeStandard),
        MakeForm(8, W("A3"), 2970, 4200, DataModelIds::PageSizeStandard),
        MakeForm(330, W("Oficio"), 2150, 3400, DataModelIds::PageSizeDriverForm),
        MakeForm(328, W("Driver's A4"), 2100, 2970, DataModelIds::PageSizeDriverForm),
        MakeForm(329, W("House A3"), 2970, 4200, DataModelIds::PageSizeUserForm),
        MakeForm(40000, W("Banner"), 2100, 50000, DataModelIds::PageSizeUnlisted),
        MakeForm(401, W("Roll"), 40000, 50000, DataModelIds::PageSizeUserForm),
        MakeForm(400, W("A name of more than thirty-one characters"), 900, 1800, DataModelIds::PageSizeUserForm),
    };
    return forms;
}

// Afterwards fields of 0 are those before.
constexpr DWORD kNumber = DM_PAPERSIZE;
constexpr DWORD kName = DM_FORMNAME;
constexpr DWORD kSize = DM_PAPERWIDTH | DM_PAPERLENGTH;

const std::tuple<const char*, Paper, bool, Paper> kMatchCases[] = {
    // By number: the first entry supplies the rest; the driver's own form of that size then supplies the number.
    {"number", {kNumber, 8, 1, 2, W("?")}, true, {0, 8, 2970, 4200, W("A3")}},
    {"number of a standard size with a driver's form", {kNumber, 9, 0, 0, W("?")}, true, {0, 328, 2100, 2970, W("A4")}},
    {"long name", {kNumber, 400, 0, 0, W("?")}, true, {0, 400, 900, 1800, W("A name of more than thirty-one ")}},
    {"number beyond 32767", {kNumber, 40000, 0, 0, W("?")}, true, {0, 40000, 2100, 50000, kUsual}},
    {"unknown number, known size", {kNumber, 7, 2150, 3400, W("?")}, true, {0, 330, 2150, 3400, W("Oficio")}},
    {"unknown number and size", {kNumber, 7, 30, 20, W("?")}, false, {0, 7, 20, 30, kUsual}},
    {"Tabloid's number", {kNumber, 3, 2100, 2970, W("?")}, true, {0, 328, 2100, 2970, W("Driver's A4")}},
    {"user's number, driver's size", {kNumber, 256, 2100, 2970, W("?")}, true, {0, 328, 2100, 2970, W("Driver's A4")}},
    {"user-defined number, its size", {kNumber, 256, 2159, 3000, W("?")}, true, {0, 256, 2159, 3000, kUsual}},
    {"high number, other's size", {kNumber, 10000, 2159, 2794, W("?")}, true, {0, 10000, 2159, 2794, kUsual}},
    {"below the high numbers", {kNumber, 9999, 2159, 2794, W("?")}, true, {0, 9999, 2159, 2794, W("Letter")}},
    // By name, ignoring case.
    {"name", {kName, 0, 1, 2, W("LETTER")}, true, {0, 1, 2159, 2794, W("LETTER")}},
    {"name of a standard size with a driver's form", {kName, 0, 0, 0, W("a4")}, true, {0, 328, 2100, 2970, W("a4")}},
    {"user-defined name, its size", {kName, 5, 3000, 2159, W("custom")}, true, {0, 5, 2159, 3000, W("custom")}},
    {"user-defined name, driver's size", {kName, 5, 2150, 3400, W("Custom")}, true, {0, 330, 2150, 3400, W("Oficio")}},
    // A custom paper must not go on by the name of the country's usual one.
    {"custom paper's name", {kName, 9, 1, 2, W("banner")}, true, {kNumber, 40000, 2100, 50000, kUsual}},
    {"a cut name",
     {kName, 9, 1, 2, W("A NAME of more than thirty-one ")},
     true,
     {0, 400, 900, 1800, W("A NAME of more than thirty-one ")}},
    {"user-defined name and number", {kName, 256, 3000, 2159, W("custom")}, true, {kSize, 256, 2159, 3000, kUsual}},
    {"unknown name, own size", {kName | kSize, 256, 1000, 1500, W("?")}, false, {kSize, 256, 1000, 1500, kUsual}},
    {"another's high number", {kName, 40000, 2159, 2794, W("?")}, true, {kSize, 40000, 2159, 2794, kUsual}},
    // By size alone: the number follows a driver's form, the name the driver's form or else the first.
    {"size", {kSize, 5, 2159, 2794, W("?")}, true, {0, 5, 2159, 2794, W("Letter")}},
    {"driver's size", {kSize, 5, 2970, 2100, W("?")}, true, {0, 328, 2100, 2970, W("Driver's A4")}},
    {"Tabloid's size", {kSize, 5, 2794, 4318, W("?")}, true, {0, 334, 2794, 4318, W("Tabloid")}},
    {"size beyond 32767", {kSize, 5, 40000, 50000, W("?")}, true, {0, 5, 40000, 50000, W("Roll")}},
    {"no field at all", {0, 256, 2159, 2794, W("?")}, true, {0, 256, 2159, 2794, kUsual}},
    // Widths are swapped as signed numbers.
    {"length beyond 32767", {kSize, 5, 50000, 2100, W("?")}, false, {0, 5, 50000, 2100, kUsual}},
};
// clang-format on

void Write(const Paper& paper, DEVMODEW& devmode)
{
    devmode.dmFields = paper.fields;
    devmode.dmPaperSize = static_cast<short>(paper.number);
    devmode.dmPaperWidth = static_cast<short>(paper.width);
    devmode.dmPaperLength = static_cast<short>(paper.length);
    SetFixedText(devmode.dmFormName, CXString(paper.name));
}

Paper Read(const DEVMODEW& devmode)
{
    return {devmode.dmFields, static_cast<WORD>(devmode.dmPaperSize), static_cast<WORD>(devmode.dmPaperWidth),
            static_cast<WORD>(devmode.dmPaperLength), devmode.dmFormName};
}

const WCHAR* UsualName()
{
    return OperatingSystem::UseEnglishPaperSizes() ? W("Letter") : W("A4");
}

TEST(PaperOfDevmode, AgreesWithTheFirstFormThatFits)
{
    for (const auto& [name, before, isMatched, after] : kMatchCases)
    {
        SCOPED_TRACE(name);
        DEVMODEW devmode{};
        Write(before, devmode);
        EXPECT_EQ(MatchPaperWithForms(devmode, TestForms()), isMatched);
        Paper expected = after;
        if (expected.fields == 0)
            expected.fields = before.fields;
        if (expected.name == kUsual)
            expected.name = UsualName();
        EXPECT_EQ(TextOf(Read(devmode)), TextOf(expected));
        if (after.name != kUsual)
            continue;
        (void)MatchPaperWithForms(devmode, TestForms());
        EXPECT_EQ(TextOf(Read(devmode)), TextOf(expected)) << "the second time";
    }
}

} // namespace
