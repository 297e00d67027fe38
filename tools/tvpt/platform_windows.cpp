#include "platform.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <memory>

#include <tvutil/cxstring.h>

namespace platform
{

std::vector<std::string> Arguments(int, char**)
{
    // The C runtime's own arguments are in the ANSI code page: names that it lacks would be lost.
    int count = 0;
    const std::unique_ptr<LPWSTR, decltype(&LocalFree)> values(CommandLineToArgvW(GetCommandLineW(), &count),
                                                               &LocalFree);
    std::vector<std::string> arguments;
    for (int index = 1; values != nullptr && index < count; ++index)
        arguments.push_back(CXString(values.get()[index]).ToUtf8());
    return arguments;
}

void PrepareStandardStreams()
{
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
}

std::FILE* CreateNewFile(const std::filesystem::path& path)
{
    return _wfopen(path.c_str(), L"wbx");
}

bool StoreCanBeChosen() noexcept
{
    return false;
}

} // namespace platform
