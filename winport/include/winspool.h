// The spooler: printers, their data, drivers, forms and ports, over one SQLite file, safe between processes.
//
// The file is "spooler.db" in the store folder: the environment variable TVPT_STORE, else
// $XDG_DATA_HOME/tavlen-print-ticket, else ~/.local/share/tavlen-print-ticket. The variable is read by every call that
// starts from a name; a printer handle stays with the store in which it was opened.
//
// Conventions are Windows' own. A function that fills a caller's buffer writes the structures first and their texts
// behind them; a buffer that is too small gives ERROR_INSUFFICIENT_BUFFER and the size that is needed. Names are
// compared ignoring case. BOOL functions leave the error in the last error; printer data functions return it.
// There is one machine, so a server name must be null or empty.
#pragma once

#include "winerror.h"
#include "wingdi.h"

using PSECURITY_DESCRIPTOR = void*;
using DWORDLONG = ULONGLONG;

// ---- Printers -------------------------------------------------------------------------------------------------------

inline constexpr DWORD PRINTER_ENUM_DEFAULT = 0x00000001;
inline constexpr DWORD PRINTER_ENUM_LOCAL = 0x00000002;
inline constexpr DWORD PRINTER_ENUM_CONNECTIONS = 0x00000004;
inline constexpr DWORD PRINTER_ENUM_NAME = 0x00000008;
inline constexpr DWORD PRINTER_ENUM_ICON8 = 0x00800000;

inline constexpr DWORD PRINTER_ATTRIBUTE_QUEUED = 0x00000001;
inline constexpr DWORD PRINTER_ATTRIBUTE_DIRECT = 0x00000002;
inline constexpr DWORD PRINTER_ATTRIBUTE_DEFAULT = 0x00000004;
inline constexpr DWORD PRINTER_ATTRIBUTE_SHARED = 0x00000008;
inline constexpr DWORD PRINTER_ATTRIBUTE_NETWORK = 0x00000010;
inline constexpr DWORD PRINTER_ATTRIBUTE_HIDDEN = 0x00000020;
inline constexpr DWORD PRINTER_ATTRIBUTE_LOCAL = 0x00000040;
inline constexpr DWORD PRINTER_ATTRIBUTE_DO_COMPLETE_FIRST = 0x00000200;
inline constexpr DWORD PRINTER_ATTRIBUTE_ENABLE_BIDI = 0x00000800;
inline constexpr DWORD PRINTER_ATTRIBUTE_RAW_ONLY = 0x00001000;

inline constexpr ACCESS_MASK SERVER_ACCESS_ADMINISTER = 0x00000001;
inline constexpr ACCESS_MASK SERVER_ACCESS_ENUMERATE = 0x00000002;
inline constexpr ACCESS_MASK PRINTER_ACCESS_ADMINISTER = 0x00000004;
inline constexpr ACCESS_MASK PRINTER_ACCESS_USE = 0x00000008;
inline constexpr ACCESS_MASK SERVER_ALL_ACCESS = 0x000F0003;
inline constexpr ACCESS_MASK PRINTER_ALL_ACCESS = 0x000F000C;
inline constexpr ACCESS_MASK PRINTER_READ = 0x00020008;
inline constexpr ACCESS_MASK PRINTER_WRITE = 0x00020008;
inline constexpr ACCESS_MASK PRINTER_EXECUTE = 0x00020008;

inline constexpr DWORD NO_PRIORITY = 0;
inline constexpr DWORD MIN_PRIORITY = 1;
inline constexpr DWORD DEF_PRIORITY = 1;
inline constexpr DWORD MAX_PRIORITY = 99;

struct PRINTER_INFO_1W
{
    DWORD Flags;
    LPWSTR pDescription;
    LPWSTR pName;
    LPWSTR pComment;
};
using LPPRINTER_INFO_1W = PRINTER_INFO_1W*;

struct PRINTER_INFO_2W
{
    LPWSTR pServerName;
    LPWSTR pPrinterName;
    LPWSTR pShareName;
    LPWSTR pPortName;
    LPWSTR pDriverName;
    LPWSTR pComment;
    LPWSTR pLocation;
    LPDEVMODEW pDevMode;
    LPWSTR pSepFile;
    LPWSTR pPrintProcessor;
    LPWSTR pDatatype;
    LPWSTR pParameters;
    PSECURITY_DESCRIPTOR pSecurityDescriptor;
    DWORD Attributes;
    DWORD Priority;
    DWORD DefaultPriority;
    DWORD StartTime;
    DWORD UntilTime;
    DWORD Status;
    DWORD cJobs;
    DWORD AveragePPM;
};
using LPPRINTER_INFO_2W = PRINTER_INFO_2W*;

