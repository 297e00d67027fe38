#include "tests/tvcore/modeltext.h"

#include <filesystem>
#include <fstream>

#include <tvcore/printermodel.h>

nlohmann::json ShippedModel(const char* name)
{
    std::ifstream stream(std::filesystem::path(TVPT_MODELS_FOLDER) / (std::string(name) + ".json"));
    return nlohmann::json::parse(stream);
}

std::string FaultOf(const std::string& text)
{
    try
    {
        (void)ParsePrinterModel(text, "m.json");
        return {};
    }
    catch (const ExceptionInvalidPrinterModel& fault)
    {
        return fault.what();
    }
}
