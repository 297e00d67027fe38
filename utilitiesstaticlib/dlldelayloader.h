// DllDelayLoader: the delay-load hook of a module. The modules that it delay-loads are found in the folder of its own
// file, wherever the process was started: a print service does not start where the driver's files lie.
//
// Linked statically, so every module has its own. On Windows linking is all: dlldelayloaderhook.cpp sets the hook and
// frees the modules; tavlen_delay_load (cmake/DelayLoad.cmake) does the rest.
//
// What callers of a delay-loaded function must know:
//   - a module that cannot be loaded becomes ExceptionDelayLoadDllLoadFailure out of the call, at every call until it
//     can be loaded. Through a function declared noexcept it would end the process: delay-loaded ones are not;
//   - only functions can be delay-loaded, no data: a use of the module's variables or vtables (an inline constructor of
//     a class whose vtable is there) does not link. Type information is no obstacle, users have their own;
//   - the first call keeps the integer arguments in registers only, so no floating-point arguments by value;
//   - it must not happen in DllMain, where modules must not be loaded.
#pragma once

#include <windows.h>

#include <delayimp.h>

#include <atomic>
#include <cstddef>
#include <string>
#include <vector>

#include "utilitiesstaticlib/dlldelayloaderplatform.h"
#include "utilitiesstaticlib/slimlock.h"

class DllDelayLoader
{
public:
    // In characters of the ANSI code page, without the terminator. A longer path is never tried: cut, it would name
    // another file.
    static constexpr std::size_t kLongestPath = 261;

    // The one of the module that this is linked into.
    static DllDelayLoader& Instance() noexcept;

    // The platform must outlive it.
    constexpr explicit DllDelayLoader(DllDelayLoaderPlatform& platform) noexcept : m_platform(platform)
    {
    }
    DllDelayLoader(const DllDelayLoader&) = delete;
    DllDelayLoader& operator=(const DllDelayLoader&) = delete;

    // On from the start. Off, modules are searched as the platform searches.
    void SetEnabled(bool enabled) noexcept;

    // Serves the notifications of the delay-load helper. Only dliNotePreLoadLibrary gets an answer, the module's
    // handle; null leaves the module to the platform's own search. Throws ExceptionDelayLoadDllLoadFailure when the
    // module is not found, unless it is "tvutil_B.dll": that one the platform may search, since without it there are
    // no exceptions to throw. std::bad_alloc leaves nothing loaded. Any thread may call it.
    FARPROC Notify(unsigned notification, const DelayLoadInfo& info);

    // Frees what was loaded. For the moment when this module goes, and only then: its imports keep their addresses.
    void FreeModules() noexcept;

private:
    [[nodiscard]] HMODULE Load(const char* name);
    [[nodiscard]] HMODULE LoadAsRequested(const char* name);
    [[nodiscard]] HMODULE LoadFile(const std::string& path);
    [[nodiscard]] std::string FolderOf(HMODULE module);
    [[nodiscard]] HMODULE Keep(HMODULE module);
    void Remember(HMODULE module);

    DllDelayLoaderPlatform& m_platform;
    std::atomic<bool> m_enabled = true;
    // Guards the list, and is held only while the list is looked at: never over a call of the platform's loader, whose
    // own lock the module's end holds. A lock that is ready from the start, since a constructor of another file may be
    // the first caller of a delay-loaded function.
    SlimLock m_lock;
    std::vector<HMODULE> m_modules; // each once
};
