// A driver's configuration module that asks the test program for its answers: tvtestcfg_B.dll, beside the program.
#pragma once

#include <windows.h>

// What is asked for, and where the answer goes; null when only their number is asked for.
using CapabilityAnswer = DWORD (*)(WORD capability, LPVOID output);

inline constexpr const char* kScriptedConfigurationModule = "tvtestcfg_B.dll";

// From now on; null: the module answers nothing.
void ScriptConfiguration(CapabilityAnswer answer);
