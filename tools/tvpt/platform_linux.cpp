#include "platform.h"

namespace platform
{

std::vector<std::string> Arguments(int count, char** values)
{
    return {values + (count > 0 ? 1 : 0), values + count};
}

void PrepareStandardStreams()
{
}

std::FILE* CreateNewFile(const std::filesystem::path& path)
{
    return std::fopen(path.c_str(), "wbx");
}

bool StoreCanBeChosen() noexcept
{
    return true;
}

} // namespace platform
