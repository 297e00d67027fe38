#include "schemavalues.h"

#include <algorithm>

#include "decimalnumber.h"
#include "failure.h"
#include "printschemadocument.h"

namespace
{

// Letters beyond ASCII are taken for what they are: they come as several bytes.
bool IsNameCharacter(char character)
{
    const auto unit = static_cast<unsigned char>(character);
    const bool isLetter = (unit >= 'a' && unit <= 'z') || (unit >= 'A' && unit <= 'Z') || unit >= 0x80;
    return isLetter || (unit >= '0' && unit <= '9') || unit == '_' || unit == '-' || unit == '.';
}

bool IsPlainName(std::string_view text)
{
    constexpr std::string_view kNotFirst = "0123456789-.";
    return !text.empty() && kNotFirst.find(text.front()) == std::string_view::npos &&
           std::ranges::all_of(text, IsNameCharacter);
}

std::string DescribeIntegerFault(const SchemaElement& value)
{
    const auto number = DecimalNumber::Parse(value.text);
    return number && number->IsInteger() ? "" : "is no integer";
}

std::string DescribeDecimalFault(const SchemaElement& value)
{
    return DecimalNumber::Parse(value.text) ? "" : "is no decimal number";
}

std::string DescribeQNameFault(const SchemaElement& value)
{
    return DescribeNameFault(WithoutBlanksAround(value.text), value.textName);
}

std::string AcceptAny(const SchemaElement& /*value*/)
{
    return {};
}

struct ValueTypeRow
{
    std::string_view type; // of XML Schema
    std::string (*describeFault)(const SchemaElement& value);
};

constexpr ValueTypeRow kValueTypes[] = {
    {"integer", DescribeIntegerFault},
    {"decimal", DescribeDecimalFault},
    {"QName", DescribeQNameFault},
    {"string", AcceptAny},
};

} // namespace

std::string DescribeNameFault(std::string_view written, const SchemaName& resolved)
{
    const std::size_t colon = written.find(':');
    if (colon == std::string_view::npos)
        return "has no prefix";
    if (!IsPlainName(written.substr(0, colon)) || !IsPlainName(written.substr(colon + 1)))
        return "is no qualified name";
    return resolved.uri.empty() ? "has an undeclared prefix" : "";
}

std::string DescribeValueFault(const SchemaElement& value)
{
    if (value.type.local.empty())
        return {};
    if (value.type.uri.empty())
        return "the type \"" + Shortened(value.type.local) + "\" has no declared prefix";
    if (value.type.uri != kXmlSchema.uri)
        return {};
    const auto* const row = std::ranges::find(kValueTypes, value.type.local, &ValueTypeRow::type);
    if (row == std::ranges::end(kValueTypes))
        return "the type " + Shortened(value.type.local) + " is none of integer, decimal, string and QName";
    const std::string fault = row->describeFault(value);
    return fault.empty() ? fault : "\"" + Shortened(value.text) + "\" " + fault;
}

bool IsSameValue(const SchemaElement& left, const SchemaElement& right)
{
    if (!left.textName.uri.empty() && !right.textName.uri.empty())
        return left.textName == right.textName;
    const auto leftNumber = DecimalNumber::Parse(left.text);
    const auto rightNumber = DecimalNumber::Parse(right.text);
    if (leftNumber && rightNumber)
        return *leftNumber == *rightNumber;
    return WithoutBlanksAround(left.text) == WithoutBlanksAround(right.text);
}
