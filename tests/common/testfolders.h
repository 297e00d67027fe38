// The folders of this checkout that tests read and run from.
#pragma once

#include <filesystem>

std::filesystem::path TestDataFolder();
std::filesystem::path ModelsFolder();
// Where the built modules and programs lie.
std::filesystem::path BinaryFolder();
