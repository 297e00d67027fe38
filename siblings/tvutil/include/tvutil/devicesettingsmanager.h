// DeviceSettingsManager: the settings of a printer that are the same for every document.
//
// They lie in the printer's data, as persistent attributes (tvutil/persistentattributes.h) in the device settings'
// namespace. The printer's set-up writes the model's defaults there.
#pragma once

#include <windows.h>

#include <memory>

#include <tvutil/attributebytesreader.h>
#include <tvutil/printer.h>

class TVUTIL_API DeviceSettingsManager : public AttributeBytesReader
{
public:
    // The printer data value: REG_BINARY.
    static constexpr const WCHAR* kDeviceSettingsValueName = W("XDeviceSettings");

    // Read once. Settings that are absent, of another type or unreadable are none. Throws ExceptionPrinterFailure when
    // the printer does not answer.
    explicit DeviceSettingsManager(const Printer& printer);
    ~DeviceSettingsManager() override;

    // The default namespace is the device settings'; every other one is empty.
    AttributeBytesIndexedList* GetDefaultAttributeBytesIndexedList() override;
    AttributeBytesIndexedList* GetDataModelDocPropAttributeBytesIndexedList() override;
    void OnAttributeBytesStored() override;
    AttributeBytesIndexedList* GetAttributeBytesIndexedListOf(AttributeBytesNameSpacesId id) override;
    AttributeBytesIndexedList* GetAttributeBytesIndexedList(const AttributeBytesNameSpacesId& id) override;

    // Replaces the settings of the device settings' namespace and keeps what else is stored there. False, with nothing
    // changed, when what is stored is in the format of a later driver.
    static bool Store(const Printer& printer, const AttributeBytesIndexedList& settings);

private:
    std::unique_ptr<AttributeBytesIndexedList> m_settings;
    std::unique_ptr<AttributeBytesIndexedList> m_nothing;
};
