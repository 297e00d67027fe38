// What the document layer's operations refuse: null pointers, empty names, and everything when there is no document.
#include "complugins/ptpcprovider/domhelpers.h"
#include "tests/common/failurecode.h"
#include "tests/ptpcprovider/wrappeddocument.h"

namespace
{

class Refusals : public testing::Test
{
protected:
    Refusals()
    {
        t->CreateXMLElement(W("psf:X"), element.Put());
    }

    const std::string ticketText = TicketAround("<psf:Feature name=\"psk:F\"/>");
    const std::string capabilitiesText = CapabilitiesAround("<psf:Feature name=\"psk:F\"/>");
    const WrappedTicket t{ticketText};
    const WrappedCapabilities c{capabilitiesText};
    const ComPtr<IXMLDOMNode> feature = t.Feature(W("F"));
    ComPtr<IXMLDOMElement> element; // detached
    ComPtr<IXMLDOMElement> option;
    ComPtr<IXMLDOMNode> node;
    ComPtr<IXMLDOMNodeList> list;
    CComBSTR text;
    CComBSTR second;
};

// One operation of each kind: the guards are alike.
TEST_F(Refusals, OfNullPointersAndEmptyNames)
{
    ExpectCode(E_POINTER,
               {
                   [&] { t->GetNode(W("//psf:Feature"), nullptr); },
                   [&] { t->GetAttributeValue(nullptr, W("name"), text.Put()); },
                   [&] { t->CreateProperty(0, W("P"), W("integer"), W("1"), nullptr); },
                   [&] { c->GetChildOptionNodes(nullptr, list.Put()); },
               });
    ExpectCode(E_INVALIDARG,
               {
                   [&] { t->GetNode(W(""), node.Put()); },
                   [&] { t->AppendXMLAttribute(element.Get(), W("a"), W(""), W("")); },
                   [&] { t->GetScoredPropertyValue(W("F"), W(""), text.Put()); },
                   [&] { t->CreateStringParameterInit(W("tk:"), W("P"), W(""), option.Put()); },
                   [&] { c->DeleteParameterDefNodeIfExists(W("psk:"), W("")); },
               });
    ExpectCode(E_FAIL, {[&]
                        {
                            t->GetNodes(W(""), list.Put());
                        }});
    t.ExpectIs(ticketText);
    c.ExpectIs(capabilitiesText);
}

// One call for each guard that nothing behind it would do for. The nodes are another document's: only the wrapper's own
// emptiness can fail the calls.
TEST_F(Refusals, OfAnEmptyWrapper)
{
    const PrintTicketXmlDocument empty(nullptr);
    t->GetNodes(W("Nothing"), list.Put());
    ExpectCode(E_POINTER,
               {
                   [&] { static_cast<void>(empty.GetNsPrefix(0)); },
                   [&] { empty.GetPrefixFromURI(W("urn:x"), text.Put()); },
                   [&] { empty.GetNode(W("//x"), node.Put()); },
                   [&] { empty.GetNodes(W("Feature"), ComPtr<IXMLDOMNodeList>().Put()); },
                   [&] { empty.GetFeatureNode(W("psk:"), W("F"), node.Put()); },
                   [&] { empty.GetAttributeValue(feature.Get(), W("name"), text.Put()); },
                   [&] { empty.DeleteNode(feature.Get()); },
                   [&] { empty.DeleteFeatureNodeIfADuplicateExists(W("psk:"), W("F")); },
                   [&] { empty.DeletePropertyNodesIfExist(W("psk:"), W("F")); },
                   [&] { empty.AppendChild(feature.Get(), element.Get()); },
                   [&] { empty.CreateXMLElement(W("psf:X"), option.Put()); },
                   [&] { empty.AppendXMLAttribute(element.Get(), W("a"), W(""), W("v")); },
                   [&] { empty.GetFeatureOption(W("F"), text.Put(), second.Put()); },
                   [&] { empty.GetScoredPropertyValue(W("F"), W("P"), text.Put()); },
                   [&] { empty.GetParameterInitValueNodeIfExists(W("psk:"), W("P"), node.Put()); },
                   [&] { empty.DeleteParamInitOrphans(list.Get(), list.Get()); },
                   [&] { empty.DeleteNodeList(list.Get()); },
               });
}

TEST(QueryBuilder, RefusesADocumentWithoutFrameworkPrefixAndANullOutput)
{
    PrintTicketQueryBuilder builder(W(""));
    std::string place;
    EXPECT_EQ(E_FAIL, CodeOf([&] { builder.AddFeature(W("psk:"), W("F")); }, &place));
    EXPECT_EQ("complugins\\ptpcprovider\\printticketquerybuilder PrintTicketQueryBuilder::AddFeature", place);
    EXPECT_EQ(E_FAIL, CodeOf([&] { builder.AddOption(W("psk:")); }));
    EXPECT_EQ(E_FAIL, CodeOf([&] { builder.AddValue(); }));
    EXPECT_EQ("", QueryOf(builder).ToUtf8()); // a failed operation leaves the query as it was
    EXPECT_EQ(E_POINTER, CodeOf([&] { builder.GetQuery(nullptr); }));
}

} // namespace
