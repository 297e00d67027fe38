// A file on its way through the document layer: its bytes, a DOM, the wrappers; what is left must read back.
//
// Beside what the sanitizers see: a document can be written and read again without a change, wrapping it twice is
// wrapping it once, and a feature that can be found can be deleted. An input that breaks one of these aborts.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <tvutil/tavlencomexception.h>

#include "complugins/ptpcprovider/domhelpers.h"
#include "complugins/ptpcprovider/printcapabilitiesxmldocument.h"
#include "complugins/ptpcprovider/printticketxmldocument.h"
#include "failure.h"
#include "printschemadocument.h"
#include "tests/common/documentcomparer.h"
#include "ticketdocument.h"

namespace
{

constexpr std::size_t kFeaturesToUse = 8;

void Require(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

std::string ReadBack(IXMLDOMDocument2& document)
{
    std::string bytes = DocumentToBytes(document);
    const std::string difference = CompareDocuments(&document, LoadDocument(bytes, "what was written").Get());
    Require(difference.empty(), difference.c_str());
    return bytes;
}

struct Name
{
    CXString prefix; // with its colon
    CXString local;
};

std::vector<Name> NamesOf(const PrintSchemaXmlDocument& document, const WCHAR* element)
{
    std::vector<Name> names;
    ComPtr<IXMLDOMNodeList> nodes;
    document.GetNodes(element, nodes.Put());
    for (const ComPtr<IXMLDOMNode>& node : NodesOf(nodes.Get(), {W("NamesOf"), W("fuzz"), 0}))
    {
        CComBSTR text;
        if (names.size() == kFeaturesToUse || document.GetAttributeValue(node.Get(), W("name"), text.Put()) != S_OK)
            continue;
        const CXString name(text);
        const std::size_t colon = name.Find(W(":"));
        const std::size_t start = colon == CXString::npos ? 0 : colon + 1;
        names.push_back({name.Mid(0, start), name.Mid(start)});
    }
    return names;
}

// An operation may refuse what the document holds, by an exception of its own kind only.
template <class Operation>
HRESULT Try(Operation&& operation)
{
    try
    {
        return operation();
    }
    catch (const TavlenComException& failure)
    {
        return FAILED(failure.GetHresult()) ? failure.GetHresult() : E_FAIL;
    }
}

void UseFeature(const PrintTicketXmlDocument& ticket, const Name& feature)
{
    CComBSTR text;
    CComBSTR prefix;
    ULONG number = 0;
    Try([&] { return ticket.GetFeatureOption(feature.local, text.Put(), prefix.Put()); });
    for (const Name& property : NamesOf(ticket, W("ScoredProperty")))
        Try([&] { return ticket.GetScoredPropertyValue(feature.local, property.local, &number); });
    Try([&] { return ticket.DeleteFeatureNodeIfADuplicateExists(feature.prefix, feature.local); });
    const auto find = [&]
    {
        ComPtr<IXMLDOMNode> node;
        return ticket.GetFeatureNodeIfExists(feature.prefix, feature.local, node.Put());
    };
    const auto remove = [&]
    {
        return ticket.DeleteFeatureAndOrphanParameterInitsIfExists(feature.prefix, feature.local);
    };
    const HRESULT found = Try(find);
    Require(Try(remove) == found, "deleting and finding agree");
}

void UseFeature(const PrintCapabilitiesXmlDocument& capabilities, const Name& feature)
{
    ComPtr<IXMLDOMNode> node;
    if (Try([&] { return capabilities.GetFeatureNodeIfExists(feature.prefix, feature.local, node.Put()); }) != S_OK)
        return;
    capabilities.ReplaceDisplayNamePropertyValue(node.Get(), W("a name"));
    ComPtr<IXMLDOMNodeList> options;
    capabilities.GetChildOptionNodes(node.Get(), options.Put());
    for (const ComPtr<IXMLDOMNode>& option : NodesOf(options.Get(), {W("UseFeature"), W("fuzz"), 0}))
    {
        CComBSTR text;
        Try([&]
            { return capabilities.GetChildScoredPropertyValueAsString(option.Get(), W("OptionName"), text.Put()); });
    }
    for (const Name& parameter : NamesOf(capabilities, W("ParameterDef")))
        Try([&] { return capabilities.DeleteParameterDefNodeIfExists(parameter.prefix, parameter.local); });
    ComPtr<IXMLDOMElement> option;
    capabilities.CreateOption(capabilities.GetNsPrefix(PrintSchema::Keywords), W("O"), W("A & B"), W("None"),
                              option.Put());
    capabilities.AppendChild(node.Get(), option.Get());
}

template <class Document>
void Use(std::string_view bytes)
{
    const ComPtr<IXMLDOMDocument2> dom = LoadDocument(bytes, "input");
    try
    {
        const Document document(dom.Get());
        const std::string once = ReadBack(*dom.Get());
        const Document again(dom.Get());
        Require(DocumentToBytes(*dom.Get()) == once, "wrapping twice is wrapping once");
        for (const Name& feature : NamesOf(document, PrintSchema::kFeature))
            UseFeature(document, feature);
    }
    catch (const TavlenComException&)
    {
        // No document of this kind; half of it may be changed by now, and must read back all the same.
    }
    ReadBack(*dom.Get());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const ComApartment apartment;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    try
    {
        ReadBack(*LoadDocument(bytes, "input").Get());
    }
    catch (const Failure&)
    {
        return 0; // no document at all
    }
    try
    {
        // What is handed to a provider has every standard prefix at its root, and can be read as it stands.
        const std::string whole = ReadBack(*LoadForProvider(bytes, "input", "PrintTicket").Get());
        Require(ReadBack(*LoadForProvider(whole, "input", "PrintTicket").Get()) == whole, "completing twice is once");
    }
    catch (const Failure&)
    {
        // No ticket, or one that is refused.
    }
    Use<PrintTicketXmlDocument>(bytes);
    Use<PrintCapabilitiesXmlDocument>(bytes);
    return 0;
}
