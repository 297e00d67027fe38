#include "complugins/mscacheddevicecapabilities.h"

namespace
{

// Failures are not kept: the caches may be filled in the meantime.
template <class Record, class Ask>
HRESULT AskOnce(std::optional<std::vector<Record>>& known, std::vector<Record>& records, Ask ask)
{
    if (!known)
    {
        records.clear();
        const HRESULT result = ask(records);
        if (FAILED(result))
            return result;
        known = records;
        return result;
    }
    records = *known;
    return S_OK;
}

} // namespace

MsCachedDeviceCapabilities::MsCachedDeviceCapabilities(MSDeviceCapabilities& capabilities, HANDLE printer,
                                                       DEVMODEW* devmode,
                                                       MSDeviceCapabilities::Context context) noexcept
    : m_capabilities(capabilities), m_printer(printer), m_devmode(devmode), m_context(context)
{
}

DEVMODEW* MsCachedDeviceCapabilities::GetCachedDevmode() const noexcept
{
    return m_devmode;
}

MSDeviceCapabilities& MsCachedDeviceCapabilities::Bound()
{
    // What holds this printer already is as its owner made it; somebody else's question may have bound it elsewhere.
    if (m_printer == nullptr || m_capabilities.GetPrinterHandle() != m_printer)
        m_capabilities.Initialize(m_printer, m_context, m_capabilities.GetOptions());
    return m_capabilities;
}

HRESULT MsCachedDeviceCapabilities::GetForms(std::vector<FormsInfoRecord>& forms)
{
    return AskOnce(m_forms, forms,
                   [this](std::vector<FormsInfoRecord>& answer)
                   { return Bound().GetPaperDatabaseCachedDeviceCapabilitiesVector(m_printer, m_devmode, answer); });
}

HRESULT MsCachedDeviceCapabilities::GetResolutions(std::vector<ResolutionInfoRecord>& resolutions)
{
    return AskOnce(m_resolutions, resolutions,
                   [this](std::vector<ResolutionInfoRecord>& answer)
                   { return Bound().GetResolutionsCachedDeviceCapabilitiesVector(answer); });
}

HRESULT MsCachedDeviceCapabilities::GetResolutionEnums(std::vector<std::int32_t>& values)
{
    std::vector<ResolutionInfoRecord> resolutions;
    const HRESULT result = GetResolutions(resolutions);
    values = MSDeviceCapabilities::ValuesOf(resolutions);
    return result;
}
