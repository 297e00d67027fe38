// The code with which an action throws, for tests.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

// S_OK when nothing is thrown; a TavlenComException must have an empty message. `place` receives the file and the
// method that it names: "complugins\\... Class::Method".
HRESULT CodeOf(const std::function<void()>& action, std::string* place = nullptr);
// Each of the actions throws with that code; a failure names the action by its place in the list.
void ExpectCode(HRESULT code, const std::vector<std::function<void()>>& actions);
