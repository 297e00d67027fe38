#include "tests/platform/domfixture.h"

#include <windows.h>
#include <objbase.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>

#include <gtest/gtest.h>

#include "utilitiesstaticlib/domclassid.h"

namespace
{

WideString Wide(const std::string& utf8)
{
    const int length = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
    WideString text(static_cast<std::size_t>(length), W('\0'));
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), text.data(), length);
    return text;
}

bool IsDeclaration(const std::string& name)
{
    return name.empty() || name == "xmlns" || name.starts_with("xmlns:"); // Wine names a default declaration not at all
}

std::string ExpandedName(IXMLDOMNode* node)
{
    CComBSTR uri;
    CComBSTR local;
    node->get_namespaceURI(uri.Put());
    node->get_baseName(local.Put());
    return "{" + Narrow(uri.View()) + "}" + Narrow(local.View());
}

std::string AttributesMeaning(IXMLDOMNode* element)
{
    const ComPtr<IXMLDOMNamedNodeMap> map = MapOf(element);
    LONG length = 0;
    map->get_length(&length);
    std::set<std::string> parts;
    for (LONG at = 0; at < length; ++at)
    {
        DomNode attribute;
        if (map->get_item(at, attribute.Put()) == S_OK && !IsDeclaration(NameOf(attribute.Get())))
            parts.insert("@" + ExpandedName(attribute.Get()) + "=" + TextOf(attribute.Get()));
    }
    std::string meaning;
    for (const std::string& part : parts)
        meaning += (meaning.empty() ? "" : " ") + part;
    return "(" + meaning + ")";
}

void AppendMeaning(IXMLDOMNode* node, std::string& meaning)
{
    DOMNodeType kind = NODE_INVALID;
    node->get_nodeType(&kind);
    if (kind == NODE_TEXT || kind == NODE_CDATA_SECTION)
    {
        Variant value;
        node->get_nodeValue(value.Put());
        meaning += Narrow(CComBSTR(value.Get().bstrVal).View());
        return;
    }
    if (kind != NODE_ELEMENT && kind != NODE_DOCUMENT)
        return;
    if (kind == NODE_ELEMENT)
        meaning += ExpandedName(node) + AttributesMeaning(node) + "[";
    DomNode child;
    for (HRESULT found = node->get_firstChild(child.Put()); found == S_OK;)
    {
        AppendMeaning(child.Get(), meaning);
        DomNode next;
        found = child->get_nextSibling(next.Put());
        child = next;
    }
    if (kind == NODE_ELEMENT)
        meaning += "]";
}

} // namespace

std::string Narrow(WStringView text)
{
    const int size = static_cast<int>(text.size());
    const int length = WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), size, utf8.data(), length, nullptr, nullptr);
    return utf8;
}

DomDocument NewDocument()
{
    DomDocument document;
    EXPECT_EQ(S_OK, CoCreateInstance(kDomDocumentClassId, nullptr, CLSCTX_INPROC_SERVER,
                                     IidOf<IXMLDOMDocument2>::Value(), document.PutVoid()));
    if (document)
        document->put_async(VARIANT_FALSE);
    return document;
}

HRESULT LoadText(const DomDocument& document, WStringView text)
{
    VARIANT_BOOL isLoaded = VARIANT_FALSE;
    const HRESULT result = document->loadXML(CComBSTR(text).Get(), &isLoaded);
    EXPECT_EQ(isLoaded == VARIANT_TRUE, result == S_OK);
    return result;
}

DomDocument Loaded(WStringView text)
{
    DomDocument document = NewDocument();
    EXPECT_EQ(S_OK, LoadText(document, text)) << Narrow(text) << "\n" << ReasonOf(document);
    return document;
}

HRESULT LoadFile(const DomDocument& document, const std::string& path)
{
    VARIANT_BOOL isLoaded = VARIANT_FALSE;
    const HRESULT result = document->load(Variant(Wide(path)).Get(), &isLoaded);
    EXPECT_EQ(isLoaded == VARIANT_TRUE, result == S_OK);
    return result;
}

HRESULT LoadBytes(const DomDocument& document, std::string_view bytes)
{
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("domtests-" + std::to_string(GetCurrentProcessId()) + ".xml");
    std::ofstream(path, std::ios::binary) << bytes;
    const HRESULT result = LoadFile(document, path.generic_string());
    std::filesystem::remove(path);
    return result;
}

