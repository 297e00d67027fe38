#include <windows.h>

#include <tvutil/devicesettingsmanager.h>

#include <utility>

#include <tvutil/persistentattributes.h>

namespace
{

ByteBuffer ReadState(const Printer& printer)
{
    DWORD type = REG_NONE;
    ByteBuffer state;
    if (!printer.GetPrinterDataW(DeviceSettingsManager::kDeviceSettingsValueName, type, state) || type != REG_BINARY)
        state.clear();
    return state;
}

} // namespace

// The exporting library emits a constant of its class only where it is defined out of line.
constexpr const WCHAR* DeviceSettingsManager::kDeviceSettingsValueName;

DeviceSettingsManager::DeviceSettingsManager(const Printer& printer)
    : m_settings(std::make_unique<AttributeBytesIndexedList>()),
      m_nothing(std::make_unique<AttributeBytesIndexedList>())
{
    const PersistentAttributes stored(ReadState(printer));
    m_settings->ImportFromRawList(
        stored.GetAttributeBytesListForNameSpace(PersistentAttributes::GetDeviceSettingsNameSpaceId()));
}

DeviceSettingsManager::~DeviceSettingsManager() = default;

AttributeBytesIndexedList* DeviceSettingsManager::GetDefaultAttributeBytesIndexedList()
{
    return m_settings.get();
}

AttributeBytesIndexedList* DeviceSettingsManager::GetDataModelDocPropAttributeBytesIndexedList()
{
    return GetAttributeBytesIndexedList(PersistentAttributes::GetDataModelDocPropNameSpaceId());
}

void DeviceSettingsManager::OnAttributeBytesStored()
{
}

AttributeBytesIndexedList* DeviceSettingsManager::GetAttributeBytesIndexedListOf(AttributeBytesNameSpacesId id)
{
    return GetAttributeBytesIndexedList(id);
}

AttributeBytesIndexedList* DeviceSettingsManager::GetAttributeBytesIndexedList(const AttributeBytesNameSpacesId& id)
{
    return id == PersistentAttributes::GetDeviceSettingsNameSpaceId() ? m_settings.get() : m_nothing.get();
}

bool DeviceSettingsManager::Store(const Printer& printer, const AttributeBytesIndexedList& settings)
{
    AttributeBytesNameSpaces nameSpaces;
    nameSpaces.SetAttributeBytesList(PersistentAttributes::GetDeviceSettingsNameSpaceId(),
                                     AttributeBytesRawList(settings));
    PersistentAttributes stored(ReadState(printer));
    if (!stored.SetAttributeBytesNameSpaces(nameSpaces))
        return false;
    const ByteBuffer& state = stored.GetPersistentAttributesState();
    printer.SetPrinterDataW(kDeviceSettingsValueName, REG_BINARY, state.data(), static_cast<DWORD>(state.size()));
    return true;
}
