// Printer data and forms.
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

// With a buffer of exactly the size that a first call reports; the bytes behind it and a smaller one stay as they are.
Data Get(HANDLE printer, const WCHAR* key, const WCHAR* name)
{
    Data data;
    DWORD size = 0;
    GetPrinterDataExW(printer, key, name, &data.type, nullptr, 0, &size);
    data.bytes.assign(size + 1, 0xEE);
    BYTE* const room = data.bytes.data();
    DWORD needed = size;
    if (size > 0)
    {
        EXPECT_EQ(GetPrinterDataExW(printer, key, name, &data.type, room, size - 1, &needed), ERROR_MORE_DATA);
        EXPECT_TRUE(needed == size && room[size - 1] == 0xEE);
    }
    EXPECT_EQ(GetPrinterDataExW(printer, key, name, &data.type, room, size, &needed), ERROR_SUCCESS);
    EXPECT_EQ(room[size], 0xEE);
    data.bytes.resize(size);
    return data;
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
        {REG_BINARY, {1, 0, 255, 0}},
        {REG_DWORD, {1, 2, 3, 4}},
        {REG_SZ, {'a', 0, 'b', 0, 0, 0}},
        {REG_BINARY, std::vector<BYTE>(100'000, 0x42)},
        {REG_BINARY, {}},
    };
    for (const Data& value : values) // each over the one before
    {
        SCOPED_TRACE(value.bytes.size());
        ASSERT_EQ(Set(printer.get(), W("PrinterDriverData"), W("Value"), value), ERROR_SUCCESS);
        EXPECT_EQ(Get(reader.get(), W("printerDRIVERdata"), W("vALUE")), value);
    }
    const Data other{REG_BINARY, {9}};
    ASSERT_EQ(Set(printer.get(), W("Other\\Below"), W("Value"), other), ERROR_SUCCESS);
    EXPECT_EQ(Get(reader.get(), W("Other\\Below"), W("Value")), other);

    // Without a key it is the driver's.
    Data data{REG_BINARY, {1, 2, 3}};
    DWORD needed = 0;
    ASSERT_EQ(SetPrinterDataW(printer.get(), Mutable(W("Short")), REG_BINARY, data.bytes.data(), 3), ERROR_SUCCESS);
    EXPECT_EQ(Get(printer.get(), W("PrinterDriverData"), W("Short")), data);
    BYTE back[3] = {};
    EXPECT_EQ(GetPrinterDataW(printer.get(), Mutable(W("Short")), &data.type, back, 3, &needed), ERROR_SUCCESS);
    EXPECT_EQ(back[2], 3);
    for (const WCHAR* const key : {W("PrinterDriverData"), W("None")})
        EXPECT_EQ(GetPrinterDataExW(printer.get(), key, W("none"), &data.type, back, 3, &needed), ERROR_FILE_NOT_FOUND);

    if (IsWine()) // which does not delete printer data
        return;
    for (const DWORD error : {DWORD{ERROR_SUCCESS}, DWORD{ERROR_FILE_NOT_FOUND}})
        EXPECT_EQ(DeletePrinterDataExW(printer.get(), W("PrinterDriverData"), W("SHORT")), error);
    EXPECT_EQ(Get(printer.get(), W("PrinterDriverData"), W("Value")), values[4]);
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
        SCOPED_TRACE(std::filesystem::path(row.name).string());
        const auto alone = Form(printer.get(), row.name);
        ASSERT_EQ(alone.Count(), 1u);
        for (const FORM_INFO_1W* const form : {&alone[0], &all[row.place]})
        {
            EXPECT_EQ(WideString(form->pName), row.name);
            EXPECT_EQ(form->Flags, FORM_BUILTIN);
            EXPECT_TRUE(form->Size.cx == row.width && form->Size.cy == row.height);
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
    EXPECT_FALSE(add(W("Tavlen Odd"), {0, 0, 100'001, 1})) << "beyond the sheet";
    const auto card = Form(printer.get(), W("Tavlen Card"));
    ASSERT_EQ(card.Count(), 1u);
    EXPECT_TRUE(card->Flags == FORM_USER && card->ImageableArea.top == 2 && card->ImageableArea.bottom == 190'000);
    EXPECT_EQ(Forms(printer.get()).Count(), before + 1);
    EXPECT_TRUE(DeleteFormW(printer.get(), Mutable(W("Tavlen Card"))));
    EXPECT_FALSE(DeleteFormW(printer.get(), Mutable(W("Tavlen Card"))) || DeleteFormW(printer.get(), Mutable(W("A4"))));
    EXPECT_EQ(Forms(printer.get()).Count(), before);
}
