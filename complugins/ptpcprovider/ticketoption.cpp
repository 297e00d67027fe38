#include "complugins/ptpcprovider/ticketoption.h"

#include "complugins/ptpcprovider/printticketxmldocument.h"

std::optional<TicketOption> ReadTicketOption(const PrintTicketXmlDocument& ticket, const CXString& featureName)
{
    if (ticket.GetDocument() == nullptr)
        return std::nullopt;
    CComBSTR name;
    CComBSTR prefix;
    if (ticket.GetFeatureOption(featureName, name.Put(), prefix.Put()) == PrintTicketXmlDocument::kNotFound)
        return std::nullopt;
    return TicketOption{name, prefix};
}
