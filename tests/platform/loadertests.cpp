// Modules: loading, references, names and functions. The module platform_sample lies beside this program.
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/wine.h"
#include "tests/platform/withlasterror.h"
#include "utilitiesstaticlib/wideliteral.h"

namespace
{

constexpr DWORD kUnchanged = GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
constexpr DWORD kByAddress = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS;
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

HMODULE LoadSample()
{
    HMODULE const sample = LoadLibraryExW(BesideProgram(kSample).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    EXPECT_NE(sample, nullptr);
    return sample;
}

void* FunctionOf(HMODULE module)
{
    return reinterpret_cast<void*>(GetProcAddress(module, "SampleFunction"));
}

} // namespace

TEST(Loader, KeepsAModuleUntilItsLastReferenceIsGivenBack)
{
    ASSERT_EQ(GetModuleHandleW(kSample), nullptr) << "left behind by another test";
    HMODULE const first = LoadSample();
    EXPECT_EQ(LoadSample(), first);                    // 2
    EXPECT_EQ(LoadLibraryW(kSample), first);           // 3, by its bare name
    EXPECT_EQ(LoadLibraryA("PLATFORM_SAMPLE"), first); // 4, without extension
    HMODULE found = nullptr;
    EXPECT_TRUE(GetModuleHandleExW(0, kSample, &found)); // 5
    EXPECT_EQ(found, first);
    EXPECT_TRUE(GetModuleHandleExW(kUnchanged, kSample, &found));
    EXPECT_EQ(GetModuleHandleW(BesideProgram(kSample).c_str()), first);
    for (int left = 5; left > 0; --left)
    {
        EXPECT_NE(FunctionOf(first), nullptr) << left;
        EXPECT_TRUE(FreeLibrary(first));
    }
    EXPECT_EQ(GetModuleHandleW(kSample), nullptr);
    EXPECT_EQ(WithLastError([first] { return FreeLibrary(first); }), std::pair(FALSE, DWORD{ERROR_MOD_NOT_FOUND}));

    // The file is found, not a module of this name in the process, whatever the case.
    for (const WideString& file : {BesideProgram(W("Platform_SAMPLE.dll")), WideString(W("PLATFORM_SAMPLE.DLL"))})
    {
        HMODULE const module = LoadLibraryExW(file.c_str(), nullptr, 0);
        ASSERT_NE(module, nullptr) << std::filesystem::path(file);
        EXPECT_EQ(GetModuleHandleW(BesideProgram(W("platform_SAMPLE.DLL")).c_str()), module);
        EXPECT_TRUE(FreeLibrary(module));
    }
}

TEST(Loader, FindsAModuleByAnAddressWithinIt)
{
    HMODULE const sample = LoadSample();
    HMODULE found = nullptr;
    const auto find = [&found](DWORD flags, const void* address)
    {
        return GetModuleHandleExW(kByAddress | flags, static_cast<LPCWSTR>(address), &found);
    };
    EXPECT_TRUE(find(0, FunctionOf(sample)));
    EXPECT_EQ(found, sample);
    EXPECT_TRUE(FreeLibrary(sample));
    EXPECT_NE(GetModuleHandleW(kSample), nullptr) << "the address form took a reference";
    EXPECT_TRUE(FreeLibrary(sample));

    static const int ours = 0;
    EXPECT_TRUE(find(kUnchanged, &ours));
    EXPECT_EQ(found, GetModuleHandleW(nullptr));
    const std::vector<int> heap(100);
    EXPECT_EQ(WithLastError([&] { return find(kUnchanged, heap.data()); }),
              std::pair(FALSE, DWORD{ERROR_MOD_NOT_FOUND}));
    EXPECT_EQ(found, nullptr);
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
        const auto load = [&file = file]
        {
            return LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
        };
        EXPECT_EQ(WithLastError(load), std::pair(HMODULE{}, error));
    }
    std::filesystem::remove(notAModule);

    // Names of functions are exact, and what the module imports is not its own.
    HMODULE const sample = LoadSample();
    for (const char* const name : {"samplefunction", "", "CoTaskMemAlloc", "malloc"})
        EXPECT_EQ(WithLastError([&] { return GetProcAddress(sample, name); }),
                  std::pair(FARPROC{}, DWORD{ERROR_PROC_NOT_FOUND}))
            << name;
    EXPECT_TRUE(FreeLibrary(sample));
    EXPECT_NE(GetProcAddress(GetModuleHandleA("kernel32.dll"), "GetModuleHandleExA"), nullptr);
    EXPECT_EQ(WithLastError([sample] { return FileNameOf(sample); }),
              std::pair(WideString(), DWORD{ERROR_MOD_NOT_FOUND}));
}

TEST(Loader, FileNamesThatDoNotFitAreCutAndTerminated)
{
    const WideString whole = FileNameOf(nullptr);
    ASSERT_TRUE(std::filesystem::exists(std::filesystem::path(whole)));
    const auto length = static_cast<DWORD>(whole.size());
    std::vector<WCHAR> room(length + 2, W('~'));
    EXPECT_EQ(GetModuleFileNameW(nullptr, room.data(), length + 1), length);
    EXPECT_EQ(WStringView(room.data()), whole);

    room.assign(length + 2, W('~'));
    EXPECT_EQ(WithLastError([&] { return GetModuleFileNameW(nullptr, room.data(), length); }),
              std::pair(length, DWORD{ERROR_INSUFFICIENT_BUFFER}));
    EXPECT_EQ(room[length], W('~'));
    if (!IsWine()) // which leaves a name that was cut without its terminator, as Windows XP did
    {
        EXPECT_EQ(WStringView(room.data()), whole.substr(0, length - 1));
    }
}
