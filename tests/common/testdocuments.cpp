#include "tests/common/testdocuments.h"
#include "tests/common/testfolders.h"

#include <gtest/gtest.h>
#include <objbase.h>

#include <tvutil/cxstring.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "complugins/ptpcprovider/domhelpers.h"
#include "utilitiesstaticlib/domclassid.h"

namespace
{

constexpr const WCHAR* kSelectionNamespaces =
    W("xmlns:psf='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework'");

WideString Decode(const std::string& bytes)
{
    constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
    constexpr std::string_view kUtf16Mark = "\xFF\xFE";
    if (std::string_view(bytes).starts_with(kUtf16Mark))
    {
        WideString text;
        for (std::size_t at = kUtf16Mark.size(); at + 1 < bytes.size(); at += 2)
            text += static_cast<WCHAR>(static_cast<unsigned char>(bytes[at]) | static_cast<unsigned char>(bytes[at + 1])
                                                                                   << 8);
        return text;
    }
    const std::size_t start = std::string_view(bytes).starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0;
    return WideString(CXString::FromUtf8(std::string_view(bytes).substr(start)).View());
}

// loadXML takes text, whose own declaration of an encoding no longer holds.
WStringView WithoutXmlDeclaration(WStringView text)
{
    const WStringView start = W("<?xml");
    const std::size_t end = text.find(W("?>"));
    return text.starts_with(start) && end != WStringView::npos ? text.substr(end + 2) : text;
}

std::vector<ComPtr<IXMLDOMNode>> SelectNodes(IXMLDOMDocument2* document, const std::string& query)
{
    const CComBSTR namespaces(kSelectionNamespaces);
    EXPECT_EQ(S_OK,
              document->setProperty(CComBSTR(W("SelectionLanguage")).Get(), BorrowAsVariant(CComBSTR(W("XPath")))));
    EXPECT_EQ(S_OK, document->setProperty(CComBSTR(W("SelectionNamespaces")).Get(), BorrowAsVariant(namespaces)));
    ComPtr<IXMLDOMNodeList> list;
    EXPECT_EQ(S_OK, document->selectNodes(CXString::FromUtf8(query).ToBstr().Get(), list.Put())) << query;
    return NodesOf(list.Get(), {W("SelectNodes"), W("tests")});
}

std::string DocumentAround(const std::string& root, const std::string& content, const std::string& moreDeclarations)
{
    return "<" + root +
           " xmlns:psf=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework\" "
           "xmlns:psk=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords\" "
           "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" " +
           moreDeclarations + " version=\"1\">" + content + "</" + root + ">";
}

} // namespace

ComPtr<IXMLDOMDocument2> LoadDocument(WStringView text, bool keepBlanks)
{
    ComPtr<IXMLDOMDocument2> document;
    const HRESULT created = CoCreateInstance(kDomDocumentClassId, nullptr, CLSCTX_INPROC_SERVER,
                                             IidOf<IXMLDOMDocument2>::Value(), document.PutVoid());
    if (FAILED(created))
        throw std::runtime_error("there is no DOM: " + std::to_string(created));
    document->put_async(VARIANT_FALSE);
    document->put_preserveWhiteSpace(keepBlanks ? VARIANT_TRUE : VARIANT_FALSE);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    document->loadXML(CComBSTR(WithoutXmlDeclaration(text)).Get(), &loaded);
    if (loaded != VARIANT_TRUE)
        throw std::runtime_error("no document: " + Utf8(text));
    return document;
}

ComPtr<IXMLDOMDocument2> LoadDocument(const std::string& utf8, bool keepBlanks)
{
    return LoadDocument(CXString::FromUtf8(utf8).View(), keepBlanks);
}

ComPtr<IXMLDOMDocument2> LoadTestDocument(const std::string& name)
{
    std::ifstream file(TestDataFolder() / name, std::ios::binary);
    EXPECT_TRUE(file) << name;
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    return LoadDocument(Decode(bytes));
}

std::string TextOf(IXMLDOMDocument2* document)
{
    CComBSTR text;
    EXPECT_EQ(S_OK, document->get_xml(text.Put()));
    return Utf8(text.View());
}

ComPtr<IXMLDOMDocument2> Reparse(IXMLDOMDocument2* document)
{
    return LoadDocument(TextOf(document));
}

std::vector<std::string> Select(IXMLDOMDocument2* document, const std::string& query)
{
    std::vector<std::string> texts;
    for (const ComPtr<IXMLDOMNode>& node : SelectNodes(document, query))
    {
        CComBSTR text;
        EXPECT_EQ(S_OK, node->get_text(text.Put()));
        texts.push_back(Utf8(text.View()));
    }
    return texts;
}

void Remove(IXMLDOMDocument2* document, const std::string& query)
{
    for (const ComPtr<IXMLDOMNode>& node : SelectNodes(document, query))
    {
        ComPtr<IXMLDOMNode> parent;
        ComPtr<IXMLDOMNode> removed;
        EXPECT_EQ(S_OK, node->get_parentNode(parent.Put()));
        EXPECT_EQ(S_OK, parent->removeChild(node.Get(), removed.Put()));
    }
}

std::vector<std::string> TestDocumentsIn(const std::string& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(TestDataFolder() / folder))
        names.push_back(folder + "/" + entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string TicketAround(const std::string& content, const std::string& moreDeclarations)
{
    return DocumentAround("psf:PrintTicket", content, moreDeclarations);
}

std::string CapabilitiesAround(const std::string& content)
{
    return DocumentAround("psf:PrintCapabilities", content, "");
}

std::string Utf8(WStringView text)
{
    return CXString(text).ToUtf8();
}
