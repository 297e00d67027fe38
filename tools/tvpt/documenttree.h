// A document as a plain tree, for reports: prefixes resolved, white space between elements left out.
#pragma once

#include <msxml2.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "utilitiesstaticlib/wideliteral.h"

// A name with its namespace, all in UTF-8. What has no namespace has an empty URI; out of a value, a name whose prefix
// nothing declares keeps it.
struct SchemaName
{
    std::string uri;
    std::string local;

    [[nodiscard]] bool Is(std::string_view namespaceUri, std::string_view localName) const noexcept;

    friend bool operator==(const SchemaName& left, const SchemaName& right) = default;
    friend bool operator<(const SchemaName& left, const SchemaName& right) noexcept; // for maps
};

struct SchemaElement
{
    SchemaName name;
    std::string writtenName; // with the prefix that the document gives it
    std::size_t line = 0;    // where its start tag begins, from 1
    // The value of the attribute "name" with its prefix resolved; empty without one.
    SchemaName nameAttribute;
    std::string namePrefix;                                     // as the document spells it
    std::vector<std::pair<SchemaName, std::string>> attributes; // without namespace declarations
    std::vector<std::string> declaredUris;                      // of the namespaces that its start tag declares
    std::string text;                                           // of an element without child elements
    SchemaName type;                                            // what the attribute xsi:type names; empty without one
    SchemaName textName; // the text of an element of the type xsd:QName, or of none
    std::vector<SchemaElement> children;

    // Child elements of the framework namespace.
    [[nodiscard]] std::vector<const SchemaElement*> Children(std::string_view frameworkName) const;
    [[nodiscard]] const SchemaElement* Child(std::string_view frameworkName) const; // the first, or null
    // The first property whose name is that of the framework, or null.
    [[nodiscard]] const SchemaElement* FrameworkProperty(std::string_view localName) const;
    // The name attribute as the document has it.
    [[nodiscard]] std::string WrittenNameAttribute() const;
};

// The root element of the DOM of that text. Prefixes are resolved by what the text declares, since not every DOM lists
// all declarations. Throws Failure when there is none, or when elements are nested more than 256 deep.
[[nodiscard]] SchemaElement ReadDocumentTree(IXMLDOMDocument2& document, WStringView text, std::string_view name);

// The same of a file's bytes, which LoadDocument would take.
[[nodiscard]] SchemaElement LoadDocumentTree(std::string_view bytes, std::string_view name);

// Empty when the root element is the framework's of that name; else what it is and what it should be.
[[nodiscard]] std::string DescribeRootFault(const SchemaElement& root, std::string_view expected);

// Without the blanks around it that a value of XML Schema may have.
[[nodiscard]] std::string_view WithoutBlanksAround(std::string_view text);
