// The namespaces of Print Schema documents, and the elements, attributes and types that live in them.
//
// Public namespaces: the platform's "Print Schema Specification" and the W3C's XML Schema recommendations.
#pragma once

#include "utilitiesstaticlib/wideliteral.h"

namespace PrintSchema
{

// The namespaces in which names are built, by the index that callers give.
enum MsPrintTicketNamespacesEnum : ULONG
{
    Framework = 0,       // Feature, Option, Property …
    Keywords = 1,        // the public keyword names
    PrivateKeywords = 2, // the maker's own keyword names
};

inline constexpr WCHAR kFrameworkUri[] =
    W("http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework");
inline constexpr WCHAR kKeywordsUri[] = W("http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords");
inline constexpr WCHAR kPrivateKeywordsUri[] =
    W("http://schemas.tavlen.example/enterprise/print/driver/native/printSchemaPrivateKeywords/2006/11");
inline constexpr WCHAR kXmlSchemaUri[] = W("http://www.w3.org/2001/XMLSchema");
inline constexpr WCHAR kXmlSchemaInstanceUri[] = W("http://www.w3.org/2001/XMLSchema-instance");

// Prefixes are kept with their colon, so that a qualified name is a plain concatenation.
inline constexpr WCHAR kPrivatePrefix[] = W("tk:");               // of every document that declares the namespace
inline constexpr WCHAR kUndeclaredPrivatePrefix[] = W("ns0000:"); // the service's own prefix for it
inline constexpr WCHAR kProvisionalFrameworkPrefix[] = W("psf");  // until the document's own is known

inline constexpr WCHAR kPrintTicket[] = W("PrintTicket");
inline constexpr WCHAR kPrintCapabilities[] = W("PrintCapabilities");
inline constexpr WCHAR kFeature[] = W("Feature");
inline constexpr WCHAR kOption[] = W("Option");
inline constexpr WCHAR kProperty[] = W("Property");
inline constexpr WCHAR kScoredProperty[] = W("ScoredProperty");
inline constexpr WCHAR kValue[] = W("Value");
inline constexpr WCHAR kParameterDef[] = W("ParameterDef");
inline constexpr WCHAR kParameterRef[] = W("ParameterRef");
inline constexpr WCHAR kParameterInit[] = W("ParameterInit");

inline constexpr WCHAR kNameAttribute[] = W("name");
inline constexpr WCHAR kTypeAttribute[] = W("type");

inline constexpr WCHAR kUnconstrained[] = W("None"); // of an option that is always available

inline constexpr WCHAR kIntegerType[] = W("integer");
inline constexpr WCHAR kStringType[] = W("string");
inline constexpr WCHAR kQNameType[] = W("QName");

} // namespace PrintSchema
