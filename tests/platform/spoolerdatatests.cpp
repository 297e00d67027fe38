// Printer data and forms.
#include "tests/platform/spoolerfixture.h"
#include "tests/platform/wine.h"

using namespace spoolertests;

namespace
{

using Bytes = std::vector<BYTE>;
using Data = std::pair<DWORD, Bytes>; // type and content

DWORD Set(HANDLE printer, const WCHAR* name, Data data)
{
    return SetPrinterDataExW(printer, W("PrinterDriverData"), name, data.first, data.second.data(),
                             static_cast<DWORD>(data.second.size()));
}

// With a buffer of exactly the size that a first call reports; the bytes behind it and a smaller one stay as they are.
Data Get(HANDLE printer, const WCHAR* key, const WCHAR* name)
{
    DWORD type = 0;
    DWORD size = 0;
    GetPrinterDataExW(printer, key, name, &type, nullptr, 0, &size);
    Bytes room(size + 1, 0xEE);
    if (size > 0)
    {
        DWORD needed = 0;
        EXPECT_EQ(GetPrinterDataExW(printer, key, name, &type, room.data(), size - 1, &needed), ERROR_MORE_DATA);
        EXPECT_TRUE(needed == size && room[size - 1] == 0xEE);
    }
    EXPECT_EQ(GetPrinterDataExW(printer, key, name, &type, room.data(), size, &size), ERROR_SUCCESS);
    EXPECT_EQ(room[size], 0xEE);
    room.resize(size);
    return {type, room};
}

} // namespace

class SpoolerPrinterData : public SpoolerTest
{
};

TEST_F(SpoolerPrinterData, ComesBackAsItWasSet)
{
    const PrinterOwner printer = InstallPrinter();
    const PrinterOwner reader = Open(kPrinter);
    const Data values[] = {
        {REG_DWORD, {1, 2, 3, 4}},
        {REG_SZ, {'a', 0, 'b', 0, 0, 0}},
        {REG_BINARY, Bytes(100'000, 0x42)},
        {REG_BINARY, {}},
    };
    for (const Data& value : values) // each over the one before
    {
        ASSERT_EQ(Set(printer.get(), W("Value"), value), ERROR_SUCCESS);
        EXPECT_EQ(Get(reader.get(), W("printerDRIVERdata"), W("vALUE")), value);
    }
    // Without a key it is the driver's.
    BYTE bytes[3] = {1, 2, 3};
    BYTE back[3] = {};
    DWORD needed = 0;
    ASSERT_EQ(SetPrinterDataW(printer.get(), Mutable(W("Short")), REG_BINARY, bytes, 3), ERROR_SUCCESS);
    EXPECT_EQ(Get(printer.get(), W("PrinterDriverData"), W("Short")), (Data{REG_BINARY, {1, 2, 3}}));
    EXPECT_EQ(GetPrinterDataW(printer.get(), Mutable(W("Short")), nullptr, back, 3, &needed), ERROR_SUCCESS);
    EXPECT_EQ(back[2], 3);
    for (const WCHAR* const key : {W("PrinterDriverData"), W("None")})
        EXPECT_EQ(GetPrinterDataExW(printer.get(), key, W("none"), nullptr, back, 3, &needed), ERROR_FILE_NOT_FOUND);

    if (IsWine()) // which does not delete printer data
        return;
    for (const DWORD error : {DWORD{ERROR_SUCCESS}, DWORD{ERROR_FILE_NOT_FOUND}})
        EXPECT_EQ(DeletePrinterDataExW(printer.get(), W("PrinterDriverData"), W("SHORT")), error);
    EXPECT_EQ(Get(printer.get(), W("PrinterDriverData"), W("Value")), values[3]);
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
        DWORD place; // paper number less one
        const WCHAR* name;
        LONG width; // thousandths of a millimetre
        LONG height;
    };
    constexpr Known kKnown[] = {
        {0, W("Letter"), 215'900, 279'400},
        {3, W("Ledger"), 431'800, 279'400},
        {8, W("A4"), 210'000, 297'000},
        {12, W("B5 (JIS)"), 182'000, 257'000},
        {19, W("Envelope #10"), 104'775, 241'300},
    };
    const PrinterOwner printer = InstallPrinter();
    const auto all = Forms(printer.get());
    ASSERT_GE(all.Count(), 100u);
    for (const Known& row : kKnown)
    {
        const auto alone = Form(printer.get(), row.name);
        ASSERT_EQ(alone.Count(), 1u);
        for (const FORM_INFO_1W* const form : {&alone[0], &all[row.place]})
        {
            EXPECT_EQ(WideString(form->pName), row.name);
            EXPECT_EQ(form->Flags, FORM_BUILTIN);
            EXPECT_TRUE(form->Size.cx == row.width && form->Size.cy == row.height) << row.place;
            EXPECT_EQ(form->ImageableArea.right, row.width);
        }
    }
    EXPECT_EQ(Form(printer.get(), W("No such form")).Count(), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_FORM_NAME);
}

TEST_F(SpoolerForms, OfUsersAreAddedOnceAndDeleted)
{
    if (IsWine())
        GTEST_SKIP() << "Wine keeps no forms of users";
    const PrinterOwner printer = InstallPrinter();
    const auto before = Forms(printer.get()).Count();
    const auto add = [&](const WCHAR* name, RECTL area)
    {
        FORM_INFO_1W form = {FORM_USER, Mutable(name), {100'000, 200'000}, area};
        return AddFormW(printer.get(), 1, reinterpret_cast<BYTE*>(&form)) != FALSE;
    };
    EXPECT_TRUE(add(W("Tavlen Card"), {1, 2, 90'000, 190'000}));
    EXPECT_FALSE(add(W("Tavlen Card"), {0, 0, 1, 1}) || add(W("A4"), {0, 0, 1, 1}));
    const auto all = Forms(printer.get());
    ASSERT_EQ(all.Count(), before + 1);
    EXPECT_TRUE(all[before].Flags == FORM_USER && all[before].ImageableArea.bottom == 190'000);
    EXPECT_TRUE(DeleteFormW(printer.get(), Mutable(W("Tavlen Card"))));
    EXPECT_FALSE(DeleteFormW(printer.get(), Mutable(W("Tavlen Card"))) || DeleteFormW(printer.get(), Mutable(W("A4"))));
    EXPECT_EQ(Forms(printer.get()).Count(), before);
}
