#include "elementkinds.h"

#include <algorithm>
#include <initializer_list>

#include "printschemadocument.h"

namespace
{

constexpr unsigned AnyOf(std::initializer_list<ElementKind> kinds)
{
    unsigned bits = 0;
    for (const ElementKind kind : kinds)
        bits |= 1u << static_cast<unsigned>(kind);
    return bits;
}

using enum ElementKind;

constexpr ElementRow kElementRows[] = {
    // clang-format off
    // kind             name                 what it may hold                                          naming                 needs a value
    {PrintTicket,       "PrintTicket",       AnyOf({Feature, Property, ParameterInit}),                Naming::None,          false},
    {PrintCapabilities, "PrintCapabilities", AnyOf({Feature, Property, ParameterDef}),                 Naming::None,          false},
    {Feature,           "Feature",           AnyOf({Property, Option, Feature}),                       Naming::Required,      false},
    {Option,            "Option",            AnyOf({Property, ScoredProperty}),                        Naming::OrDescription, false},
    {Property,          "Property",          AnyOf({Property, Value}),                                 Naming::Required,      false},
    {ScoredProperty,    "ScoredProperty",    AnyOf({Property, ScoredProperty, Value, ParameterRef}),   Naming::Required,      false},
    {Value,             "Value",             AnyOf({}),                                                Naming::None,          false},
    {ParameterDef,      "ParameterDef",      AnyOf({Property}),                                        Naming::Required,      false},
    {ParameterInit,     "ParameterInit",     AnyOf({Value}),                                           Naming::Required,      true},
    {ParameterRef,      "ParameterRef",      AnyOf({}),                                                Naming::Required,      false},
    // clang-format on
};

} // namespace

const ElementRow* FindElementRow(const SchemaName& name)
{
    const auto* const found = std::ranges::find(kElementRows, std::string_view(name.local), &ElementRow::name);
    return found != std::ranges::end(kElementRows) && name.uri == kFramework.uri ? found : nullptr;
}

bool IsForeign(const SchemaName& name)
{
    return !name.uri.empty() && name.uri != kFramework.uri;
}
