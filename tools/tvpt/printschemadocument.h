// Print Schema documents on their way in and out: bytes of a file to a DOM document and back.
#pragma once

#include <msxml2.h>

#include <string>
#include <string_view>

#include "utilitiesstaticlib/comptr.h"
#include "utilitiesstaticlib/wideliteral.h"

// A namespace of Print Schema documents, and the prefix that this program gives it.
struct SchemaNamespace
{
    std::string_view prefix;
    std::string_view uri;
};

inline constexpr SchemaNamespace kFramework = {
    "psf", "http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework"};
inline constexpr SchemaNamespace kKeywords = {
    "psk", "http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords"};
inline constexpr SchemaNamespace kPrivateKeywords = {
    "tk", "http://schemas.tavlen.example/enterprise/print/driver/native/printSchemaPrivateKeywords/2006/11"};
inline constexpr SchemaNamespace kXmlSchemaInstance = {"xsi", "http://www.w3.org/2001/XMLSchema-instance"};
inline constexpr SchemaNamespace kXmlSchema = {"xsd", "http://www.w3.org/2001/XMLSchema"};

// COM for this thread, as long as the object lives.
class ComApartment
{
public:
    ComApartment();
    ~ComApartment();
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;
};

// In any encoding that DecodeDocument reads. Throws Failure, which names the file, the line and the reason, for
// anything that is no well-formed document or exceeds a bound (documentlimits.h). White space is kept.
[[nodiscard]] ComPtr<IXMLDOMDocument2> LoadDocument(std::string_view bytes, std::string_view name);

// The same of a text that DecodeDocument gave.
[[nodiscard]] ComPtr<IXMLDOMDocument2> ParseDocument(WStringView text, std::string_view name);

// Empty when the root element is the framework's of that name; else what it is and what it should be.
[[nodiscard]] std::string DescribeRootFault(IXMLDOMDocument2& document, std::string_view expected);

// The document in UTF-8, with an XML declaration that says so.
[[nodiscard]] std::string DocumentToBytes(IXMLDOMDocument2& document);
