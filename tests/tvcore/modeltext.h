// The text of a shipped printer model, to be changed in memory, and what the reader says of a text.
#pragma once

#include <string>

#include <nlohmann/json.hpp>

// By name, without folder and ".json".
nlohmann::json ShippedModel(const char* name);

// The message of the fault in a model of the name "m.json"; empty when it is accepted.
std::string FaultOf(const std::string& text);
