// Modules over the dynamic loader.
#include <windows.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <new>
#include <string>
#include <string_view>

#include <dlfcn.h>

#include "core/loadedimages.h"
#include "core/modulenames.h"
#include "core/utf.h"
#include "winport/faultinjection.h"

namespace
{

using namespace winport;

// A result that stands for failure in every function here: null, FALSE and 0.
struct Failure
{
    explicit Failure(DWORD error)
    {
        SetLastError(error);
    }

    template <class Result>
    operator Result() const
    {
        return Result{};
    }
};

std::optional<LoadedImage> ThisLayer()
{
    return FindImageAt(reinterpret_cast<const void*>(&FreeLibrary));
}

std::optional<LoadedImage> FindByName(std::string_view name)
{
    if (IsSystemModule(name))
        return ThisLayer();
    if (HasFolder(name))
    {
        const std::string file = FindModuleFile(name);
        return file.empty() ? std::nullopt : FindImageByFile(file.c_str()); // an empty name is the executable's
    }
    for (const std::string& candidate : ModuleFileNames(name))
    {
        if (auto image = FindImageByBaseName(candidate))
            return image;
    }
    return std::nullopt;
}

bool IsElfFile(const std::string& path)
{
    constexpr std::string_view kMagic = "\177ELF";
    std::array<char, kMagic.size()> start{};
    std::ifstream(path, std::ios::binary).read(start.data(), start.size());
    return std::string_view(start.data(), start.size()) == kMagic;
}

// A file, or for a bare name that has none beside the executable whatever the system's folders hold.
LoaderReference LoadByName(std::string_view name, const std::string& file)
{
    if (!file.empty())
        return Load(file.c_str());
    if (HasFolder(name))
        return nullptr;
    for (const std::string& candidate : ModuleFileNames(name))
    {
        if (auto reference = Load(candidate.c_str()))
            return reference;
    }
    return nullptr;
}

HMODULE LoadModule(std::string_view name)
{
    if (name.empty())
        return Failure(ERROR_MOD_NOT_FOUND);
    if (PlatformCallMustFail())
        return Failure(ERROR_NOT_ENOUGH_MEMORY);

    const std::optional<LoadedImage> loaded = FindByName(name);
    const std::string file = loaded ? std::string() : FindModuleFile(name);
    LoaderReference reference = loaded ? Reference(*loaded) : LoadByName(name, file);
    const std::optional<LoadedImage> image = ImageOf(reference);
    if (!image)
        return Failure(!file.empty() && !IsElfFile(file) ? ERROR_BAD_EXE_FORMAT : ERROR_MOD_NOT_FOUND);
    static_cast<void>(reference.release()); // the caller's from now on, until FreeLibrary
    return image->module;
}

BOOL FindModule(DWORD flags, const std::optional<LoadedImage>& image, HMODULE* module)
{
    LoaderReference reference = image ? Reference(*image) : nullptr;
    if (reference == nullptr)
        return Failure(ERROR_MOD_NOT_FOUND);
    if ((flags & GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT) == 0)
        static_cast<void>(reference.release()); // the caller's
    *module = image->module;
    return TRUE;
}

// Checks what the two forms of GetModuleHandleEx have in common, and clears the out-parameter.
bool CanFindModule(DWORD flags, HMODULE* module)
{
    constexpr DWORD kKnown = GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS;
    if (module != nullptr)
        *module = nullptr;
    if (module == nullptr || (flags & ~kKnown) != 0)
        return Failure(ERROR_INVALID_PARAMETER);
    if (PlatformCallMustFail())
        return Failure(ERROR_NOT_ENOUGH_MEMORY);
    return true;
}

std::string PathOf(const LoadedImage& image)
{
    return image.IsExecutable() ? ExecutablePath() : AbsolutePath(image.path);
}

// Cut and terminated if it does not fit, as Windows has done since Vista.
template <class Unit>
DWORD GiveFileName(const std::basic_string<Unit>& path, Unit* target, DWORD size)
{
    if (size == 0)
        return Failure(ERROR_INSUFFICIENT_BUFFER);
    const std::size_t copied = std::min<std::size_t>(path.size(), size - 1);
    *std::copy_n(path.data(), copied, target) = 0;
    if (copied == path.size())
        return static_cast<DWORD>(copied);
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return size;
}

template <class Unit, class Convert>
DWORD ModuleFileName(HMODULE module, Unit* fileName, DWORD size, Convert convert)
{
    const std::optional<LoadedImage> image = module == nullptr ? FindExecutable() : FindImage(module);
    if (!image)
        return Failure(ERROR_MOD_NOT_FOUND);
    if (PlatformCallMustFail())
        return Failure(ERROR_NOT_ENOUGH_MEMORY);
    return GiveFileName(convert(PathOf(*image)), fileName, size);
}

// The module's name in UTF-8; a name that is no text, null or with lone surrogates, is empty: no file has it.
std::string NameOf(LPCWSTR name)
{
    std::string text;
    if (name != nullptr && !ToUtf8Strict(name, text))
        text.clear();
    return text;
}

} // namespace

