// The option that a ticket chooses of a public feature.
#pragma once

#include <optional>

#include <tvutil/cxstring.h>

class PrintTicketXmlDocument;

struct TicketOption
{
    CXString name;
    CXString prefix; // with its colon, as the document spells it
};

// Nothing when the ticket is empty, or has no such feature or none with an option. Throws as the document does: E_FAIL
// for a name without a prefix.
[[nodiscard]] std::optional<TicketOption> ReadTicketOption(const PrintTicketXmlDocument& ticket,
                                                           const CXString& featureName);
