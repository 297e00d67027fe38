// TavlenUtilities: Base64, module paths, and where in the registry the driver's settings live.
#pragma once

#include <windows.h>

#include <tvutil/cxstring.h>

class TVUTIL_API TavlenUtilities
{
public:
    // ---- Base64 (RFC 4648, the "+/" alphabet) ----
    // Lengths are counted in characters and bytes; nothing is terminated.

    static constexpr DWORD kBase64Default = 0;   // padded, a line break (CR LF) after every 76 characters but the last
    static constexpr DWORD kBase64NoPadding = 1; // the last group without its '='
    static constexpr DWORD kBase64NoLineBreaks =
        2; // one line, padded; what the driver data of a ticket is written with

    // Exactly the characters that Base64Encode writes; 0 for a size that is negative or whose text an int cannot count.
    [[nodiscard]] static int Base64EncodeGetRequiredLength(int sourceLength, DWORD flags) noexcept;

    // `destinationLength` is the room and becomes the number of characters written. False, with nothing written and
    // the length that is required (0 when there is none), when the room is too small or an argument makes no sense.
    static bool Base64Encode(const BYTE* source, int sourceLength, WCHAR* destination, int* destinationLength,
                             DWORD flags) noexcept;

    // The most bytes that a text of this length can hold; 0 for a negative length.
    [[nodiscard]] static int Base64DecodeGetRequiredLength(int sourceLength) noexcept;

    // Reads what Base64Encode writes with any flags: blanks, tabs and line breaks are skipped, padding is complete or
    // absent. `destinationLength` is the room and becomes the number of bytes written. False, with the length 0, for
    // a text with other characters, with characters behind the padding, with an impossible length or with bits in
    // its last character that belong to no byte, and when the bytes do not fit; what was decoded until then may stand
    // in the room, never anything behind it.
    static bool Base64Decode(const WCHAR* source, int sourceLength, BYTE* destination, int* destinationLength) noexcept;

    // ---- Modules and paths ----

    // The full path of the module that contains a function or an object; empty when no module does. Callers pass a
    // function of their own to find themselves.
    [[nodiscard]] static CXString getModulePath(const void* address);
    template <class Result, class... Arguments>
    [[nodiscard]] static CXString getModulePath(Result (*function)(Arguments...))
    {
        return getModulePath(reinterpret_cast<const void*>(function));
    }

    // The file name of the program that this process runs, without a folder.
    [[nodiscard]] static CXString GetExecutableName();

    // The directory of a file name with its trailing separator, which may be either one; empty without a directory.
    [[nodiscard]] static CXString getPathFromFileName(WStringView fileName);

    // ---- Registry ----

    // HKEY_LOCAL_MACHINE in a process of the print system, where no user's hive belongs to the caller, else
    // HKEY_CURRENT_USER.
    [[nodiscard]] static HKEY GetRegistryHiveByContext();
    [[nodiscard]] static HKEY GetRegistryHiveOfExecutable(WStringView executablePath) noexcept;
    // The spooler, the filter pipeline, and the host of isolated drivers, by file name.
    [[nodiscard]] static bool IsSpoolerOrFilterPipelineExecutable(WStringView executablePath) noexcept;

    // A key name for a port name. A name that a key can bear stays as it is. In any other, backslashes and control
    // characters become '_', the name is cut to 255 characters in all, and '~' with the CRC-32 of the name in lower
    // case (8 hexadecimal digits) keeps it apart from its likes; an empty name becomes "_~00000000". Ports whose
    // names differ in case only share a key, as the registry has it.
    [[nodiscard]] static CXString ConvertPortNameToRegistryKey(WStringView portName);
};
