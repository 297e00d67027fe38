#include <tvutil/tavlenutilities.h>

#include <algorithm>
#include <iterator>

#include <tvutil/crc32.h>

#include "latincase.h"

namespace
{

constexpr WStringView kSeparators = W("\\/");

// The processes of the print system that load drivers.
constexpr WStringView kPrintSystemExecutables[] = {
    W("spoolsv.exe"),
    W("printfilterpipelinesvc.exe"),
    W("printisolationhost.exe"),
};

WStringView FileNameOf(WStringView path) noexcept
{
    const std::size_t separator = path.find_last_of(kSeparators);
    return separator == WStringView::npos ? path : path.substr(separator + 1);
}

// The file name of a module, null being the process's executable; empty when there is none.
CXString FileNameOfModule(HMODULE module)
{
    constexpr DWORD kLongestPath = 32768; // the platform's limit, with the terminator
    for (DWORD size = MAX_PATH;; size = std::min(size * 2, kLongestPath))
    {
        WideString path(size, WCHAR());
        const DWORD length = GetModuleFileNameW(module, path.data(), size);
        if (length < size || size == kLongestPath)
            return CXString(WStringView(path).substr(0, length));
    }
}

constexpr bool IsKeyCharacter(WCHAR character) noexcept
{
    return character != W('\\') && character >= WCHAR(0x20) && character != WCHAR(0x7F);
}

constexpr bool IsHighSurrogate(WCHAR character) noexcept
{
    return character >= WCHAR(0xD800) && character <= WCHAR(0xDBFF);
}

constexpr std::size_t kLongestKeyName = 255;

WideString Hexadecimal(ULONG value)
{
    constexpr WStringView kDigits = W("0123456789ABCDEF");
    WideString text;
    for (int shift = 28; shift >= 0; shift -= 4)
        text.push_back(kDigits[(value >> shift) & 0xF]);
    return text;
}

} // namespace

CXString TavlenUtilities::getModulePath(const void* address)
{
    HMODULE module = nullptr;
    constexpr DWORD kFlags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (address == nullptr || !GetModuleHandleExW(kFlags, static_cast<LPCWSTR>(address), &module))
        return CXString();
    return FileNameOfModule(module);
}

CXString TavlenUtilities::GetExecutableName()
{
    return CXString(FileNameOf(FileNameOfModule(nullptr)));
}

CXString TavlenUtilities::getPathFromFileName(WStringView fileName)
{
    return CXString(fileName.substr(0, fileName.size() - FileNameOf(fileName).size()));
}

HKEY TavlenUtilities::GetRegistryHiveByContext()
{
    return GetRegistryHiveOfExecutable(FileNameOfModule(nullptr));
}

HKEY TavlenUtilities::GetRegistryHiveOfExecutable(WStringView executablePath) noexcept
{
    return IsSpoolerOrFilterPipelineExecutable(executablePath) ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

bool TavlenUtilities::IsSpoolerOrFilterPipelineExecutable(WStringView executablePath) noexcept
{
    const WStringView name = FileNameOf(executablePath);
    return std::any_of(std::begin(kPrintSystemExecutables), std::end(kPrintSystemExecutables),
                       [name](WStringView known) { return latincase::Compare(known, name) == 0; });
}

CXString TavlenUtilities::ConvertPortNameToRegistryKey(WStringView portName)
{
    const bool fits = !portName.empty() && portName.size() <= kLongestKeyName &&
                      std::all_of(portName.begin(), portName.end(), IsKeyCharacter);
    if (fits)
        return CXString(portName);

    const CXString lower = CXString(portName).ToLower();
    const WideString suffix = W("~") + Hexadecimal(Crc32::GetCrc(lower.c_str(), lower.Length() * sizeof(WCHAR)));
    WideString key(portName.substr(0, kLongestKeyName - suffix.size()));
    if (key.size() < portName.size() && IsHighSurrogate(key.back()))
        key.pop_back(); // half a character is no text
    std::replace_if(
        key.begin(), key.end(), [](WCHAR character) { return !IsKeyCharacter(character); }, W('_'));
    if (key.empty())
        key = W("_");
    return CXString(key + suffix);
}
