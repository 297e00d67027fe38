// A spooler's store, and so a registry, of a test's own. On Windows it is the machine's: what a test puts there it
// takes away again.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>
#include <system_error>

#include <tvutil/cxstring.h>

class ScratchStore
{
public:
    ScratchStore() : m_folder(std::filesystem::temp_directory_path() / ("tavlen-scratch-store-" + OwnNumber()))
    {
        SetEnvironmentVariableW(W("TVPT_STORE"), CXString::FromUtf8(m_folder.string()).c_str());
    }

    ~ScratchStore()
    {
        SetEnvironmentVariableW(W("TVPT_STORE"), nullptr);
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }

    ScratchStore(const ScratchStore&) = delete;
    ScratchStore& operator=(const ScratchStore&) = delete;

    // For names that programs running side by side must not share.
    static std::string OwnNumber()
    {
        return std::to_string(GetCurrentProcessId());
    }

private:
    std::filesystem::path m_folder;
};
