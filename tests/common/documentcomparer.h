// The comparison of documents that all tests use: as namespace-aware trees, never as text.
//
// Equal are documents with the same elements (namespace URI and local name) in the same order, with the same
// attributes in any order and the same text. Prefixes, namespace declarations, comments, processing instructions,
// blanks between elements and those at either end of a text do not count, nor does where a text stands among child
// elements. A name in an attribute or a text ("psk:ISOA4") is compared as it stands.
#pragma once

#include <msxml2.h>

#include <string>

// Empty when they are equal; else what stands on either side at the first difference, with its path.
std::string CompareDocuments(IXMLDOMDocument2* expected, IXMLDOMDocument2* actual);
