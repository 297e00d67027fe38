// Values of Print Schema documents: which texts fit which types.
#pragma once

#include <string>
#include <string_view>

#include "documenttree.h"

// Empty for a prefix with a declaration and a name behind it, which is how documents write names; else what is wrong:
// "has no prefix". `resolved` is what the reader of the document made of it.
[[nodiscard]] std::string DescribeNameFault(std::string_view written, const SchemaName& resolved);

// Empty when a Value's text fits its xsi:type; also when it has none, and for types of other namespaces.
[[nodiscard]] std::string DescribeValueFault(const SchemaElement& value);

// True for one name, one number or one text.
[[nodiscard]] bool IsSameValue(const SchemaElement& left, const SchemaElement& right);
