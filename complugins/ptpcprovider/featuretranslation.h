// What the translators have in common: a feature's choice out of a ticket, and a feature into a document.
#pragma once

#include <tvutil/cxstring.h>

#include <optional>

#include "complugins/ptpcprovider/printticketxmldocument.h"

// In which namespace an option of a ticket was named, as the ticket's own prefixes tell.
enum class OptionNamespace
{
    Keywords,
    PrivateKeywords,
    Other, // any other prefix, also one that nobody declares: the option is none of those that we know
};

struct TicketOption
{
    CXString name;
    OptionNamespace nameSpace = OptionNamespace::Other;
};

// The ticket's choice of a public feature; nothing when it makes none, or is empty. A name without a prefix throws
// E_FAIL.
[[nodiscard]] std::optional<TicketOption> ReadTicketOption(const PrintTicketXmlDocument& ticket,
                                                           const CXString& featureName);

// Every public feature of that name goes, wherever it stands.
void DeleteFeature(const PrintSchemaXmlDocument& document, const CXString& featureName);

// The finished feature takes the place of every one of its name, as the last child of the root.
void ReplaceFeature(const PrintSchemaXmlDocument& document, const CXString& featureName, IXMLDOMElement* feature);

// A ticket's choice.
void ReplaceTicketOption(const PrintTicketXmlDocument& ticket, const CXString& featureName, bool optionIsPublic,
                         const CXString& optionName);
