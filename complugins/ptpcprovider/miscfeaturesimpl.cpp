// The copies translator: the job's copy count between dmCopies and the parameter "JobCopiesAllDocuments".
#include "complugins/ptpcprovider/domhelpers.h"
#include "complugins/ptpcprovider/printticketxmldocument.h"
#include "complugins/ptpcprovider/tavlenptprovider.h"

namespace
{

constexpr WCHAR kCopiesParameter[] = W("JobCopiesAllDocuments");

} // namespace

// dmFields is not touched and no change is reported, on purpose: the count is not part of the private settings.
HRESULT TavlenPtProvider::ConvertMiscFeaturesToDevmode(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                                       AttributeBytesIndexedList* /*attributes*/, bool* /*changed*/)
{
    PrintTicketQueryBuilder builder(ticket.GetNsPrefix(PrintSchema::Framework));
    builder.AddParameterInit(ticket.GetNsPrefix(PrintSchema::Keywords), kCopiesParameter);
    CComBSTR text;
    if (ticket.GetNodeValue(QueryOf(builder), text.Put()) == S_FALSE || text.IsEmpty())
        return S_OK;
    devmode->dmCopies = static_cast<short>(_wtoi(CXString(text).c_str())); // cut to 16 bits
    return S_OK;
}

HRESULT TavlenPtProvider::ConvertDevmodeToMiscFeatures(PrintTicketXmlDocument& ticket, DEVMODEW* devmode)
{
    const CXString keywordsPrefix = ticket.GetNsPrefix(PrintSchema::Keywords);
    const auto copies = static_cast<ULONG>(LONG{devmode->dmCopies});
    ticket.DeleteParameterInitNodesIfExist(keywordsPrefix, kCopiesParameter);
    ticket.AppendIntegerParameterInit(keywordsPrefix, kCopiesParameter, copies);
    return S_OK;
}
