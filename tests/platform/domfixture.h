// What the DOM's tests share: documents from text, nodes by query, and trees as comparable text.
#pragma once

#include <msxml2.h>

#include <string>

#include <gtest/gtest.h>

#include "tests/common/documentcomparer.h"
#include "utilitiesstaticlib/ccombstr.h"
#include "utilitiesstaticlib/comptr.h"
#include "utilitiesstaticlib/domiids.h"
#include "utilitiesstaticlib/wideliteral.h"

using DomDocument = ComPtr<IXMLDOMDocument2>;
using DomElement = ComPtr<IXMLDOMElement>;
using DomNode = ComPtr<IXMLDOMNode>;

DomDocument NewDocument();
// The result of loadXML; a refused text leaves an empty document.
HRESULT LoadText(const DomDocument& document, WStringView text);
// Fails the running test when the text is refused.
DomDocument Loaded(WStringView text);
DomElement RootOf(const DomDocument& document);
DomNode Select(IXMLDOMNode* context, const WCHAR* query); // null when nothing is found
HRESULT PutText(IXMLDOMNode* node, WStringView text);
std::string TextOf(IXMLDOMNode* node);
std::string XmlOf(IXMLDOMNode* node);
std::string ReasonOf(const DomDocument& document); // of the last load
