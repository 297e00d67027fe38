// The comparison of documents that all tests use: as namespace-aware trees, never as text.
#pragma once

#include <msxml2.h>

#include <string>

#include "utilitiesstaticlib/wideliteral.h"

// The subtree by meaning: {uri}local(@{uri}name=value ...)[children]. Attributes are sorted, neighbouring texts are
// one, prefixes and declarations do not count, nor do comments and instructions. A name in an attribute or a text
// ("psk:ISOA4") is taken as it stands.
std::string Meaning(IXMLDOMNode* node);

// Empty when the documents mean the same, blanks between elements and beside them aside; else what stands on either
// side around the first difference.
std::string CompareDocuments(IXMLDOMNode* expected, IXMLDOMNode* actual);

std::string Narrow(WStringView text); // UTF-8
