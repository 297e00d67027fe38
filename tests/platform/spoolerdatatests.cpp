// Printer data and forms.
#include <iterator>

#include "tests/platform/spoolerfixture.h"
#include "tests/platform/wine.h"

namespace
{

using SpoolerPrinterData = SpoolerTest;
using SpoolerForms = SpoolerTest;

using Bytes = std::vector<BYTE>;
using Data = std::pair<DWORD, Bytes>; // type and content

// With a buffer of exactly the size that a first call reports; the bytes behind it and a smaller one stay as they are.
Data Get(HANDLE printer, const WCHAR* name)
{
    const WCHAR* const key = W("printerDRIVERdata");
    DWORD type = 0;
    DWORD size = 0;
    const bool isEmpty = GetPrinterDataExW(printer, key, name, &type, nullptr, 0, &size) == ERROR_SUCCESS;
    Bytes room(size + 1, 0xEE);
    if (!isEmpty)
    {
        EXPECT_EQ(GetPrinterDataExW(printer, key, name, &type, room.data(), size - 1, &size), ERROR_MORE_DATA);
        EXPECT_TRUE(size + 1 == room.size() && room[size - 1] == 0xEE);
    }
    EXPECT_EQ(GetPrinterDataExW(printer, key, name, &type, room.data(), size, &size), ERROR_SUCCESS);
    EXPECT_EQ(room[size], 0xEE);
    room.resize(size);
    return {type, room};
}

Answer<FORM_INFO_1W> Forms(HANDLE printer)
{
    return Answer<FORM_INFO_1W>([&](LPBYTE bytes, DWORD size, LPDWORD needed, LPDWORD count)
                                { return EnumFormsW(printer, 1, bytes, size, needed, count); });
}

} // namespace

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
    DWORD needed = 0;
    for (const auto& [type, bytes] : values) // each over the one before; without a key it is the driver's
    {
        ASSERT_EQ(SetPrinterDataW(printer.get(), Mutable(W("Value")), type, Bytes(bytes).data(),
                                  static_cast<DWORD>(bytes.size())),
                  ERROR_SUCCESS);
        EXPECT_EQ(Get(reader.get(), W("vALUE")), Data(type, bytes));
    }
    EXPECT_EQ(GetPrinterDataW(printer.get(), Mutable(W("none")), nullptr, nullptr, 0, &needed), ERROR_FILE_NOT_FOUND);
    BYTE other = 1;
    ASSERT_EQ(SetPrinterDataExW(printer.get(), W("Other"), W("Value"), REG_BINARY, &other, 1), ERROR_SUCCESS);
    EXPECT_EQ(Get(reader.get(), W("Value")), values[3]);
    if (IsWine()) // which does not delete printer data
        return;
    for (const DWORD error : {DWORD{ERROR_SUCCESS}, DWORD{ERROR_FILE_NOT_FOUND}})
        EXPECT_EQ(DeletePrinterDataExW(printer.get(), W("OTHER"), W("VALUE")), error);
    EXPECT_EQ(Get(printer.get(), W("Value")), values[3]);
}

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
        {19, W("Envelope #10"), 104'775, 241'300},
    };
    const PrinterOwner printer = InstallPrinter();
    const auto all = Forms(printer.get());
    ASSERT_GE(std::size_t(all.end() - all.begin()), 100u);
    for (const Known& row : kKnown)
    {
        const Answer<FORM_INFO_1W> alone(
            [&](LPBYTE bytes, DWORD size, LPDWORD needed, LPDWORD)
            { return GetFormW(printer.get(), Mutable(row.name), 1, bytes, size, needed); });
        ASSERT_NE(alone.begin(), alone.end());
        for (const FORM_INFO_1W* const form : {alone.begin(), all.begin() + row.place})
        {
            EXPECT_EQ(WideString(form->pName), row.name);
            EXPECT_EQ(form->Flags, FORM_BUILTIN);
            EXPECT_TRUE(form->Size.cx == row.width && form->Size.cy == row.height) << row.place;
            EXPECT_EQ(form->ImageableArea.right, row.width);
        }
    }
    DWORD needed = 0;
    EXPECT_EQ(ErrorOf(GetFormW(printer.get(), Mutable(W("No such form")), 1, nullptr, 0, &needed)),
              ERROR_INVALID_FORM_NAME);
}

TEST_F(SpoolerForms, OfUsersAreAddedOnceAndDeleted)
{
    if (IsWine())
        GTEST_SKIP() << "Wine keeps no forms of users";
    const PrinterOwner printer = InstallPrinter();
    const auto add = [&](const WCHAR* name)
    {
        FORM_INFO_1W form = {FORM_USER, Mutable(name), {100'000, 200'000}, {1, 2, 90'000, 190'000}};
        return ErrorOf(AddFormW(printer.get(), 1, reinterpret_cast<BYTE*>(&form)));
    };
    EXPECT_EQ(add(W("Tavlen Card")), ERROR_SUCCESS);
    EXPECT_EQ(add(W("Tavlen Card")), ERROR_ALREADY_EXISTS);
    EXPECT_EQ(add(W("A4")), ERROR_ALREADY_EXISTS);
    const auto all = Forms(printer.get());
    const FORM_INFO_1W& last = *std::prev(all.end());
    EXPECT_TRUE(last.Flags == FORM_USER && last.ImageableArea.top == 2 && last.ImageableArea.bottom == 190'000);
    EXPECT_TRUE(DeleteFormW(printer.get(), Mutable(W("Tavlen Card"))));
    EXPECT_FALSE(DeleteFormW(printer.get(), Mutable(W("Tavlen Card"))) || DeleteFormW(printer.get(), Mutable(W("A4"))));
}
