// What is wrong with a checked document, fault by fault.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "documenttree.h"

// The rules of a document's construction and, from kFeatureNotOffered on, of a ticket for a printer.
namespace rules
{

inline constexpr std::string_view kRoot = "root";                            // PrintTicket or PrintCapabilities
inline constexpr std::string_view kVersion = "version";                      // a number at the root
inline constexpr std::string_view kChild = "child";                          // which element may stand in which
inline constexpr std::string_view kNameMissing = "name-missing";             // an element needs a name
inline constexpr std::string_view kNamePrefix = "name-prefix";               // a declared prefix and a name behind it
inline constexpr std::string_view kNameRepeated = "name-repeated";           // each name once among siblings of a kind
inline constexpr std::string_view kOptionUndescribed = "option-undescribed"; // a name or scored properties
inline constexpr std::string_view kOneOption = "one-option";                 // a ticket chooses one option of a feature
inline constexpr std::string_view kNoOptions = "no-options";                 // capabilities offer some of each feature
inline constexpr std::string_view kValueCount = "value-count";               // one value where there is one
inline constexpr std::string_view kValueType = "value-type";                 // a value fits its xsi:type
inline constexpr std::string_view kParameterUndefined = "parameter-undefined"; // a reference has its parameter
inline constexpr std::string_view kDefinitionProperty = "definition-property"; // what each ParameterDef has
inline constexpr std::string_view kDefinitionRange = "definition-range";       // no minimum above its maximum
inline constexpr std::string_view kDefinitionDefault = "definition-default";   // the default fits its definition
inline constexpr std::string_view kFeatureNotOffered = "feature-not-offered";
inline constexpr std::string_view kOptionNotOffered = "option-not-offered";
inline constexpr std::string_view kParameterNotOffered = "parameter-not-offered";
inline constexpr std::string_view kParameterValue = "parameter-value"; // a parameter fits the printer's definition
inline constexpr std::string_view kTooMany = "too-many";               // the list ends here, the faults do not

} // namespace rules

// An element and those above it, for the life of a call: the elements outlive it.
struct ElementPath
{
    const SchemaElement& element;
    const ElementPath* above = nullptr;

    // "/psf:PrintTicket/psf:Feature[psk:PageMediaSize]", as the document writes the names.
    [[nodiscard]] std::string Text() const;
};

struct Fault
{
    std::size_t line = 0;
    std::string path;
    std::string_view rule;
    std::string message;
};

// Of a document that is wrong everywhere only the first faults are kept, and one that says so.
class FaultList
{
public:
    static constexpr std::size_t kMost = 1000;

    void Add(std::string_view rule, const ElementPath& place, std::string message);

    [[nodiscard]] std::vector<Fault> ByLine() const;

private:
    std::vector<Fault> m_faults;
};
