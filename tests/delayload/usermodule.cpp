#include "tests/delayload/usermodule.h"

#include <algorithm>
#include <array>

WideString PathOf(HMODULE module)
{
    std::array<WCHAR, 4096> path{};
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    WideString name(path.data(), length);
    std::ranges::replace(name, W('\\'), W('/'));
    return name;
}

WideString UserModule::Folder()
{
    const WideString program = PathOf(nullptr);
    return program.substr(0, program.find_last_of(W('/')) + 1) + W("delayload/");
}

UserModule::UserModule()
{
    WideString file = Folder() + W("delayload_user.dll");
    std::ranges::replace(file, W('/'), W('\\'));
    m_module = LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

UserModule::~UserModule()
{
    Unload();
}

void UserModule::Unload()
{
    if (m_module != nullptr)
        FreeLibrary(m_module);
    m_module = nullptr;
}
