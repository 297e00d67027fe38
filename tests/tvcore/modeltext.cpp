#include "tests/tvcore/modeltext.h"

#include <filesystem>
#include <fstream>
#include <string>

nlohmann::json ShippedModel(const char* name)
{
    std::ifstream stream(std::filesystem::path(TVPT_MODELS_FOLDER) / (std::string(name) + ".json"));
    return nlohmann::json::parse(stream);
}
