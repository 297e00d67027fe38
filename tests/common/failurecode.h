// The code with which an action throws, for tests.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

// S_OK when nothing is thrown; a TavlenComException must have an empty message. `method` receives the place it names.
HRESULT CodeOf(const std::function<void()>& action, std::string* method = nullptr);
