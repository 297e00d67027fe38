#include "tests/tvcore/modeltext.h"
#include "tests/common/testfolders.h"

#include <filesystem>
#include <fstream>

#include <tvcore/printermodel.h>

nlohmann::json ShippedModel(const char* name)
{
    std::ifstream stream(ModelsFolder() / (std::string(name) + ".json"));
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
