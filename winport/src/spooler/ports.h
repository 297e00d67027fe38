// The local ports.
#pragma once

#include <string_view>

namespace winport::spooler
{

bool IsPort(std::u16string_view name);

} // namespace winport::spooler
