// Modules: loading, references, names and functions. The module platform_sample lies beside this program.
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "tests/platform/withlasterror.h"
#include "utilitiesstaticlib/wideliteral.h"

namespace
{

const WCHAR* const kSample = W("platform_sample.dll");

WideString FileNameOf(HMODULE module)
{
    WCHAR path[4096] = {};
    return {path, GetModuleFileNameW(module, path, static_cast<DWORD>(std::size(path)))};
}

WideString BesideProgram(WStringView name)
{
    return std::filesystem::path(FileNameOf(nullptr)).replace_filename(name).string<WCHAR>();
}

void* FunctionOf(HMODULE module)
{
    return reinterpret_cast<void*>(GetProcAddress(module, "DrvDeviceCapabilities"));
}

} // namespace

TEST(Loader, KeepsAModuleUntilItsLastReferenceIsGivenBack)
{
    ASSERT_EQ(GetModuleHandleW(kSample), nullptr) << "left behind by another test";
    HMODULE const first = LoadLibraryExW(BesideProgram(kSample).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    EXPECT_EQ(LoadLibraryW(kSample), first);           // 2, by its bare name
    EXPECT_EQ(LoadLibraryA("PLATFORM_SAMPLE"), first); // 3, without extension
    HMODULE found = nullptr;
    EXPECT_TRUE(GetModuleHandleExW(0, kSample, &found)); // 4
    for (int left = 4; left > 0; --left)
    {
        EXPECT_NE(FunctionOf(first), nullptr) << left;
        EXPECT_TRUE(FreeLibrary(first));
    }
    EXPECT_EQ(GetModuleHandleW(kSample), nullptr);
    EXPECT_EQ(WithLastError([first] { return FreeLibrary(first); }), std::pair(FALSE, DWORD{ERROR_MOD_NOT_FOUND}));

    // The file is found, not a module of this name in the process, whatever the case.
    for (const WideString& file : {BesideProgram(W("Platform_SAMPLE.dll")), WideString(W("PLATFORM_SAMPLE.DLL"))})
    {
        ASSERT_NE(LoadLibraryExW(file.c_str(), nullptr, 0), nullptr) << std::filesystem::path(file);
        EXPECT_TRUE(FreeLibrary(GetModuleHandleW(BesideProgram(W("platform_SAMPLE.DLL")).c_str())));
    }
}

TEST(Loader, WhatCannotBeLoadedOrFoundSaysWhy)
{
    const std::filesystem::path notAModule(BesideProgram(W("platform_notamodule.dll")));
    std::ofstream(notAModule) << "This is a text, and not a short one, that somebody gave the name of a module.\n";
    const std::pair<WideString, DWORD> files[] = {
        {BesideProgram(W("absent/platform_sample.dll")), ERROR_MOD_NOT_FOUND},
        {W("platform_absent.dll"), ERROR_MOD_NOT_FOUND},
        {notAModule.string<WCHAR>(), ERROR_BAD_EXE_FORMAT},
    };
    for (const auto& [file, error] : files)
    {
        SCOPED_TRACE(std::filesystem::path(file));
        EXPECT_EQ(WithLastError([&path = file] { return LoadLibraryExW(path.c_str(), nullptr, 0); }),
                  std::pair(HMODULE{}, error));
    }
    std::filesystem::remove(notAModule);

    // Names of functions are exact, and what the module imports is not its own.
    HMODULE const sample = LoadLibraryW(kSample);
    for (const char* const name : {"drvdevicecapabilities", "", "CoTaskMemFree", "malloc"})
        EXPECT_EQ(WithLastError([&] { return GetProcAddress(sample, name); }),
                  std::pair(FARPROC{}, DWORD{ERROR_PROC_NOT_FOUND}))
            << name;
    EXPECT_TRUE(FreeLibrary(sample));
    EXPECT_NE(GetProcAddress(GetModuleHandleA("kernel32.dll"), "GetModuleHandleExA"), nullptr);
    EXPECT_EQ(WithLastError([sample] { return FileNameOf(sample); }),
              std::pair(WideString(), DWORD{ERROR_MOD_NOT_FOUND}));
}
