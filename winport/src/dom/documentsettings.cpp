#include "dom/documentsettings.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "dom/qname.h"
#include "dom/strings.h"
#include "dom/variants.h"

namespace winport::dom
{

namespace
{

// Accepted because callers set them; none changes what is done. ProhibitDTD is always on, whatever is set.
constexpr std::string_view kSwitches[] = {
    "ProhibitDTD",
    "NewParser",
    "AllowDocumentFunction",
    "AllowXsltScript",
    "ForcedResync",
    "MultipleErrorMessages",
    "NormalizeAttributeValues",
    "ServerHTTPRequest",
    "UseInlineSchema",
};

bool EqualsIgnoringCase(std::string_view left, std::string_view right)
{
    const auto lower = [](char letter)
    {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    };
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [&](char a, char b) { return lower(a) == lower(b); });
}

void SkipSpace(std::string_view& text)
{
    while (!text.empty() && IsXmlSpace(text.front()))
        text.remove_prefix(1);
}

// One `name = "value"` from the front of the text.
std::optional<std::pair<std::string, std::string>> TakeAssignment(std::string_view& text)
{
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos)
        return std::nullopt;
    std::string_view name = text.substr(0, equals);
    while (!name.empty() && IsXmlSpace(name.back()))
        name.remove_suffix(1);
    text.remove_prefix(equals + 1);
    SkipSpace(text);
    if (text.empty() || (text.front() != '"' && text.front() != '\''))
        return std::nullopt;
    const std::size_t end = text.find(text.front(), 1);
    if (end == std::string_view::npos)
        return std::nullopt;
    std::pair<std::string, std::string> assignment(name, text.substr(1, end - 1));
    text.remove_prefix(end + 1);
    SkipSpace(text);
    return assignment;
}

// xmlns:p='uri' xmlns:q="uri": declarations as in a document. A default declaration is allowed and binds nothing, for
// an unprefixed name in XPath is in no namespace.
std::optional<SelectionBindings> ParseBindings(std::string_view text)
{
    SelectionBindings bindings;
    for (SkipSpace(text); !text.empty();)
    {
        const auto assignment = TakeAssignment(text);
        if (!assignment)
            return std::nullopt;
        const auto name = ParseQName(assignment->first);
        if (!name || !IsDeclarationName(*name))
            return std::nullopt;
        if (!name->prefix.empty())
            bindings.emplace_back(name->local, assignment->second);
    }
    return bindings;
}

// XPath is the language whichever of the two is set.
bool IsLanguage(const VARIANT& value)
{
    BSTR const* const string = StringOf(value);
    const std::string text = string != nullptr ? Utf8Of(*string) : std::string();
    return EqualsIgnoringCase(text, "XPath") || EqualsIgnoringCase(text, "XSLPattern");
}

} // namespace

HRESULT DocumentSettings::SetProperty(std::string_view name, const VARIANT& value)
{
    if (name == "SelectionLanguage")
        return IsLanguage(value) ? S_OK : E_FAIL;
    if (name == "SelectionNamespaces")
        return SetNamespaces(value);
    const bool isKnown = std::find(std::begin(kSwitches), std::end(kSwitches), name) != std::end(kSwitches);
    return isKnown && value.vt == VT_BOOL ? S_OK : E_FAIL;
}

HRESULT DocumentSettings::SetNamespaces(const VARIANT& value)
{
    BSTR const* const string = StringOf(value);
    if (string == nullptr)
        return E_FAIL;
    std::optional<SelectionBindings> bindings = ParseBindings(Utf8Of(*string));
    if (!bindings)
        return E_FAIL;
    m_bindings = std::move(*bindings);
    return S_OK;
}

} // namespace winport::dom