struct PRINTER_INFO_4W
{
    LPWSTR pPrinterName;
    LPWSTR pServerName;
    DWORD Attributes;
};
using LPPRINTER_INFO_4W = PRINTER_INFO_4W*;

struct PRINTER_INFO_5W
{
    LPWSTR pPrinterName;
    LPWSTR pPortName;
    DWORD Attributes;
    DWORD DeviceNotSelectedTimeout;
    DWORD TransmissionRetryTimeout;
};
using LPPRINTER_INFO_5W = PRINTER_INFO_5W*;

struct PRINTER_DEFAULTSW
{
    LPWSTR pDatatype;
    LPDEVMODEW pDevMode;
    ACCESS_MASK DesiredAccess;
};
using LPPRINTER_DEFAULTSW = PRINTER_DEFAULTSW*;

// Without defaults, or with DesiredAccess 0, the handle may use the printer but not change it. A null name opens the
// print server itself, which is enough for forms.
WINPORT_API BOOL WINAPI OpenPrinterW(LPWSTR name, LPHANDLE printer, LPPRINTER_DEFAULTSW defaults);
WINPORT_API BOOL WINAPI ClosePrinter(HANDLE printer);
// Levels 1, 2, 4 and 5.
WINPORT_API BOOL WINAPI GetPrinterW(HANDLE printer, DWORD level, LPBYTE info, DWORD size, LPDWORD needed);
// Level 2, command 0: everything but the name and the security descriptor. A null port, driver, print processor or
// devmode leaves what was there. Needs PRINTER_ACCESS_ADMINISTER.
WINPORT_API BOOL WINAPI SetPrinterW(HANDLE printer, DWORD level, LPBYTE info, DWORD command);
// Level 2. The handle that is returned has PRINTER_ALL_ACCESS; null on failure. The driver's configuration module gets
// PRINTER_EVENT_INITIALIZE (winddiui.h) when it exports DrvPrinterEvent.
WINPORT_API HANDLE WINAPI AddPrinterW(LPWSTR server, DWORD level, LPBYTE info);
// Needs PRINTER_ACCESS_ADMINISTER; the handle is still to be closed.
WINPORT_API BOOL WINAPI DeletePrinter(HANDLE printer);
// Levels 1, 2, 4 and 5; PRINTER_ENUM_LOCAL, or PRINTER_ENUM_NAME with a null name. Ordered by name.
WINPORT_API BOOL WINAPI EnumPrintersW(DWORD flags, LPWSTR name, DWORD level, LPBYTE info, DWORD size, LPDWORD needed,
                                      LPDWORD returned);

// ---- Printer data ---------------------------------------------------------------------------------------------------

// The forms without a key name use the key "PrinterDriverData". A buffer that is too small gives ERROR_MORE_DATA, an
// unknown value ERROR_FILE_NOT_FOUND. Writing needs PRINTER_ACCESS_ADMINISTER.
WINPORT_API DWORD WINAPI GetPrinterDataW(HANDLE printer, LPWSTR valueName, LPDWORD type, LPBYTE data, DWORD size,
                                         LPDWORD needed);
WINPORT_API DWORD WINAPI SetPrinterDataW(HANDLE printer, LPWSTR valueName, DWORD type, LPBYTE data, DWORD size);
WINPORT_API DWORD WINAPI GetPrinterDataExW(HANDLE printer, LPCWSTR keyName, LPCWSTR valueName, LPDWORD type,
                                           LPBYTE data, DWORD size, LPDWORD needed);
WINPORT_API DWORD WINAPI SetPrinterDataExW(HANDLE printer, LPCWSTR keyName, LPCWSTR valueName, DWORD type, LPBYTE data,
                                           DWORD size);
WINPORT_API DWORD WINAPI DeletePrinterDataExW(HANDLE printer, LPCWSTR keyName, LPCWSTR valueName);

// ---- Drivers --------------------------------------------------------------------------------------------------------

inline constexpr DWORD APD_STRICT_UPGRADE = 0x00000001;
inline constexpr DWORD APD_STRICT_DOWNGRADE = 0x00000002;
inline constexpr DWORD APD_COPY_ALL_FILES = 0x00000004;
inline constexpr DWORD APD_COPY_NEW_FILES = 0x00000008;
inline constexpr DWORD APD_COPY_FROM_DIRECTORY = 0x00000010;

