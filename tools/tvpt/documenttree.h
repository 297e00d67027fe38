// A document as a plain tree, for reports: prefixes resolved, white space between elements left out.
#pragma once

#include <msxml2.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

// A name with its namespace, all in UTF-8. What has no namespace has an empty URI.
struct SchemaName
{
    std::string uri;
    std::string local;

    [[nodiscard]] bool Is(std::string_view namespaceUri, std::string_view localName) const noexcept;
};

struct SchemaElement
{
    SchemaName name;
    // The value of the attribute "name" with its prefix resolved; empty without one.
    SchemaName nameAttribute;
    std::string namePrefix;                                     // as the document spells it
    std::vector<std::pair<SchemaName, std::string>> attributes; // without namespace declarations
    std::string text;                                           // of an element without child elements
    SchemaName valueName;                                       // the text as a name, where it is short enough for one
    std::vector<SchemaElement> children;

    // Child elements of the framework namespace.
    [[nodiscard]] std::vector<const SchemaElement*> Children(std::string_view frameworkName) const;
    [[nodiscard]] const SchemaElement* Child(std::string_view frameworkName) const; // the first, or null
};

// The root element. Throws Failure when there is none, or when elements are nested more than 256 deep.
[[nodiscard]] SchemaElement ReadDocumentTree(IXMLDOMDocument2& document, std::string_view name);
