// A printer's device settings, through the spooler.
#include <windows.h>

#include <utility>

#include <gtest/gtest.h>

#include <tvutil/devicesettingsmanager.h>
#include <tvutil/exceptions.h>

#include "tests/common/testprinter.h"
#include "tests/tvutil/attributebytessamples.h"

namespace
{

constexpr const WCHAR* kValueName = DeviceSettingsManager::kDeviceSettingsValueName;

TEST(DeviceSettings, ThatCannotBeReadAreNoneAndThoseOfALaterDriverStay)
{
    const TestPrinter installed{std::nullopt};
    const Printer printer(installed.Handle());
    const ByteBuffer later = Bytes({8, 0, 0, 0, 0, 2, 9, 9});
    const ByteBuffer halfAttribute = Bytes({22, 0, 0, 0, 0, 1, 12, 0, 0, 0, 0, 0, 3, 0, 0, 0, 2, 0, 0, 0, 1, 2});
    for (const auto& [type, bytes] :
         {std::pair(DWORD{REG_SZ}, later), {DWORD{REG_BINARY}, halfAttribute}, {DWORD{REG_BINARY}, later}})
    {
        SCOPED_TRACE(Hex(bytes) + " of type " + std::to_string(type));
        const bool isKept = type == REG_BINARY && bytes == later;
        printer.SetPrinterDataW(kValueName, type, bytes.data(), static_cast<DWORD>(bytes.size()));
        EXPECT_EQ(DeviceSettingsManager(printer).GetDefaultAttributeBytesIndexedList()->GetCount(), 0u);
        EXPECT_EQ(DeviceSettingsManager::Store(printer, SampleList()), !isKept);
        DeviceSettingsManager read(printer);
        EXPECT_EQ(Hex(BytesOf(*read.GetDefaultAttributeBytesIndexedList())), isKept ? "" : Hex(BytesOf(SampleList())));
    }
    EXPECT_THROW(DeviceSettingsManager{Printer()}, ExceptionPrinterFailure);
}

} // namespace