inline constexpr DWORD DPD_DELETE_UNUSED_FILES = 0x00000001;
inline constexpr DWORD DPD_DELETE_SPECIFIC_VERSION = 0x00000002;
inline constexpr DWORD DPD_DELETE_ALL_FILES = 0x00000004;

struct DRIVER_INFO_1W
{
    LPWSTR pName;
};
using LPDRIVER_INFO_1W = DRIVER_INFO_1W*;

struct DRIVER_INFO_2W
{
    DWORD cVersion;
    LPWSTR pName;
    LPWSTR pEnvironment;
    LPWSTR pDriverPath;
    LPWSTR pDataFile;
    LPWSTR pConfigFile;
};
using LPDRIVER_INFO_2W = DRIVER_INFO_2W*;

struct DRIVER_INFO_3W
{
    DWORD cVersion;
    LPWSTR pName;
    LPWSTR pEnvironment;
    LPWSTR pDriverPath;
    LPWSTR pDataFile;
    LPWSTR pConfigFile;
    LPWSTR pHelpFile;
    LPWSTR pDependentFiles; // texts, each zero-terminated, and one more zero
    LPWSTR pMonitorName;
    LPWSTR pDefaultDataType;
};
using LPDRIVER_INFO_3W = DRIVER_INFO_3W*;

struct DRIVER_INFO_4W
{
    DWORD cVersion;
    LPWSTR pName;
    LPWSTR pEnvironment;
    LPWSTR pDriverPath;
    LPWSTR pDataFile;
    LPWSTR pConfigFile;
    LPWSTR pHelpFile;
    LPWSTR pDependentFiles;
    LPWSTR pMonitorName;
    LPWSTR pDefaultDataType;
    LPWSTR pszzPreviousNames;
};
using LPDRIVER_INFO_4W = DRIVER_INFO_4W*;

struct DRIVER_INFO_6W
{
    DWORD cVersion;
    LPWSTR pName;
    LPWSTR pEnvironment;
    LPWSTR pDriverPath;
    LPWSTR pDataFile;
    LPWSTR pConfigFile;
    LPWSTR pHelpFile;
    LPWSTR pDependentFiles;
    LPWSTR pMonitorName;
    LPWSTR pDefaultDataType;
    LPWSTR pszzPreviousNames;
    FILETIME ftDriverDate;
    DWORDLONG dwlDriverVersion;
    LPWSTR pszMfgName;
    LPWSTR pszOEMUrl;
    LPWSTR pszHardwareID;
    LPWSTR pszProvider;
};
using LPDRIVER_INFO_6W = DRIVER_INFO_6W*;

// Levels 2, 3, 4 and 6. Copies the driver's files into the driver directory and records them there; the environment is
// "Windows x64" (or null), the version 3. A named "x.dll" that is not there stands for its sibling "x.so", which is
// copied; what is recorded keeps the ".dll". With APD_COPY_FROM_DIRECTORY sources may be full paths, else they must
// already lie in the driver directory. A missing source gives ERROR_FILE_NOT_FOUND and records nothing.
WINPORT_API BOOL WINAPI AddPrinterDriverExW(LPWSTR server, DWORD level, LPBYTE info, DWORD fileCopyFlags);
WINPORT_API BOOL WINAPI DeletePrinterDriverExW(LPWSTR server, LPWSTR environment, LPWSTR driverName, DWORD deleteFlag,
                                               DWORD versionFlag);
// Levels 1, 2, 3, 4 and 6.
WINPORT_API BOOL WINAPI GetPrinterDriverW(HANDLE printer, LPWSTR environment, DWORD level, LPBYTE info, DWORD size,
                                          LPDWORD needed);
WINPORT_API BOOL WINAPI EnumPrinterDriversW(LPWSTR server, LPWSTR environment, DWORD level, LPBYTE info, DWORD size,
                                            LPDWORD needed, LPDWORD returned);
// Level 1: the folder into which an installer may put a driver's files. As on Windows it is the folder above the
// version's own, in which the files end.
WINPORT_API BOOL WINAPI GetPrinterDriverDirectoryW(LPWSTR server, LPWSTR environment, DWORD level, LPBYTE directory,
                                                   DWORD size, LPDWORD needed);

// ---- Forms ----------------------------------------------------------------------------------------------------------

inline constexpr DWORD FORM_USER = 0x00000000;
inline constexpr DWORD FORM_BUILTIN = 0x00000001;
inline constexpr DWORD FORM_PRINTER = 0x00000002;

