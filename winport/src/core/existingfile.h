// Files by the names that Windows programs give them: Windows' file systems ignore the case of names.
#pragma once

#include <filesystem>
#include <vector>

namespace winport
{

// The first of these names that is a regular file; when none is, the first one that a file beside it differs from in
// the case of Latin letters only (of several such files, the first in the order of their bytes). Folders are taken as
// they are written. Empty when there is no such file.
std::filesystem::path FindExistingFile(const std::vector<std::filesystem::path>& names);

} // namespace winport
