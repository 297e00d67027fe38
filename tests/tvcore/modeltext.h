// The text of a shipped printer model, to be changed in memory.
#pragma once

#include <nlohmann/json.hpp>

// By name, without folder and ".json".
nlohmann::json ShippedModel(const char* name);
