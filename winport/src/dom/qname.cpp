#include "dom/qname.h"

#include <libxml/tree.h>

#include "dom/strings.h"

namespace winport::dom
{

std::optional<QName> ParseQName(const std::string& text)
{
    // The C function stops at a zero, so one within the text must not hide what follows.
    if (text.find('\0') != std::string::npos || xmlValidateQName(XmlChars(text), 0) != 0)
        return std::nullopt;
    const std::string_view name = text;
    const std::size_t colon = name.find(':');
    if (colon == std::string_view::npos)
        return QName{{}, name};
    return QName{name.substr(0, colon), name.substr(colon + 1)};
}

std::optional<QName> SplitXmlName(std::string_view name)
{
    const std::size_t colon = name.find(':');
    if (colon == std::string_view::npos)
        return QName{{}, name};
    const std::string local(name.substr(colon + 1));
    if (colon == 0 || xmlValidateNCName(XmlChars(local), 0) != 0)
        return std::nullopt;
    return QName{name.substr(0, colon), name.substr(colon + 1)};
}

bool IsDeclarationName(const QName& name)
{
    return name.prefix.empty() ? name.local == "xmlns" : name.prefix == "xmlns";
}

} // namespace winport::dom
