// Qualified names.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace winport::dom
{

struct QName
{
    std::string_view prefix; // empty without one
    std::string_view local;
};

// Nothing for a text that is no qualified name of XML. The parts are views into the text.
std::optional<QName> ParseQName(const std::string& text);

// The same for a name that is known to be an XML name, as the parser hands them out: only the colon is looked at.
std::optional<QName> SplitXmlName(std::string_view name);

// "xmlns" or "xmlns:something".
bool IsDeclarationName(const QName& name);

} // namespace winport::dom
