// Documents as files: their bytes, and the text in them.
#pragma once

#include <optional>
#include <string>

#include "dom/loaderror.h"

namespace winport::dom
{

struct SourceText
{
    std::string utf8;               // without byte-order mark
    std::optional<LoadError> error; // set when there is no text
};

// Reads a file in UTF-8 (with a byte-order mark or none) or UTF-16 of either byte order (with one). Another encoding
// that the XML declaration names is an error, as are more bytes than a document may have.
SourceText ReadDocumentFile(const std::string& path);

// Writes UTF-8, or UTF-16LE with a byte-order mark. The file appears as a whole or not at all. E_FAIL when it cannot
// be written.
HRESULT WriteDocumentFile(const std::string& path, const std::string& utf8, bool asUtf16);

} // namespace winport::dom