HMODULE WINAPI LoadLibraryExA(LPCSTR fileName, HANDLE reserved, DWORD flags)
try
{
    if (fileName == nullptr || reserved != nullptr || (flags & ~LOAD_WITH_ALTERED_SEARCH_PATH) != 0)
        return Failure(ERROR_INVALID_PARAMETER);
    return LoadModule(fileName);
}
catch (const std::bad_alloc&)
{
    return Failure(ERROR_NOT_ENOUGH_MEMORY);
}

HMODULE WINAPI LoadLibraryExW(LPCWSTR fileName, HANDLE reserved, DWORD flags)
try
{
    return LoadLibraryExA(fileName != nullptr ? NameOf(fileName).c_str() : nullptr, reserved, flags);
}
catch (const std::bad_alloc&)
{
    return Failure(ERROR_NOT_ENOUGH_MEMORY);
}

HMODULE WINAPI LoadLibraryA(LPCSTR fileName)
{
    return LoadLibraryExA(fileName, nullptr, 0);
}

HMODULE WINAPI LoadLibraryW(LPCWSTR fileName)
{
    return LoadLibraryExW(fileName, nullptr, 0);
}

BOOL WINAPI FreeLibrary(HMODULE module)
{
    if (module == nullptr)
        return Failure(ERROR_INVALID_HANDLE);
    const std::optional<LoadedImage> image = FindImage(module);
    const LoaderReference reference = image ? Reference(*image) : nullptr;
    if (reference == nullptr)
        return Failure(ERROR_MOD_NOT_FOUND);
    // Gives the caller's reference back. A module that is there as an import of another has none to give back: the
    // loader refuses, and the module stays, as it does on Windows.
    dlclose(reference.get());
    return TRUE;
}

FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR procName)
{
    // A number below 64 K in place of a name is an ordinal, which no module has here.
    constexpr ULONG_PTR kFirstName = 0x10000;
    const std::optional<LoadedImage> image = module == nullptr ? FindExecutable() : FindImage(module);
    const LoaderReference reference = image ? Reference(*image) : nullptr;
    if (reference == nullptr)
        return Failure(ERROR_MOD_NOT_FOUND);
    if (reinterpret_cast<ULONG_PTR>(procName) < kFirstName || PlatformCallMustFail())
        return Failure(ERROR_PROC_NOT_FOUND);

    void* const address = dlsym(reference.get(), procName);
    // The loader also searches what the module imports; a Windows module answers for itself only.
    const std::optional<LoadedImage> home = address != nullptr ? FindImageAt(address) : std::nullopt;
    if (!home || home->module != image->module)
        return Failure(ERROR_PROC_NOT_FOUND);
    return reinterpret_cast<FARPROC>(address);
}

BOOL WINAPI GetModuleHandleExA(DWORD flags, LPCSTR moduleName, HMODULE* module)
try
{
    if (!CanFindModule(flags, module))
        return FALSE;
    if ((flags & GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS) != 0)
        return FindModule(flags, FindImageAt(moduleName), module);
    return FindModule(flags, moduleName == nullptr ? FindExecutable() : FindByName(moduleName), module);
}
catch (const std::bad_alloc&)
{
    return Failure(ERROR_NOT_ENOUGH_MEMORY);
}

BOOL WINAPI GetModuleHandleExW(DWORD flags, LPCWSTR moduleName, HMODULE* module)
try
{
    if (moduleName == nullptr || (flags & GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS) != 0)
        return GetModuleHandleExA(flags, reinterpret_cast<LPCSTR>(moduleName), module);
    return GetModuleHandleExA(flags, NameOf(moduleName).c_str(), module);
}
catch (const std::bad_alloc&)
{
    return Failure(ERROR_NOT_ENOUGH_MEMORY);
}

HMODULE WINAPI GetModuleHandleA(LPCSTR moduleName)
{
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT, moduleName, &module);
    return module;
}

HMODULE WINAPI GetModuleHandleW(LPCWSTR moduleName)
{
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT, moduleName, &module);
    return module;
}

DWORD WINAPI GetModuleFileNameA(HMODULE module, LPSTR fileName, DWORD size)
try
{
    return ModuleFileName(module, fileName, size, [](std::string path) { return path; });
}
catch (const std::bad_alloc&)
{
    return Failure(ERROR_NOT_ENOUGH_MEMORY);
}

DWORD WINAPI GetModuleFileNameW(HMODULE module, LPWSTR fileName, DWORD size)
try
{
    return ModuleFileName(module, fileName, size, [](const std::string& path) { return ToUtf16(path); });
}
catch (const std::bad_alloc&)
{
    return Failure(ERROR_NOT_ENOUGH_MEMORY);
}
