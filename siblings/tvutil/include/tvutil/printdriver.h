// PrintDriver: what a printer's driver is and can do.
#pragma once

#include <windows.h>

#include <winspool.h>

#include <vector>

#include <tvutil/cxstring.h>

class TVUTIL_API PrintDriver
{
public:
    // The printer data value in which the driver's set-up leaves the printer model's 64-bit capability word:
    // REG_BINARY, 8 bytes, little-endian.
    static constexpr const WCHAR* kDriverCapabilityValueName = W("XDriverCapability");

    // Bit 10 of the word: the private namespace, and with it the job ticket.
    static constexpr ULONGLONG kPrivateNamespaceCapability = 0x400;

    // The capability word AND the mask. "Capability number" 1984 is the mask 0x7C0 (the driver kind), 15 is 0xF (the
    // core flags), 0x1800 the platform bits. Throws ExceptionPrintDriverFailure when the printer cannot be read, or
    // holds no capability word: it was not installed by this driver's set-up.
    [[nodiscard]] ULONGLONG GetDriverCapability(HANDLE printer, ULONGLONG mask) const;

    // The printer data value in which the driver's set-up notes how far it has come: REG_DWORD.
    static constexpr const WCHAR* kInstallationStateValueName = W("XInstallationState");
    static constexpr DWORD kInstallationComplete = 4;

    // How far the printer's set-up has come; 0 when it has noted nothing, or something that is no number. Throws
    // ExceptionPrintDriverFailure when the printer cannot be read.
    [[nodiscard]] DWORD GetInstallationStateFromHandle(HANDLE printer) const;

    // Every file of the printer's driver: driver, data, configuration, help and dependent files, as the spooler
    // names them. An empty environment is this machine's own. Level 9 asks for what DRIVER_INFO_6 holds.
    [[nodiscard]] std::vector<CXString> GetDriverFiles(HANDLE printer, DWORD level, const CXString& environment) const;
};
