// How a document is kept in libxml2's structures, where that differs from what libxml2's own parser makes.
//
// A namespace declaration is an attribute in the element's property list, in its place among the others, as MSXML
// lists it. Its type is XML_ATTRIBUTE_DECL, so that XPath's attribute axis does not see it; `nsDef` stays empty.
// `psvi` marks a node before which the parser dropped blanks: the text property puts a blank there.
#pragma once

#include <libxml/tree.h>

#include <string>
#include <string_view>

#include "msxml2.h"

namespace winport::dom
{

inline constexpr xmlElementType kDeclarationType = XML_ATTRIBUTE_DECL;

bool IsDeclaration(const xmlNode* node);
bool IsAttribute(const xmlNode* node); // declarations too
bool IsElement(const xmlNode* node);
bool IsText(const xmlNode* node); // a text or a CDATA section

DOMNodeType KindOf(const xmlNode* node);

// Names as the DOM gives them; the prefix and the URI are empty without one.
std::string_view LocalNameOf(const xmlNode* node);
std::string_view PrefixOf(const xmlNode* node);
std::string_view NamespaceOf(const xmlNode* node);
std::string QualifiedNameOf(const xmlNode* node); // "#text" and its like too

// Whether the qualified name is the given one, without making a string.
bool HasQualifiedName(const xmlNode* node, std::string_view name);

// The attribute's value: the text of its children.
std::string ValueOf(const xmlAttr* attribute);

// The prefix that a declaration declares; empty for "xmlns".
std::string_view DeclaredPrefix(const xmlAttr* declaration);

// The XML declaration, kept as the processing instruction "xml".
bool IsXmlDeclaration(const xmlNode* node);

bool FollowsDroppedBlanks(const xmlNode* node);
void MarkDroppedBlanks(xmlNode* node);

xmlNode* AsNode(xmlAttr* attribute);
xmlAttr* AsAttribute(xmlNode* node);
const xmlAttr* AsAttribute(const xmlNode* node);

// The next node of the subtree in document order, attributes left out; null at its end. The root has no siblings here.
xmlNode* NextInSubtree(xmlNode* node, const xmlNode* root);

} // namespace winport::dom
