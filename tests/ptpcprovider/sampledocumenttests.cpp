// Every sample loses a feature or a definition and nothing else; capabilities are wrapped as they are.
#include <tvutil/cxstring.h>

#include "tests/ptpcprovider/wrappeddocument.h"

namespace
{

// Deletes one element of a sample after the other, each from a fresh copy.
template <class Document>
void ExpectOneLess(const ComPtr<IXMLDOMDocument2>& whole, const std::string& element,
                   HRESULT (Document::*remove)(const CXString& prefix, const CXString& local) const)
{
    const Texts names = Select(whole.Get(), "//psf:" + element + "/@name");
    // Of some hundred alike, some are enough.
    for (std::size_t at = 0; at < names.size(); at += 1 + names.size() / 50)
    {
        SCOPED_TRACE(names[at]);
        const ComPtr<IXMLDOMDocument2> expected = Reparse(whole.Get());
        Remove(expected.Get(), "(//psf:" + element + "[@name='" + names[at] + "'])[1]");
        const ComPtr<IXMLDOMDocument2> dom = Reparse(whole.Get());
        const Document document(dom.Get());
        const std::size_t local = names[at].find(':') + 1;
        EXPECT_EQ(S_OK, (document.*remove)(CXString::FromUtf8(names[at].substr(0, local)),
                                           CXString::FromUtf8(names[at].substr(local))));
        EXPECT_EQ("", CompareDocuments(expected.Get(), dom.Get()));
        EXPECT_NE("", CompareDocuments(whole.Get(), dom.Get()));
    }
}

TEST(SampleTickets, LoseAFeatureAndNothingElse)
{
    for (const std::string& file : TestDocumentsIn("tickets"))
    {
        SCOPED_TRACE(file);
        if (file.find("/odd-") != std::string::npos)
            continue; // refused
        const ComPtr<IXMLDOMDocument2> whole = LoadTestDocument(file);
        const PrintTicketXmlDocument ticket(whole.Get()); // spells private names with "tk"
        ExpectOneLess<PrintTicketXmlDocument>(whole, "Feature", &PrintTicketXmlDocument::DeleteFeatureNodeIfExists);
    }
}

TEST(SampleCapabilities, AreWrappedAsTheyAreAndLoseAFeatureOrADefinitionAndNothingElse)
{
    using Capabilities = PrintCapabilitiesXmlDocument;
    for (const std::string& file : TestDocumentsIn("capabilities"))
    {
        SCOPED_TRACE(file);
        const ComPtr<IXMLDOMDocument2> whole = LoadTestDocument(file);
        const std::string before = TextOf(whole.Get());
        const Capabilities capabilities(whole.Get());
        EXPECT_EQ(before, TextOf(whole.Get()));
        ExpectOneLess<Capabilities>(whole, "Feature", &Capabilities::DeleteFeatureNodeIfExists);
        ExpectOneLess<Capabilities>(whole, "ParameterDef", &Capabilities::DeleteParameterDefNodeIfExists);
    }
}

} // namespace
