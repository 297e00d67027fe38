// The copies translator: the job's copy count between dmCopies and the parameter "JobCopiesAllDocuments".
#include <tvutil/tavlencomexception.h>

#include "complugins/ptpcprovider/domhelpers.h"
#include "complugins/ptpcprovider/printticketxmldocument.h"
#include "complugins/ptpcprovider/tavlenptprovider.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\ptpcprovider\\miscfeaturesimpl");
constexpr WCHAR kCopiesParameter[] = W("JobCopiesAllDocuments");

} // namespace

// dmFields is not touched and no change is reported, on purpose: the count is not part of the private settings.
HRESULT TavlenPtProvider::ConvertMiscFeaturesToDevmode(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                                       AttributeBytesIndexedList* /*attributes*/, bool* /*changed*/)
{
    constexpr const WCHAR* kMethod = W("TavlenPtProvider::ConvertMiscFeaturesToDevmode");
    const CXString keywordsPrefix = ticket.GetNsPrefix(PrintSchema::Keywords);
    ComPtr<IXMLDOMNode> value;
    if (ticket.GetParameterInitValueNodeIfExists(keywordsPrefix, kCopiesParameter, value.Put()) == S_FALSE)
        return S_OK;
    CComBSTR text;
    ThrowIfFailed(value->get_text(text.Put()), {kMethod, kSourceFile});
    if (text.IsEmpty())
        return S_OK;
    devmode->dmCopies = static_cast<short>(_wtoi(CXString(text).c_str())); // cut to 16 bits
    return S_OK;
}

HRESULT TavlenPtProvider::ConvertDevmodeToMiscFeatures(PrintTicketXmlDocument& ticket, DEVMODEW* devmode)
{
    const CXString keywordsPrefix = ticket.GetNsPrefix(PrintSchema::Keywords);
    const auto copies = static_cast<ULONG>(LONG{devmode->dmCopies});
    ticket.DeleteParameterInitNodeIfExists(keywordsPrefix, kCopiesParameter);
    ticket.AppendIntegerParameterInit(keywordsPrefix, kCopiesParameter, copies);
    return S_OK;
}
