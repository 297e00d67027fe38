#include "tests/common/scriptedconfiguration.h"

#include <bit>
#include <cstdint>
#include <string>

#include <tvutil/cxstring.h>

void ScriptConfiguration(CapabilityAnswer answer)
{
    const std::string address = std::to_string(std::bit_cast<std::uintptr_t>(answer));
    SetEnvironmentVariableW(W("TVPT_TEST_DRIVER"), answer != nullptr ? CXString::FromUtf8(address).c_str() : nullptr);
}
