// The order of the hook's tries, the paths it makes and what it frees, over a platform that the tests answer for.
#include "utilitiesstaticlib/dlldelayloader.h"

#include <algorithm>
#include <bit>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tvutil/exceptions.h>

namespace
{

using Calls = std::vector<std::string>;

HMODULE const kOwn = reinterpret_cast<HMODULE>(0x10000);
HMODULE const kFound = reinterpret_cast<HMODULE>(0x20000);

template <BOOL answer>
BOOL WINAPI FindOwn(DWORD flags, LPCSTR /*address*/, HMODULE* module)
{
    EXPECT_EQ(flags, DWORD{GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT});
    *module = answer ? kOwn : nullptr;
    return answer;
}

// A file name, a set of files, and what was asked for.
class AnsweringPlatform : public DllDelayLoaderPlatform
{
public:
    FARPROC findOwn = std::bit_cast<FARPROC>(&FindOwn<TRUE>);
    std::string ownFile = "C:\\drivers\\tvptpc_B.dll";
    std::set<std::string> files;
    std::set<std::string> loadedNames;
    Calls calls;
    std::vector<HMODULE> freed;

    FARPROC FindKernelFunction(LPCSTR name) override
    {
        EXPECT_STREQ(name, "GetModuleHandleExA");
        return findOwn;
    }
    // Cut and not terminated where it does not fit, as older systems did.
    DWORD GetModuleFileNameA(HMODULE module, LPSTR fileName, DWORD size) override
    {
        EXPECT_EQ(module, kOwn);
        std::copy_n(ownFile.c_str(), std::min<std::size_t>(ownFile.size() + 1, size), fileName);
        return std::min(static_cast<DWORD>(ownFile.size()), size);
    }
    HMODULE LoadLibraryExA(LPCSTR path, HANDLE reserved, DWORD flags) override
    {
        EXPECT_EQ(reserved, nullptr);
        EXPECT_EQ(flags, 8u);
        return Answer("file ", path, files);
    }
    HMODULE GetModuleHandleA(LPCSTR name) override
    {
        return Answer("loaded ", name, loadedNames);
    }
    HMODULE LoadLibraryA(LPCSTR name) override
    {
        return Answer("search ", name, files);
    }
    void FreeLibrary(HMODULE module) override
    {
        freed.push_back(module);
    }

private:
    HMODULE Answer(const char* call, const char* name, const std::set<std::string>& known)
    {
        calls.push_back(call + std::string(name));
        return known.contains(name) ? kFound : nullptr;
    }
};

DelayLoadInfo Asking(const char* name)
{
    DelayLoadInfo info{};
    info.cb = sizeof(info);
    info.szDll = name;
    return info;
}

HMODULE Load(DllDelayLoader& loader, const char* name)
{
    return reinterpret_cast<HMODULE>(loader.Notify(dliNotePreLoadLibrary, Asking(name)));
}

std::string Folder(std::size_t length)
{
    return "C:\\" + std::string(length - 4, 'f') + "\\";
}

constexpr FARPROC kMissing = nullptr;
const FARPROC kFailing = std::bit_cast<FARPROC>(&FindOwn<FALSE>);
const FARPROC kPresent = std::bit_cast<FARPROC>(&FindOwn<TRUE>);

enum class Outcome
{
    Loaded,   // and freed with the module
    Borrowed, // never freed
    Platform, // left to the platform's search
    Failure,
};

// Several files or calls stand in one text, with semicolons between.
struct Case
{
    const char* title;
    Outcome outcome;
    std::string module;
    std::string ownFile;
    std::string files;
    std::string calls;
    FARPROC findOwn = kPresent;
    std::string loadedNames = {};
};

Calls Parts(const std::string& text)
{
    Calls parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, ';');)
        parts.push_back(part);
    return parts;
}

std::set<std::string> Names(const std::string& text)
{
    const Calls parts = Parts(text);
    return {parts.begin(), parts.end()};
}

const std::string kCore = "tvcore_B.dll"; // 12 characters
const std::string kOurs = "tvptpc_B.dll";
const std::string kBoth = "file C:\\d\\tvcore_B.dll;file C:\\d\\3\\tvcore_B.dll";

