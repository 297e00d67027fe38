// DocumentSettings: what the callers of a document may set. They outlive loading: a new tree takes its document's over.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "wtypes.h"

namespace winport::dom
{

using SelectionBindings = std::vector<std::pair<std::string, std::string>>; // prefix, URI

class DocumentSettings
{
public:
    bool async = true; // kept and told, loading is done when the call returns
    bool validateOnParse = true;
    bool resolveExternals = false;
    bool preserveWhiteSpace = false;

    // E_FAIL for a property that does not exist or a value that it cannot have; nothing is changed then.
    HRESULT SetProperty(std::string_view name, const VARIANT& value);
    HRESULT GetProperty(std::string_view name, VARIANT& value) const;

    const SelectionBindings& Bindings() const
    {
        return m_bindings;
    }

private:
    static constexpr std::size_t kSwitchCount = 9;

    struct Switch
    {
        std::string_view name;
        bool value;
    };

    HRESULT SetLanguage(const VARIANT& value);
    HRESULT SetNamespaces(const VARIANT& value);

    std::string m_language = "XPath";
    std::string m_namespaces;
    SelectionBindings m_bindings;
    // Accepted because callers set them; none changes what is done. ProhibitDTD is always on, whatever is set.
    std::array<Switch, kSwitchCount> m_switches = {{
        {"ProhibitDTD", true},
        {"NewParser", false},
        {"AllowDocumentFunction", false},
        {"AllowXsltScript", false},
        {"ForcedResync", true},
        {"MultipleErrorMessages", false},
        {"NormalizeAttributeValues", false},
        {"ServerHTTPRequest", false},
        {"UseInlineSchema", false},
    }};
};

} // namespace winport::dom
