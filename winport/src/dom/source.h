// Documents as files.
#pragma once

#include <string>

#include "winerror.h"

namespace winport::dom
{

// Writes UTF-8, or UTF-16LE with a byte-order mark. The file appears as a whole or not at all. E_FAIL when it cannot
// be written.
HRESULT WriteDocumentFile(const std::string& path, const std::string& utf8, bool asUtf16);

} // namespace winport::dom
