// The maker's own parameters of a ticket: the driver data, which carries the whole private part of a devmode through a
// ticket, and the job ticket, which the printer's controller reads.
//
// The driver data is Base64 of a record: u32 CRC-32 of what follows, little-endian; then the used region of the part.
#include <tvutil/bytewriter.h>
#include <tvutil/crc32.h>
#include <tvutil/tavlenutilities.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <vector>

#include "complugins/oemdevmode.h"
#include "complugins/ptpcprovider/deletenamed.h"
#include "complugins/ptpcprovider/domhelpers.h"
#include "complugins/ptpcprovider/printcapabilitiesxmldocument.h"
#include "complugins/ptpcprovider/printticketxmldocument.h"
#include "complugins/ptpcprovider/tavlenptprovider.h"
#include "complugins/renjtifforxps.h"
#include "complugins/xdevmode.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\ptpcprovider\\privatefeaturesimpl");

constexpr WCHAR kDriverDataParameter[] = W("JobTavlenDriverData");
constexpr WCHAR kJobTicketParameter[] = W("JobTavlenJtifJobTicket");

constexpr LONG kMaxDriverDataLength = 20000;
constexpr LONG kMaxJobTicketLength = 3500000;

// Of what is read: white space and line ends of other producers included. Nothing longer is decoded.
constexpr std::size_t kLongestDriverDataText = std::size_t{4} * kMaxDriverDataLength;

// Of both, although the job ticket is no Base64, deliberately.
constexpr WCHAR kUnitType[] = W("base64");

// The places that failures name, with the line that the system reports for it where there is one.
constexpr ThrowSite kEmbedding{W("TavlenPtProvider::EmbedPrivateJtifInPrintTicket"), kSourceFile, 1811};

constexpr std::size_t kCrcSize = sizeof(DWORD);

constexpr ThrowSite kSettingDriverData{W("TavlenPtProvider::SetTavlenDriverDataInPrintTicket"), kSourceFile};
constexpr ThrowSite kDefiningDriverData{W("TavlenPtProvider::AddTavlenDriverDataCapabilities"), kSourceFile};
constexpr ThrowSite kDefiningJobTicket{W("TavlenPtProvider::AddJobJtifJobTicketCapabilities"), kSourceFile};
CXString EncodeDriverData(std::span<const std::byte> data)
{
    ByteBuffer record(kCrcSize);
    const DWORD crc = Crc32::GetCrc(data.data(), data.size());
    ByteWriter(record.bytes()).U32(crc);
    record.append(data);

    const auto size = static_cast<int>(record.size());
    const int room = TavlenUtilities::Base64EncodeGetRequiredLength(size, TavlenUtilities::kBase64NoLineBreaks);
    WideString text(static_cast<std::size_t>(room), W('\0'));
    int length = room;
    TavlenUtilities::Base64Encode(record.data(), size, text.data(), &length, TavlenUtilities::kBase64NoLineBreaks);
    text.resize(static_cast<std::size_t>(std::min(length, room)));
    return CXString(text);
}

struct DriverData
{
    ByteBuffer buffer;      // with zeros behind what was decoded
    std::size_t length = 0; // of what was decoded
};

// Nothing for a text that is too long or no Base64, or whose CRC is not that of the data.
std::optional<DriverData> DecodeDriverData(WStringView text)
{
    if (text.size() > kLongestDriverDataText)
        return std::nullopt;
    const auto characters = static_cast<int>(text.size());
    int length = TavlenUtilities::Base64DecodeGetRequiredLength(characters);
    DriverData decoded;
    decoded.buffer.resize(static_cast<std::size_t>(length));
    if (!TavlenUtilities::Base64Decode(text.data(), characters, decoded.buffer.data(), &length) ||
        static_cast<std::size_t>(length) <= kCrcSize)
        return std::nullopt;
    decoded.length = static_cast<std::size_t>(length);
    const DWORD crc = Crc32::GetCrc(decoded.buffer.data() + kCrcSize, decoded.length - kCrcSize);
    if (decoded.buffer.getAsLongValue() != static_cast<LONG>(crc))
        return std::nullopt;
    return decoded;
}

PrintCapabilitiesXmlDocument::StringParameter ParameterOfLength(LONG maximumLength)
{
    return {W("Optional"), {}, {}, 0, maximumLength, kUnitType};
}

HRESULT AddParameterDef(PrintCapabilitiesXmlDocument& capabilities, const WCHAR* name, LONG maximumLength,
                        const ThrowSite& site)
{
    const CXString privatePrefix = capabilities.GetNsPrefix(PrintSchema::PrivateKeywords);
    DeleteNamed(capabilities, PrintSchema::kParameterDef, privatePrefix + name);
    ComPtr<IXMLDOMElement> parameterDef;
    capabilities.CreateStringParameterDef(privatePrefix, name, ParameterOfLength(maximumLength), parameterDef.Put());
    return capabilities.AppendChildToRootNode(parameterDef.Get(), &site);
}

// The text in pieces that a CDATA section can hold: its end mark is split between two of them. Nearly always one.
std::vector<WStringView> CdataPieces(WStringView text)
{
    constexpr WStringView kEndMark = W("]]>");
    std::vector<WStringView> pieces;
    for (std::size_t mark = text.find(kEndMark); mark != WStringView::npos; mark = text.find(kEndMark))
    {
        pieces.push_back(text.substr(0, mark + 2));
        text.remove_prefix(mark + 2);
    }
    pieces.push_back(text);
    return pieces;
}

