// Printer data and forms.
#include <cstring>
#include <map>

#include "tests/platform/spoolerfixture.h"
#include "tests/platform/wine.h"

using namespace spoolertests;

namespace
{

struct Data
{
    DWORD type = 0;
    std::vector<BYTE> bytes;

    bool operator==(const Data&) const = default;
};

DWORD Set(HANDLE printer, const WCHAR* key, const WCHAR* name, Data data)
{
    return SetPrinterDataExW(printer, key, name, data.type, data.bytes.data(), static_cast<DWORD>(data.bytes.size()));
}

// With a buffer of exactly the size that a first call reports.
Data Get(HANDLE printer, const WCHAR* key, const WCHAR* name)
{
    Data data;
    DWORD needed = 0;
    GetPrinterDataExW(printer, key, name, &data.type, nullptr, 0, &needed);
    data.bytes.resize(needed + 1); // a buffer, though there may be nothing to hold
    EXPECT_EQ(GetPrinterDataExW(printer, key, name, &data.type, data.bytes.data(), needed, &needed), ERROR_SUCCESS);
    data.bytes.resize(needed);
    return data;
}

} // namespace

class SpoolerPrinterData : public SpoolerTest
{
};

TEST_F(SpoolerPrinterData, ComesBackAsItWasSet)
{
    const PrinterOwner printer = InstallPrinter();
    const PrinterOwner reader = PrinterOwner::Open(kPrinter);
    const Data values[] = {
        {REG_BINARY, {1, 0, 255, 0}},
        {REG_DWORD, {1, 2, 3, 4}},
        {REG_SZ, {'a', 0, 'b', 0, 0, 0}},
        {REG_BINARY, std::vector<BYTE>(100'000, 0x42)},
        {REG_BINARY, {}},
    };
    for (const Data& value : values) // each over the one before
    {
        SCOPED_TRACE(value.bytes.size());
        ASSERT_EQ(Set(printer.Get(), W("PrinterDriverData"), W("Value"), value), ERROR_SUCCESS);
        EXPECT_EQ(Get(reader.Get(), W("printerDRIVERdata"), W("vALUE")), value);
    }
    const Data other{REG_BINARY, {9}};
    ASSERT_EQ(Set(printer.Get(), W("Other\\Below"), W("Value"), other), ERROR_SUCCESS);
    EXPECT_EQ(Get(reader.Get(), W("Other\\Below"), W("Value")), other);
    EXPECT_EQ(Get(reader.Get(), W("PrinterDriverData"), W("Value")), values[4]);
}

TEST_F(SpoolerPrinterData, IsUnderTheDriversKeyWithoutOne)
{
    const PrinterOwner printer = InstallPrinter();
    BYTE bytes[] = {1, 2, 3};
    ASSERT_EQ(SetPrinterDataW(printer.Get(), Mutable(W("Short")), REG_BINARY, bytes, 3), ERROR_SUCCESS);
    EXPECT_EQ(Get(printer.Get(), W("PrinterDriverData"), W("Short")), (Data{REG_BINARY, {1, 2, 3}}));
    DWORD type = 0;
    DWORD needed = 0;
    BYTE back[3] = {};
    EXPECT_EQ(GetPrinterDataW(printer.Get(), Mutable(W("Short")), &type, back, 3, &needed), ERROR_SUCCESS);
    EXPECT_EQ(std::memcmp(back, bytes, 3), 0);
}

TEST_F(SpoolerPrinterData, TellsSizeAndTypeWhenTheBufferIsTooSmall)
{
    const PrinterOwner printer = InstallPrinter();
    ASSERT_EQ(Set(printer.Get(), W("K"), W("v"), {REG_BINARY, {1, 2, 3, 4}}), ERROR_SUCCESS);
    DWORD type = 0;
    DWORD needed = 0;
    BYTE bytes[4] = {0xEE, 0xEE, 0xEE, 0xEE};
    EXPECT_EQ(GetPrinterDataExW(printer.Get(), W("K"), W("v"), &type, bytes, 3, &needed), ERROR_MORE_DATA);
    EXPECT_EQ(type, REG_BINARY);
    EXPECT_EQ(needed, 4u);
    EXPECT_EQ(bytes[3], 0xEE);
    EXPECT_EQ(GetPrinterDataExW(printer.Get(), W("K"), W("none"), &type, bytes, 4, &needed), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(GetPrinterDataExW(printer.Get(), W("None"), W("v"), &type, bytes, 4, &needed), ERROR_FILE_NOT_FOUND);
}

TEST_F(SpoolerPrinterData, IsListedByKey)
{
    const PrinterOwner printer = InstallPrinter();
    const std::map<WideString, Data> set = {
        {W("one"), {REG_BINARY, {1}}},
        {W("two"), {REG_DWORD, {1, 2, 3, 4}}},
        {W("three"), {REG_SZ, {'x', 0, 0, 0}}},
    };
    for (const auto& [name, data] : set)
        ASSERT_EQ(Set(printer.Get(), W("Listed"), name.c_str(), data), ERROR_SUCCESS);
    ASSERT_EQ(Set(printer.Get(), W("Listed\\Below"), W("four"), {REG_BINARY, {4}}), ERROR_SUCCESS);

    const Answer<PRINTER_ENUM_VALUESW> values(
        [&](LPBYTE bytes, DWORD size, LPDWORD needed, LPDWORD count)
        { return EnumPrinterDataExW(printer.Get(), W("Listed"), bytes, size, needed, count) == ERROR_SUCCESS; });
    ASSERT_TRUE(values.IsGood());
    std::map<WideString, Data> listed;
    for (DWORD index = 0; index < values.Count(); ++index)
    {
        const PRINTER_ENUM_VALUESW& value = values[index];
        EXPECT_EQ(value.cbValueName, (WideString(value.pValueName).size() + 1) * sizeof(WCHAR));
        ASSERT_TRUE(values.Holds(value.pData) && values.Holds(value.pData + value.cbData - 1));
        listed[value.pValueName] = {value.dwType, {value.pData, value.pData + value.cbData}};
    }
    EXPECT_EQ(listed, set);
}

TEST_F(SpoolerPrinterData, IsDeletedOnce)
{
    if (IsWine())
        GTEST_SKIP() << "Wine does not delete printer data";
    const PrinterOwner printer = InstallPrinter();
    ASSERT_EQ(Set(printer.Get(), W("PrinterDriverData"), W("v"), {REG_BINARY, {1}}), ERROR_SUCCESS);
    ASSERT_EQ(Set(printer.Get(), W("PrinterDriverData"), W("w"), {REG_BINARY, {2}}), ERROR_SUCCESS);
    EXPECT_EQ(DeletePrinterDataExW(printer.Get(), W("PrinterDriverData"), W("V")), ERROR_SUCCESS);
    EXPECT_EQ(DeletePrinterDataExW(printer.Get(), W("PrinterDriverData"), W("V")), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(Get(printer.Get(), W("PrinterDriverData"), W("w")), (Data{REG_BINARY, {2}}));
}

class SpoolerForms : public SpoolerTest
{
protected:
    static Answer<FORM_INFO_1W> Form(HANDLE printer, const WCHAR* name)
    {
        return Answer<FORM_INFO_1W>([&](LPBYTE bytes, DWORD size, LPDWORD needed, LPDWORD)
                                    { return GetFormW(printer, Mutable(name), 1, bytes, size, needed); });
    }

    static Answer<FORM_INFO_1W> Forms(HANDLE printer)
    {
        return Answer<FORM_INFO_1W>([&](LPBYTE bytes, DWORD size, LPDWORD needed, LPDWORD count)
                                    { return EnumFormsW(printer, 1, bytes, size, needed, count); });
    }
};

TEST_F(SpoolerForms, OfThePlatformHaveTheirSizes)
{
    struct Known
    {
        const WCHAR* name;
        LONG width; // thousandths of a millimetre
        LONG height;
    };
    constexpr Known known[] = {
        {W("Letter"), 215'900, 279'400},       {W("Legal"), 215'900, 355'600},       {W("Tabloid"), 279'400, 431'800},
        {W("Ledger"), 431'800, 279'400},       {W("Executive"), 184'150, 266'700},   {W("A3"), 297'000, 420'000},
        {W("A4"), 210'000, 297'000},           {W("A5"), 148'000, 210'000},          {W("A6"), 105'000, 148'000},
        {W("B5 (JIS)"), 182'000, 257'000},     {W("Envelope DL"), 110'000, 220'000}, {W("11x17"), 279'400, 431'800},
        {W("Envelope #10"), 104'775, 241'300},
    };
    const PrinterOwner printer = InstallPrinter();
    for (const Known& row : known)
    {
        SCOPED_TRACE(std::filesystem::path(row.name).string());
        const auto form = Form(printer.Get(), row.name);
        ASSERT_TRUE(form.IsGood());
        EXPECT_EQ(WideString(form->pName), row.name);
        EXPECT_EQ(form->Flags, FORM_BUILTIN);
        EXPECT_EQ(form->Size.cx, row.width);
        EXPECT_EQ(form->Size.cy, row.height);
        EXPECT_EQ(form->ImageableArea.right, row.width);
    }
    DWORD needed = 0;
    EXPECT_FALSE(GetFormW(printer.Get(), Mutable(W("No such form")), 1, nullptr, 0, &needed));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_FORM_NAME);
}

TEST_F(SpoolerForms, AreListedAsTheyAnswerAlone)
{
    const PrinterOwner printer = InstallPrinter();
    const auto all = Forms(printer.Get());
    ASSERT_TRUE(all.IsGood());
    ASSERT_GE(all.Count(), 100u);
    EXPECT_EQ(WideString(all[0].pName), W("Letter")); // in the order of the paper numbers
    EXPECT_EQ(WideString(all[8].pName), W("A4"));
    for (DWORD index = 0; index < all.Count(); ++index)
    {
        ASSERT_TRUE(all.Holds(all[index].pName));
        const auto alone = Form(printer.Get(), all[index].pName);
        ASSERT_TRUE(alone.IsGood());
        EXPECT_EQ(alone->Size.cx, all[index].Size.cx);
        EXPECT_EQ(alone->Size.cy, all[index].Size.cy);
    }
}

TEST_F(SpoolerForms, OfUsersAreAddedOnceAndDeleted)
{
    if (IsWine())
        GTEST_SKIP() << "Wine keeps no forms of users";
    const PrinterOwner printer = InstallPrinter();
    const auto before = Forms(printer.Get()).Count();
    const auto add = [&](const WCHAR* name, LONG width, RECTL area)
    {
        FORM_INFO_1W form = {FORM_USER, Mutable(name), {width, 200'000}, area};
        return AddFormW(printer.Get(), 1, reinterpret_cast<BYTE*>(&form)) ? ERROR_SUCCESS : GetLastError();
    };
    EXPECT_EQ(add(W("Tavlen Card"), 100'000, {1, 2, 90'000, 190'000}), ERROR_SUCCESS);
    EXPECT_NE(add(W("Tavlen Card"), 100'000, {0, 0, 1, 1}), ERROR_SUCCESS);
    EXPECT_NE(add(W("A4"), 100'000, {0, 0, 1, 1}), ERROR_SUCCESS);
    EXPECT_NE(add(W("Tavlen Odd"), 100'000, {0, 0, 100'001, 1}), ERROR_SUCCESS); // beyond the sheet
    EXPECT_EQ(Forms(printer.Get()).Count(), before + 1);

    const auto card = Form(printer.Get(), W("Tavlen Card"));
    ASSERT_TRUE(card.IsGood());
    EXPECT_EQ(card->Flags, FORM_USER);
    EXPECT_EQ(card->ImageableArea.top, 2);
    EXPECT_EQ(card->ImageableArea.bottom, 190'000);

    EXPECT_TRUE(DeleteFormW(printer.Get(), Mutable(W("Tavlen Card"))));
    EXPECT_FALSE(DeleteFormW(printer.Get(), Mutable(W("Tavlen Card"))));
    EXPECT_FALSE(DeleteFormW(printer.Get(), Mutable(W("A4"))));
    EXPECT_EQ(Forms(printer.Get()).Count(), before);
}
