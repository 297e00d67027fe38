// Deleting every element of a kind and name, in one pass over the document: somebody else's may hold any number of
// them.
#pragma once

#include <cstddef>

#include <tvutil/cxstring.h>

class PrintSchemaXmlDocument;

// The first `kept` of them stay. The name is spelled with its prefix.
void DeleteNamed(const PrintSchemaXmlDocument& document, const CXString& elementName, const CXString& fullName,
                 std::size_t kept = 0);