struct FORM_INFO_1W
{
    DWORD Flags;
    LPWSTR pName;
    SIZEL Size; // thousandths of a millimetre
    RECTL ImageableArea;
};
using LPFORM_INFO_1W = FORM_INFO_1W*;

// Forms belong to the server, whatever handle asks: the built-in ones first, then the users' in order of their making.
WINPORT_API BOOL WINAPI AddFormW(HANDLE printer, DWORD level, LPBYTE form);
WINPORT_API BOOL WINAPI DeleteFormW(HANDLE printer, LPWSTR formName);
WINPORT_API BOOL WINAPI GetFormW(HANDLE printer, LPWSTR formName, DWORD level, LPBYTE form, DWORD size, LPDWORD needed);
WINPORT_API BOOL WINAPI EnumFormsW(HANDLE printer, DWORD level, LPBYTE forms, DWORD size, LPDWORD needed,
                                   LPDWORD returned);

// ---- The driver's answers -------------------------------------------------------------------------------------------

inline constexpr DWORD DM_UPDATE = 1;
inline constexpr DWORD DM_COPY = 2;
inline constexpr DWORD DM_PROMPT = 4;
inline constexpr DWORD DM_MODIFY = 8;
inline constexpr DWORD DM_IN_BUFFER = DM_MODIFY;
inline constexpr DWORD DM_IN_PROMPT = DM_PROMPT;
inline constexpr DWORD DM_OUT_BUFFER = DM_COPY;
inline constexpr DWORD DM_OUT_DEFAULT = DM_UPDATE;

inline constexpr LONG IDOK = 1;
inline constexpr LONG IDCANCEL = 2;

inline constexpr WORD DC_FIELDS = 1;
inline constexpr WORD DC_PAPERS = 2;
inline constexpr WORD DC_PAPERSIZE = 3;
inline constexpr WORD DC_MINEXTENT = 4;
inline constexpr WORD DC_MAXEXTENT = 5;
inline constexpr WORD DC_BINS = 6;
inline constexpr WORD DC_DUPLEX = 7;
inline constexpr WORD DC_SIZE = 8;
inline constexpr WORD DC_EXTRA = 9;
inline constexpr WORD DC_VERSION = 10;
inline constexpr WORD DC_DRIVER = 11;
inline constexpr WORD DC_BINNAMES = 12;
inline constexpr WORD DC_ENUMRESOLUTIONS = 13;
inline constexpr WORD DC_FILEDEPENDENCIES = 14;
inline constexpr WORD DC_TRUETYPE = 15;
inline constexpr WORD DC_PAPERNAMES = 16;
inline constexpr WORD DC_ORIENTATION = 17;
inline constexpr WORD DC_COPIES = 18;
inline constexpr WORD DC_BINADJUST = 19;
inline constexpr WORD DC_EMF_COMPLIANT = 20;
inline constexpr WORD DC_DATATYPE_PRODUCED = 21;
inline constexpr WORD DC_COLLATE = 22;
inline constexpr WORD DC_MANUFACTURER = 23;
inline constexpr WORD DC_MODEL = 24;
inline constexpr WORD DC_PERSONALITY = 25;
inline constexpr WORD DC_PRINTRATE = 26;
inline constexpr WORD DC_PRINTRATEUNIT = 27;
inline constexpr DWORD PRINTRATEUNIT_PPM = 1; // answers DC_PRINTRATEUNIT
inline constexpr WORD DC_PRINTERMEM = 28;
inline constexpr WORD DC_MEDIAREADY = 29;
inline constexpr WORD DC_STAPLE = 30;
inline constexpr WORD DC_PRINTRATEPPM = 31;
inline constexpr WORD DC_COLORDEVICE = 32;
inline constexpr WORD DC_NUP = 33;
inline constexpr WORD DC_MEDIATYPENAMES = 34;
inline constexpr WORD DC_MEDIATYPES = 35;

// Both load the configuration module of the printer's driver, if it is not the last one that was asked, and ask its
// DrvDeviceCapabilities or DrvDocumentPropertySheets. -1, with the last error, when there is no printer of that name or
// no module that answers; otherwise the module's own answer.
WINPORT_API int WINAPI DeviceCapabilitiesW(LPCWSTR device, LPCWSTR port, WORD capability, LPWSTR output,
                                           const DEVMODEW* devMode);
WINPORT_API LONG WINAPI DocumentPropertiesW(HWND window, HANDLE printer, LPWSTR deviceName, PDEVMODEW devModeOutput,
                                            PDEVMODEW devModeInput, DWORD mode);
