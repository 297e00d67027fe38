// MsCachedDeviceCapabilities: a printer's cached capabilities, as the steps of one conversion ask for them, with the
// devmode of that conversion.
//
// Building one asks nothing and needs no printer: a question binds the capabilities to the printer, with the options
// that they have, unless they hold it already, and throws ExceptionInvalidPrinterHandle where there is none. What a
// question has brought is kept for the next one. Everything given is borrowed and outlives the object. For one thread.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "complugins/msdevicecapabilities.h"

class MsCachedDeviceCapabilities
{
public:
    // A null devmode is none: inside the spooler there are no forms then.
    MsCachedDeviceCapabilities(
        MSDeviceCapabilities& capabilities, HANDLE printer, DEVMODEW* devmode,
        MSDeviceCapabilities::Context context = MSDeviceCapabilities::Context::OfThisProcess) noexcept;

    // For questions that the driver itself has to answer.
    [[nodiscard]] DEVMODEW* GetCachedDevmode() const noexcept;

    // Answers are MSDeviceCapabilities' own; after a failure the list is empty.
    HRESULT GetForms(std::vector<FormsInfoRecord>& forms);
    HRESULT GetResolutions(std::vector<ResolutionInfoRecord>& resolutions);
    HRESULT GetResolutionEnums(std::vector<std::int32_t>& values);

private:
    MSDeviceCapabilities& Bound();

    MSDeviceCapabilities& m_capabilities;
    HANDLE m_printer;
    DEVMODEW* m_devmode;
    MSDeviceCapabilities::Context m_context;
    std::optional<std::vector<FormsInfoRecord>> m_forms;
    std::optional<std::vector<ResolutionInfoRecord>> m_resolutions;
};