// The element's text becomes a CDATA section.
void SetCdata(IXMLDOMDocument2& document, IXMLDOMNode& element, WStringView text)
{
    ThrowIfFailed(element.put_text(MakeBstr({}, kEmbedding).Get()), kEmbedding);
    for (const WStringView piece : CdataPieces(text))
    {
        ComPtr<IXMLDOMCDATASection> section;
        ThrowIfFailed(document.createCDATASection(MakeBstr(piece, kEmbedding).Get(), section.Put()), kEmbedding);
        ThrowIfFailed(element.appendChild(section.Get(), nullptr), kEmbedding);
    }
}

} // namespace

// Without a maker's part there is nothing to carry, and a ticket's data is left as it is: it may be that of a devmode
// which has one.
HRESULT TavlenPtProvider::SetTavlenDriverDataInPrintTicket(PrintTicketXmlDocument& ticket, XDevmode& devmode)
{
    if (!devmode.HasOemDevmode())
        return S_FALSE;
    const CXString text = EncodeDriverData(devmode.GetOemDevmodeData());
    const CXString privatePrefix = ticket.GetNsPrefix(PrintSchema::PrivateKeywords);
    DeleteNamed(ticket, PrintSchema::kParameterInit, privatePrefix + kDriverDataParameter);
    ComPtr<IXMLDOMElement> parameterInit;
    ticket.CreateStringParameterInit(privatePrefix, kDriverDataParameter, text, parameterInit.Put());
    return ticket.AppendChildToRootNode(parameterInit.Get(), &kSettingDriverData);
}

// Before any translator, and before the settings are read: they are in what is restored. Driver data that is damaged or
// foreign is ignored without a word, deliberately: the ticket's other features still apply.
HRESULT TavlenPtProvider::GetTavlenDriverDataFromPrintTicketAndUpdateDevmode(PrintTicketXmlDocument& ticket,
                                                                             XDevmode& devmode)
{
    ComPtr<IXMLDOMNode> value;
    CComBSTR text;
    if (ticket.GetParameterInitValueNodeIfExists(ticket.GetNsPrefix(PrintSchema::PrivateKeywords), kDriverDataParameter,
                                                 value.Put()) == S_FALSE ||
        value->get_text(text.Put()) != S_OK)
        return S_OK;
    const auto decoded = DecodeDriverData(text.View());
    if (!decoded || decoded->length - kCrcSize > OemDevmodeFormat::kSize ||
        decoded->length - kCrcSize < OemDevmodeFormat::kEntriesOffset)
        return S_OK;
    // The buffer as a whole: its zeros come along, but never more than a part has room for.
    const auto data = decoded->buffer.bytes().subspan(kCrcSize);
    devmode.RestoreOemDevmode(data.first(std::min(data.size(), OemDevmodeFormat::kSize)));
    return S_OK;
}

HRESULT TavlenPtProvider::AddTavlenDriverDataCapabilities(PrintCapabilitiesXmlDocument& capabilities)
{
    return AddParameterDef(capabilities, kDriverDataParameter, kMaxDriverDataLength, kDefiningDriverData);
}

HRESULT TavlenPtProvider::AddJobJtifJobTicketCapabilities(PrintCapabilitiesXmlDocument& capabilities)
{
    return AddParameterDef(capabilities, kJobTicketParameter, kMaxJobTicketLength, kDefiningJobTicket);
}

// S_FALSE, with no text, for products whose controller reads none.
HRESULT TavlenPtProvider::GetTavlenJtifJobTicketAsCdataSection(XDevmode& devmode, CComBSTR& text)
{
    text.Empty();
    ProductData& product = GetProductData();
    if (!RenBase::HasJobTicket(product.GetControllerFamily()))
        return S_FALSE;
    ByteBuffer jobTicket;
    RenJtifForXps(m_printerHandle, devmode, product).GenerateJtif(jobTicket);
    if (jobTicket.empty())
        return S_FALSE;
    text = MakeBstr(jobTicket.getAsStringValueFromAnsiBuffer(),
                    {W("TavlenPtProvider::GetTavlenJtifJobTicketAsCdataSection"), kSourceFile});
    return S_OK;
}

// The old one goes before the product is asked: a product without job tickets leaves none in the ticket.
HRESULT TavlenPtProvider::EmbedPrivateJtifInPrintTicket(PrintTicketXmlDocument& ticket, XDevmode& devmode)
{
    const CXString privatePrefix = ticket.GetNsPrefix(PrintSchema::PrivateKeywords);
    DeleteNamed(ticket, PrintSchema::kParameterInit, privatePrefix + kJobTicketParameter);
    CComBSTR text;
    if (GetTavlenJtifJobTicketAsCdataSection(devmode, text) == S_FALSE)
        return S_FALSE;
    ComPtr<IXMLDOMElement> parameterInit;
    ticket.CreateStringParameterInit(privatePrefix, kJobTicketParameter, text, parameterInit.Put());
    ComPtr<IXMLDOMNode> value;
    ThrowIfFailed(parameterInit->get_firstChild(value.Put()), kEmbedding);
    SetCdata(*ticket.GetDocument(), *value.Get(), text.View());
    return ticket.AppendChildToRootNode(parameterInit.Get(), &kEmbedding);
}
