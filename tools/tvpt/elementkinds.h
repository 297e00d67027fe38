// The elements of the Print Schema: what stands in which, and what has a name.
#pragma once

#include <string_view>

#include "documenttree.h"

enum class ElementKind
{
    PrintTicket,
    PrintCapabilities,
    Feature,
    Option,
    Property,
    ScoredProperty,
    Value,
    ParameterDef,
    ParameterInit,
    ParameterRef,
};

enum class Naming
{
    None,
    Required,
    OrDescription, // or scored properties, which then tell one from the other
};

struct ElementRow
{
    ElementKind kind;
    std::string_view name; // of the framework's namespace
    unsigned children;     // a bit for each kind
    Naming naming;
    bool needsValue; // others may have one where they allow one

    [[nodiscard]] constexpr bool Allows(ElementKind child) const noexcept
    {
        return (children >> static_cast<unsigned>(child) & 1) != 0;
    }
};

// Null for an element that is none of the Print Schema's.
[[nodiscard]] const ElementRow* FindElementRow(const SchemaName& name);

// Of another namespace: documents may have such elements anywhere, and nothing is known of them.
[[nodiscard]] bool IsForeign(const SchemaName& name);
