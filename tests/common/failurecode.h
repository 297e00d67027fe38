// The code with which an action throws, for tests.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

// S_OK when nothing is thrown; a TavlenComException must have an empty message. `place` receives the file and the
// method that it names: "complugins\\... Class::Method".
HRESULT CodeOf(const std::function<void()>& action, std::string* place = nullptr);
