// DocumentSettings: what the callers of a document may set. They outlive loading: a new tree takes its document's over.
#pragma once

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
    bool preserveWhiteSpace = false;

    // E_FAIL for a property that does not exist or a value that it cannot have; nothing is changed then.
    HRESULT SetProperty(std::string_view name, const VARIANT& value);

    const SelectionBindings& Bindings() const
    {
        return m_bindings;
    }

private:
    HRESULT SetNamespaces(const VARIANT& value);

    SelectionBindings m_bindings;
};

} // namespace winport::dom
