#include "printschemadocument.h"

#include <objbase.h>

#include <algorithm>

#include <tvutil/cxstring.h>

#include "documenttext.h"
#include "documenttree.h"
#include "failure.h"
#include "utilitiesstaticlib/ccombstr.h"
#include "utilitiesstaticlib/domclassid.h"
#include "utilitiesstaticlib/domiids.h"

namespace
{

constexpr char kReading[] = "reading the document";
constexpr char kWriting[] = "writing the document";

void Require(HRESULT result, const char* what, std::string_view name)
{
    if (FAILED(result))
        FailWithHresult(what, name, result);
}

ComPtr<IXMLDOMDocument2> CreateDocument(std::string_view name)
{
    ComPtr<IXMLDOMDocument2> document;
    Require(CoCreateInstance(kDomDocumentClassId, nullptr, CLSCTX_INPROC_SERVER, IidOf<IXMLDOMDocument2>::Value(),
                             document.PutVoid()),
            "creating a document", name);
    Require(document->put_async(VARIANT_FALSE), kReading, name);
    Require(document->put_validateOnParse(VARIANT_FALSE), kReading, name);
    Require(document->put_resolveExternals(VARIANT_FALSE), kReading, name);
    Require(document->put_preserveWhiteSpace(VARIANT_TRUE), kReading, name);
    return document;
}

std::string ParseErrorOf(IXMLDOMDocument2& document)
{
    ComPtr<IXMLDOMParseError> error;
    if (document.get_parseError(error.Put()) != S_OK || !error)
        return "not well-formed";
    LONG line = 0;
    CComBSTR reason;
    error->get_line(&line);
    error->get_reason(reason.Put());
    std::string text = line > 0 ? "line " + std::to_string(line) + ": " : std::string();
    const std::string why = OneLine(CXString(reason.View()).ToUtf8());
    return text + (why.empty() ? "not well-formed" : why);
}

} // namespace

ComApartment::ComApartment()
{
    const HRESULT result = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    if (FAILED(result))
        FailWithHresult("starting COM", "", result);
}

ComApartment::~ComApartment()
{
    CoUninitialize();
}

ComPtr<IXMLDOMDocument2> LoadDocument(std::string_view bytes, std::string_view name)
{
    return ParseDocument(DecodeDocument(bytes, name), name);
}

ComPtr<IXMLDOMDocument2> ParseDocument(WStringView text, std::string_view name)
{
    const CComBSTR content(text);
    ComPtr<IXMLDOMDocument2> document = CreateDocument(name);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    Require(document->loadXML(content.Get(), &loaded), kReading, name);
    if (loaded != VARIANT_TRUE)
        Fail(kReading, name, ParseErrorOf(*document.Get()));
    return document;
}

std::string DescribeRootFault(IXMLDOMDocument2& document, std::string_view expected)
{
    ComPtr<IXMLDOMElement> root;
    Require(document.get_documentElement(root.Put()), kReading, "");
    if (!root)
        return "there is no root element";
    CComBSTR name;
    CComBSTR local;
    CComBSTR uri;
    Require(root->get_nodeName(name.Put()), kReading, "");
    Require(root->get_baseName(local.Put()), kReading, "");
    Require(root->get_namespaceURI(uri.Put()), kReading, "");
    SchemaElement element;
    element.name = {CXString(uri.View()).ToUtf8(), CXString(local.View()).ToUtf8()};
    element.writtenName = CXString(name.View()).ToUtf8();
    return DescribeRootFault(element, expected);
}

std::string DocumentToBytes(IXMLDOMDocument2& document)
{
    CComBSTR text;
    Require(document.get_xml(text.Put()), kWriting, "");
    WStringView content = text.View();
    // The text's own declaration names no encoding.
    if (content.starts_with(WStringView(W("<?xml "))))
        content.remove_prefix(std::min(content.find(W("?>")) + 2, content.size()));
    content.remove_prefix(std::min(content.find_first_not_of(W(" \t\r\n")), content.size()));

    std::string bytes = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + CXString(content).ToUtf8();
    if (bytes.back() != '\n')
        bytes += '\n';
    return bytes;
}
