// Documents as the PrintTicket service hands them to a provider.
#pragma once

#include <msxml2.h>

#include <string_view>

#include "utilitiesstaticlib/comptr.h"

// `rootName` is "PrintTicket" or "PrintCapabilities".
//
// The service's documents declare the standard prefixes at their root, and a provider writes its names with what the
// root declares: declarations of the keywords and of the two XML Schema namespaces that are missing there are added,
// with the usual prefix or, where the document has another use for that, a free one. The keywords' and the driver's
// namespace, whose names are compared as text, get the prefix that inner elements have for them. Nothing else is
// changed. A document that the provider is to write its own names into also gets the driver's namespace, when one is
// given: with "ns0000", as the service has it.
//
// Throws Failure for what is no such document, and for one that a provider would misread or refuse without a word: a
// namespace whose first declaration at the root is the default, a root that binds "tk" to another namespace while it
// declares the driver's, and inner elements that bind the prefix of such names anew, or have another one for them.
[[nodiscard]] ComPtr<IXMLDOMDocument2> LoadForProvider(std::string_view bytes, std::string_view name,
                                                       std::string_view rootName,
                                                       std::string_view driverNamespaceUri = {});
