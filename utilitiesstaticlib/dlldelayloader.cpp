#include "utilitiesstaticlib/dlldelayloader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string_view>

#include <tvutil/exceptions.h>
#include <tvutil/throwexception.h>

namespace
{

constexpr WCHAR kSourceFile[] = W("utilitiesstaticlib\\dlldelayloader");
constexpr std::string_view kUtilityLibrary = "tvutil_B.dll";

// Where a module may lie: beside ours, or in the folder that a driver store keeps for drivers of version 3.
constexpr const char* kSubfolders[] = {"", "3\\"};

using GetModuleHandleExAFunction = BOOL(WINAPI*)(DWORD flags, LPCSTR moduleName, HMODULE* module);

constinit DllDelayLoaderPlatform systemPlatform;
constinit DllDelayLoader instance(systemPlatform);

// Of A to Z only. The utility library's own comparison would have to be loaded first.
bool EqualIgnoringCase(std::string_view left, std::string_view right)
{
    constexpr auto kLower = [](char c)
    {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    };
    return std::ranges::equal(left, right, {}, kLower, kLower);
}

} // namespace

DllDelayLoader& DllDelayLoader::Instance() noexcept
{
    return instance;
}

void DllDelayLoader::SetEnabled(bool enabled) noexcept
{
    m_enabled = enabled;
}

FARPROC DllDelayLoader::Notify(unsigned notification, const DelayLoadInfo& info)
{
    if (!m_enabled || notification != dliNotePreLoadLibrary)
        return nullptr;

    const bool isUtilityLibrary = EqualIgnoringCase(info.szDll, kUtilityLibrary);
    HMODULE const module = Load(info.szDll);
    if (module == nullptr && !isUtilityLibrary)
        ThrowException<ExceptionDelayLoadDllLoadFailure>(
            {W("DllDelayLoader::Notify"), kSourceFile},
            W("The module \"%s\" cannot be loaded from the driver's folder"), {CXString::FromUtf8(info.szDll)});
    return reinterpret_cast<FARPROC>(module);
}

HMODULE DllDelayLoader::Load(const char* name)
{
    const auto getModuleHandleEx =
        std::bit_cast<GetModuleHandleExAFunction>(m_platform.FindKernelFunction("GetModuleHandleExA"));
    if (getModuleHandleEx == nullptr)
        return LoadAsRequested(name);

    constexpr DWORD kFlags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    HMODULE own = nullptr;
    if (!getModuleHandleEx(kFlags, reinterpret_cast<LPCSTR>(&instance), &own))
        return nullptr;
    const std::string folder = FolderOf(own);
    if (folder.empty())
        return nullptr;
    for (const char* const subfolder : kSubfolders)
    {
        if (HMODULE const module = LoadFile(folder + subfolder + name))
            return module;
    }
    return nullptr;
}

// Where our own file lies cannot be asked (before Windows XP), so the platform searches.
HMODULE DllDelayLoader::LoadAsRequested(const char* name)
{
    // Not ours to free: no reference was taken.
    if (HMODULE const loaded = m_platform.GetModuleHandleA(name))
        return loaded;
    return Keep(m_platform.LoadLibraryA(name));
}

HMODULE DllDelayLoader::LoadFile(const std::string& path)
{
    if (path.size() > kLongestPath)
        return nullptr;
    return Keep(m_platform.LoadLibraryExA(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
}

// With the separator at its end; empty when the path is too long or not to be had.
std::string DllDelayLoader::FolderOf(HMODULE module)
{
    std::array<char, kLongestPath + 1> path{};
    const DWORD length = m_platform.GetModuleFileNameA(module, path.data(), static_cast<DWORD>(path.size()));
    // A path that does not fit is cut, and the answer is the size. Its end is not always terminated then.
    if (length >= path.size())
        return {};
    const std::string_view name(path.data(), length);
    const std::size_t separator = name.find_last_of("\\/");
    return separator != std::string_view::npos ? std::string(name.substr(0, separator + 1)) : std::string();
}

// A module that cannot be remembered would never be freed: it is given back at once.
HMODULE DllDelayLoader::Keep(HMODULE module)
{
    if (module == nullptr)
        return nullptr;
    try
    {
        Remember(module);
    }
    catch (...)
    {
        m_platform.FreeLibrary(module);
        throw;
    }
    return module;
}

// Each module once: when threads race for the first call, the delay-load helper gives every reference but one back.
void DllDelayLoader::Remember(HMODULE module)
{
    const SlimLock::Guard guard(m_lock);
    if (std::find(m_modules.begin(), m_modules.end(), module) == m_modules.end())
        m_modules.push_back(module);
}

void DllDelayLoader::FreeModules() noexcept
{
    std::vector<HMODULE> modules;
    {
        const SlimLock::Guard guard(m_lock);
        modules.swap(m_modules);
    }
    for (HMODULE const module : modules)
        m_platform.FreeLibrary(module);
}
