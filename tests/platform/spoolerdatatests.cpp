// Printer data and forms.
#include <tuple>

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
    GetPrinterDataExW(printer, key, name, &type, nullptr, 0, &size);
    Bytes room(size + 1, 0xEE);
    if (size > 0)
    {
        EXPECT_EQ(GetPrinterDataExW(printer, key, name, &type, room.data(), size - 1, &size), ERROR_MORE_DATA);
        EXPECT_TRUE(size + 1 == room.size() && room[size - 1] == 0xEE);
    }
    EXPECT_EQ(GetPrinterDataExW(printer, key, name, &type, room.data(), size, &size), ERROR_SUCCESS);
    EXPECT_EQ(room[size], 0xEE);
    room.resize(size);
    return {type, room};
}

} // namespace

TEST_F(SpoolerPrinterData, ComesBackAsItWasSet)
{
    PrinterOwner printer = InstallPrinter();
    PrinterOwner reader = Open(kPrinter);
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
    if (!IsWine()) // which does not delete printer data
    {
        for (const DWORD error : {DWORD{ERROR_SUCCESS}, DWORD{ERROR_FILE_NOT_FOUND}})
            EXPECT_EQ(DeletePrinterDataExW(printer.get(), W("OTHER"), W("VALUE")), error);
        EXPECT_EQ(Get(printer.get(), W("Value")), values[3]);
    }
    // It goes with its printer: the next one of the name is another.
    ASSERT_TRUE(DeletePrinter(printer.get()));
    printer.reset();
    reader.reset();
    EXPECT_EQ(Open(kPrinter), nullptr);
    EXPECT_EQ(GetPrinterDataW(InstallPrinter().get(), Mutable(W("Value")), nullptr, nullptr, 0, &needed),
              ERROR_FILE_NOT_FOUND);
}

TEST_F(SpoolerForms, OfThePlatformHaveTheirSizes)
{
    // Paper number less one, name, width and height in thousandths of a millimetre.
    constexpr std::tuple<DWORD, const WCHAR*, LONG, LONG> kKnown[] = {
        {0, W("Letter"), 215'900, 279'400},
        {8, W("A4"), 210'000, 297'000},
        {19, W("Envelope #10"), 104'775, 241'300},
    };
    const PrinterOwner printer = InstallPrinter();
    const Answer<FORM_INFO_1W> all([&](LPBYTE bytes, DWORD size, LPDWORD needed, LPDWORD count)
                                   { return EnumFormsW(printer.get(), 1, bytes, size, needed, count); });
    ASSERT_GE(std::size_t(all.end() - all.begin()), 100u);
    for (const auto& [place, known, width, height] : kKnown)
    {
        const WCHAR* const name = known;
        const Answer<FORM_INFO_1W> alone([&](LPBYTE bytes, DWORD size, LPDWORD needed, LPDWORD)
                                         { return GetFormW(printer.get(), Mutable(name), 1, bytes, size, needed); });
        ASSERT_NE(alone.begin(), alone.end());
        for (const FORM_INFO_1W* const form : {alone.begin(), all.begin() + place})
        {
            EXPECT_EQ(WideString(form->pName), name);
            EXPECT_EQ(form->Flags, FORM_BUILTIN);
            EXPECT_TRUE(form->Size.cx == width && form->Size.cy == height) << place;
            EXPECT_EQ(form->ImageableArea.right, width);
        }
    }
    DWORD needed = 0;
    EXPECT_EQ(ErrorOf(GetFormW(printer.get(), Mutable(W("No form")), 1, nullptr, 0, &needed)), ERROR_INVALID_FORM_NAME);
}
