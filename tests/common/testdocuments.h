// Documents for tests: made from text or from a file of tests/data, and read back.
#pragma once

#include <msxml2.h>

#include <string>
#include <vector>

#include "utilitiesstaticlib/comptr.h"
#include "utilitiesstaticlib/wideliteral.h"

// A text that is no document is thrown as std::runtime_error.
// With `keepBlanks` the blanks between elements stay, as the host has it; the DOM drops them by default.
ComPtr<IXMLDOMDocument2> LoadDocument(WStringView text, bool keepBlanks = false);
ComPtr<IXMLDOMDocument2> LoadDocument(const std::string& utf8, bool keepBlanks = false);
// By the name below tests/data; reads UTF-8 and UTF-16LE, with and without a byte-order mark.
ComPtr<IXMLDOMDocument2> LoadTestDocument(const std::string& name);

// The whole document as text, in UTF-8.
std::string TextOf(IXMLDOMDocument2* document);
// The same tree, parsed anew from its text.
ComPtr<IXMLDOMDocument2> Reparse(IXMLDOMDocument2* document);

// What an XPath query finds, by its text; the framework namespace is psf.
std::vector<std::string> Select(IXMLDOMDocument2* document, const std::string& query);
// Takes out the elements that it finds.
void Remove(IXMLDOMDocument2* document, const std::string& query);

// The files of a folder below tests/data, sorted, with the folder's name before them.
std::vector<std::string> TestDocumentsIn(const std::string& folder);

// A document around the given content; declarations are attributes of its root, which has the usual four.
std::string TicketAround(const std::string& content, const std::string& moreDeclarations = "");
std::string CapabilitiesAround(const std::string& content);

std::string Utf8(WStringView text);
