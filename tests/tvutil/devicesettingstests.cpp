// A printer's device settings, through the spooler.
#include <windows.h>
#include <winspool.h>

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tvutil/devicesettingsmanager.h>
#include <tvutil/exceptions.h>
#include <tvutil/persistentattributes.h>

#include "tests/common/testprinter.h"
#include "tests/tvutil/attributebytessamples.h"

namespace
{

constexpr const WCHAR* kValueName = DeviceSettingsManager::kDeviceSettingsValueName;
constexpr auto kDeviceSettings = PersistentAttributes::GetDeviceSettingsNameSpaceId();
constexpr auto kDocProp = PersistentAttributes::GetDataModelDocPropNameSpaceId();

TEST(DeviceSettings, AreStoredWithThePrinterAndReadAgain)
{
    const TestPrinter installed{std::nullopt};
    const Printer printer(installed.Handle());
    DeviceSettingsManager none(printer);
    EXPECT_EQ(none.GetBooleanValueFromAttributeBytes(720), std::nullopt);

    // Somebody else's namespace stands beside them.
    AttributeBytesNameSpaces others;
    others.SetAttributeBytesList(kDocProp, RawListOf(Bytes({1, 2, 3})));
    PersistentAttributes stored;
    stored.SetAttributeBytesNameSpaces(others);
    const ByteBuffer& state = stored.GetPersistentAttributesState();
    printer.SetPrinterDataW(kValueName, REG_BINARY, state.data(), static_cast<DWORD>(state.size()));

    AttributeBytesIndexedList settings;
    settings.SetAttributeBytes(720, MakeBooleanAttributeBytes(true));
    for (int time = 0; time < 2; ++time)
        DeviceSettingsManager::Store(printer, settings);
    DeviceSettingsManager read(printer);
    EXPECT_EQ(read.GetBooleanValueFromAttributeBytes(720), true);
    EXPECT_EQ(read.GetAttributeBytesIndexedList(kDeviceSettings)->GetCount(), 1u);
    EXPECT_EQ(read.GetAttributeBytesIndexedListOf(kDocProp)->GetCount(), 0u);
    EXPECT_EQ(read.GetDataModelDocPropAttributeBytesIndexedList()->GetCount(), 0u);

    DWORD type = 0;
    ByteBuffer data;
    ASSERT_TRUE(printer.GetPrinterDataW(kValueName, type, data));
    EXPECT_EQ(type, REG_BINARY);
    EXPECT_EQ(ByteBuffer(PersistentAttributes(data).GetAttributeBytesListForNameSpace(kDocProp).GetBytes()),
              Bytes({1, 2, 3}));
}

TEST(DeviceSettings, ThatCannotBeReadAreNoneAndThoseOfALaterDriverStay)
{
    const TestPrinter installed{std::nullopt};
    const Printer printer(installed.Handle());
    struct Case
    {
        const char* what;
        DWORD type;
        std::vector<int> bytes;
        bool isKept;
    };
    const Case cases[] = {
        {"another type",
         REG_SZ,
         {30, 0, 0, 0, 0, 1, 12, 0, 0, 0, 0, 0, 3, 0, 0, 0, 10, 0, 0, 0, 1, 0, 0, 0, 7, 0, 2, 0, 0, 0},
         false},
        {"nothing", REG_BINARY, {}, false},
        {"half a state", REG_BINARY, {20, 0, 0, 0, 0, 1, 12, 0}, false},
        {"a list that runs past its end",
         REG_BINARY,
         {23, 0, 0, 0, 0, 1, 12, 0, 0, 0, 0, 0, 3, 0, 0, 0, 3, 0, 0, 0, 1, 2, 3},
         false},
        {"a later format", REG_BINARY, {8, 0, 0, 0, 0, 2, 9, 9}, true},
    };
    for (const Case& test : cases)
    {
        SCOPED_TRACE(test.what);
        const ByteBuffer bytes = Bytes(test.bytes);
        printer.SetPrinterDataW(kValueName, test.type, bytes.data(), static_cast<DWORD>(bytes.size()));
        EXPECT_EQ(DeviceSettingsManager(printer).GetDefaultAttributeBytesIndexedList()->GetCount(), 0u);
        EXPECT_EQ(DeviceSettingsManager::Store(printer, SampleList()), !test.isKept);
        DeviceSettingsManager read(printer);
        EXPECT_EQ(Hex(BytesOf(*read.GetDefaultAttributeBytesIndexedList())),
                  test.isKept ? "" : Hex(BytesOf(SampleList())));
    }
    EXPECT_THROW(DeviceSettingsManager{Printer()}, ExceptionPrinterFailure);
}

} // namespace
