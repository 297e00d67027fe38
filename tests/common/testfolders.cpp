// The only source that knows where the checkout lies: a compiler cache serves all others to any checkout.
#include "tests/common/testfolders.h"

std::filesystem::path TestDataFolder()
{
    return TVPT_TEST_DATA_FOLDER;
}

std::filesystem::path ModelsFolder()
{
    return TVPT_MODELS_FOLDER;
}

std::filesystem::path BinaryFolder()
{
    return TVPT_BINARY_FOLDER;
}
