// What a printer offers, as its print capabilities tell it, and whether a ticket asks for that.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <vector>

#include "faultlist.h"
#include "parameterdefinition.h"

// One feature, or all of one name in one place taken together.
struct OfferedFeature
{
    bool picksMany = false;
    std::map<SchemaName, const SchemaElement*> optionOfName; // the first of each
    std::vector<const SchemaElement*> options;
    std::map<SchemaName, std::unique_ptr<OfferedFeature>> features; // in it
};

class PrinterOffer
{
public:
    // Of a root element that outlives it.
    explicit PrinterOffer(const SchemaElement& capabilities);

    // The ticket's features that may have several options.
    [[nodiscard]] std::set<const SchemaElement*> FindManyChoice(const SchemaElement& ticket) const;
    // Features, options and values of parameters that are not offered, also where the ticket has a value in place of
    // the parameter's; of another document, none. Names without a declared prefix are left to the rules of
    // construction. Throws Failure when it would take too long.
    void Compare(const SchemaElement& ticket, FaultList& faults) const;

private:
    OfferedFeature m_root; // only its features are used
    std::map<SchemaName, ParameterDefinition> m_parameters;
};