const Case kCases[] = {
    {"beside our file", Outcome::Loaded, kCore, "C:\\d\\x.dll", "C:\\d\\tvcore_B.dll;C:\\d\\3\\tvcore_B.dll",
     "file C:\\d\\tvcore_B.dll"},
    {"in the folder 3", Outcome::Loaded, kCore, "C:\\d\\x.dll", "C:\\d\\3\\tvcore_B.dll", kBoth},
    {"nowhere, though the platform knows it", Outcome::Failure, kCore, "C:\\d\\x.dll", kCore, kBoth, kPresent, kCore},
    {"slashes", Outcome::Loaded, kCore, "/opt/d.d/x.so", "/opt/d.d/tvcore_B.dll", "file /opt/d.d/tvcore_B.dll"},
    {"the later kind of separator counts", Outcome::Loaded, kCore, "C:\\d/e\\x.dll", "C:\\d/e\\tvcore_B.dll",
     "file C:\\d/e\\tvcore_B.dll"},
    {"the utility library beside our file", Outcome::Loaded, "TVUTIL_b.DLL", "C:\\d\\x.dll", "C:\\d\\TVUTIL_b.DLL",
     "file C:\\d\\TVUTIL_b.DLL"},
    {"the utility library nowhere", Outcome::Platform, "TVUTIL_b.DLL", "C:\\d\\x.dll", "",
     "file C:\\d\\TVUTIL_b.DLL;file C:\\d\\3\\TVUTIL_b.DLL"},

    {"our longest path, the longest one tried, and a second one too long", Outcome::Failure, kCore, Folder(249) + kOurs,
     "", "file " + Folder(249) + kCore},
    {"our path is too long", Outcome::Failure, "t.dll", Folder(250) + kOurs, "", ""},

    {"our path cannot be had", Outcome::Failure, kCore, "", "", ""},
    {"our path has no folder", Outcome::Failure, kCore, "x.dll", kCore, ""},
    {"our handle cannot be had", Outcome::Failure, kCore, "C:\\d\\x.dll", kCore, "", kFailing, kCore},
    {"our handle cannot be had for the utility library", Outcome::Platform, "tvutil_B.dll", "C:\\d\\x.dll", "", "",
     kFailing},

    {"an old system, loaded already", Outcome::Borrowed, kCore, "", kCore, "loaded tvcore_B.dll", kMissing, kCore},
    {"an old system, to be found", Outcome::Loaded, kCore, "", kCore, "loaded tvcore_B.dll;search tvcore_B.dll",
     kMissing},
    {"an old system, nowhere", Outcome::Failure, kCore, "", "", "loaded tvcore_B.dll;search tvcore_B.dll", kMissing},
};

} // namespace

TEST(DllDelayLoader, TriesOnePlaceAfterTheOther)
{
    for (const Case& test : kCases)
    {
        SCOPED_TRACE(test.title);
        AnsweringPlatform platform;
        platform.findOwn = test.findOwn;
        platform.ownFile = test.ownFile;
        platform.files = Names(test.files);
        platform.loadedNames = Names(test.loadedNames);
        DllDelayLoader loader(platform);

        HMODULE module = nullptr;
        bool failed = false;
        try
        {
            module = Load(loader, test.module.c_str());
            platform.calls.clear();
            EXPECT_EQ(Load(loader, test.module.c_str()), module); // one of two threads: it is freed once
        }
        catch (const ExceptionDelayLoadDllLoadFailure& failure)
        {
            failed = true;
            EXPECT_NE(std::string_view(failure.what()).find("\"" + test.module + "\""), std::string_view::npos)
                << failure.what();
        }
        EXPECT_EQ(failed, test.outcome == Outcome::Failure);
        EXPECT_EQ(module != nullptr, test.outcome == Outcome::Loaded || test.outcome == Outcome::Borrowed);
        EXPECT_EQ(platform.calls, Parts(test.calls));

        loader.FreeModules();
        loader.FreeModules();
        EXPECT_EQ(platform.freed, std::vector<HMODULE>(test.outcome == Outcome::Loaded ? 1 : 0, kFound));
    }
}

TEST(DllDelayLoader, AnswersOnlyWhenEnabledAndBeforeLoading)
{
    AnsweringPlatform platform;
    DllDelayLoader loader(platform);
    for (const unsigned notification :
         {unsigned{dliStartProcessing}, unsigned{dliNotePreGetProcAddress}, unsigned{dliFailLoadLib},
          unsigned{dliFailGetProc}, unsigned{dliNoteEndProcessing}, 17u})
        EXPECT_EQ(loader.Notify(notification, Asking("tvcore_B.dll")), nullptr) << notification;
    loader.SetEnabled(false);
    EXPECT_EQ(Load(loader, "tvcore_B.dll"), nullptr);
    EXPECT_EQ(platform.calls, Calls());
    loader.SetEnabled(true);
    EXPECT_THROW(Load(loader, "tvcore_B.dll"), ExceptionDelayLoadDllLoadFailure);
}