DomNode RootOf(const DomDocument& document)
{
    ComPtr<IXMLDOMElement> root;
    document->get_documentElement(root.Put());
    DomNode node;
    root.As(node);
    return node;
}

DomNode Select(IXMLDOMNode* context, const WCHAR* query)
{
    DomNode node;
    EXPECT_TRUE(SUCCEEDED(context->selectSingleNode(CComBSTR(query).Get(), node.Put()))) << Narrow(query);
    return node;
}

HRESULT SetProperty(const DomDocument& document, const WCHAR* name, WStringView value)
{
    return document->setProperty(CComBSTR(name).Get(), Variant(value).Get());
}

DomNode Created(const DomDocument& document, DOMNodeType kind, const WCHAR* name, const WCHAR* uri)
{
    DomNode node;
    EXPECT_EQ(S_OK, document->createNode(Variant(static_cast<LONG>(kind)).Get(), CComBSTR(name).Get(),
                                         CComBSTR(uri).Get(), node.Put()))
        << Narrow(name);
    return node;
}

HRESULT Append(IXMLDOMNode* parent, IXMLDOMNode* child)
{
    DomNode appended;
    return parent->appendChild(child, appended.Put());
}

HRESULT Remove(IXMLDOMNode* parent, IXMLDOMNode* child)
{
    DomNode removed;
    return parent->removeChild(child, removed.Put());
}

ComPtr<IXMLDOMNamedNodeMap> MapOf(IXMLDOMNode* element)
{
    ComPtr<IXMLDOMNamedNodeMap> map;
    EXPECT_EQ(S_OK, element->get_attributes(map.Put()));
    return map;
}

void AddAttribute(const DomDocument& document, IXMLDOMNode* element, const WCHAR* name, const WCHAR* uri,
                  const WCHAR* value)
{
    const DomNode attribute = Created(document, NODE_ATTRIBUTE, name, uri);
    DomNode set;
    ASSERT_EQ(S_OK, attribute->put_text(CComBSTR(value).Get()));
    ASSERT_EQ(S_OK, MapOf(element)->setNamedItem(attribute.Get(), set.Put())) << Narrow(name);
}

HRESULT RemoveAttribute(IXMLDOMNode* element, const WCHAR* name)
{
    DomNode removed;
    return MapOf(element)->removeNamedItem(CComBSTR(name).Get(), removed.Put());
}

std::string NameOf(IXMLDOMNode* node)
{
    CComBSTR name;
    node->get_nodeName(name.Put());
    return Narrow(name.View());
}

std::string TextOf(IXMLDOMNode* node)
{
    CComBSTR text;
    EXPECT_EQ(S_OK, node->get_text(text.Put()));
    return Narrow(text.View());
}

std::string XmlOf(IXMLDOMNode* node)
{
    CComBSTR xml;
    EXPECT_EQ(S_OK, node->get_xml(xml.Put()));
    return Narrow(xml.View());
}

std::string ReasonOf(const DomDocument& document)
{
    ComPtr<IXMLDOMParseError> error;
    CComBSTR reason;
    if (document->get_parseError(error.Put()) == S_OK)
        error->get_reason(reason.Put());
    return Narrow(reason.View());
}

std::string OwnerOf(IXMLDOMNode* node)
{
    ComPtr<IXMLDOMDocument> owner;
    return node->get_ownerDocument(owner.Put()) == S_OK ? XmlOf(owner.Get()) : std::string();
}

std::string Meaning(IXMLDOMNode* node)
{
    std::string meaning;
    AppendMeaning(node, meaning);
    return meaning;
}

std::string MeaningOfText(const std::string& utf8)
{
    return Meaning(Loaded(Wide(utf8)).Get());
}

std::vector<std::string> TestDocuments()
{
    std::vector<std::string> paths;
    for (const char* const folder : {"tickets", "capabilities"})
    {
        const std::filesystem::path full = std::filesystem::path(TVPT_TEST_DATA_FOLDER) / folder;
        for (const auto& entry : std::filesystem::directory_iterator(full))
            paths.push_back(entry.path().generic_string());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}
