// The text of a shipped printer model, to be changed in memory, and what the reader says of a text.
#pragma once

#include <fstream>
#include <string>

#include <nlohmann/json.hpp>

#include <tvcore/printermodel.h>

#include "tests/common/testfolders.h"

// By name, without folder and ".json".
inline nlohmann::json ShippedModel(const std::string& name)
{
    std::ifstream stream(ModelsFolder() / (name + ".json"));
    return nlohmann::json::parse(stream);
}

// The message of the fault in a model of the name "m.json"; empty when it is accepted.
inline std::string FaultOf(const std::string& text)
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
