// DocumentObject: a document.
//
// Loading gives it a new tree; what callers hold of the old one stays valid and keeps that alive.
#pragma once

#include <optional>
#include <string_view>

#include "dom/loaderror.h"
#include "dom/nodeobject.h"

namespace winport::dom
{

class DocumentObject final : public NodeObject<IXMLDOMDocument2, IID_IXMLDOMDocument, IID_IXMLDOMDocument2>
{
public:
    explicit DocumentObject(const TreePtr& tree) noexcept;

    // documentobject.cpp: content
    HRESULT STDMETHODCALLTYPE get_doctype(IXMLDOMDocumentType** documentType) override;
    HRESULT STDMETHODCALLTYPE get_implementation(IXMLDOMImplementation** implementation) override;
    HRESULT STDMETHODCALLTYPE get_documentElement(IXMLDOMElement** element) override;
    HRESULT STDMETHODCALLTYPE putref_documentElement(IXMLDOMElement* element) override;
    HRESULT STDMETHODCALLTYPE getElementsByTagName(BSTR name, IXMLDOMNodeList** elements) override;
    HRESULT STDMETHODCALLTYPE nodeFromID(BSTR id, IXMLDOMNode** node) override;

    // documentobjectcreation.cpp
    HRESULT STDMETHODCALLTYPE createElement(BSTR name, IXMLDOMElement** element) override;
    HRESULT STDMETHODCALLTYPE createDocumentFragment(IXMLDOMDocumentFragment** fragment) override;
    HRESULT STDMETHODCALLTYPE createTextNode(BSTR data, IXMLDOMText** text) override;
    HRESULT STDMETHODCALLTYPE createComment(BSTR data, IXMLDOMComment** comment) override;
    HRESULT STDMETHODCALLTYPE createCDATASection(BSTR data, IXMLDOMCDATASection** section) override;
    HRESULT STDMETHODCALLTYPE createProcessingInstruction(BSTR target, BSTR data,
                                                          IXMLDOMProcessingInstruction** instruction) override;
    HRESULT STDMETHODCALLTYPE createAttribute(BSTR name, IXMLDOMAttribute** attribute) override;
    HRESULT STDMETHODCALLTYPE createEntityReference(BSTR name, IXMLDOMEntityReference** reference) override;
    HRESULT STDMETHODCALLTYPE createNode(VARIANT kind, BSTR name, BSTR namespaceUri, IXMLDOMNode** node) override;

    // documentobjectstorage.cpp
    HRESULT STDMETHODCALLTYPE load(VARIANT source, VARIANT_BOOL* isSuccessful) override;
    HRESULT STDMETHODCALLTYPE loadXML(BSTR text, VARIANT_BOOL* isSuccessful) override;
    HRESULT STDMETHODCALLTYPE save(VARIANT destination) override;
    HRESULT STDMETHODCALLTYPE get_parseError(IXMLDOMParseError** error) override;
    HRESULT STDMETHODCALLTYPE validate(IXMLDOMParseError** error) override;
    HRESULT STDMETHODCALLTYPE get_readyState(LONG* state) override;
    HRESULT STDMETHODCALLTYPE get_url(BSTR* url) override;
    HRESULT STDMETHODCALLTYPE abort() override;

    // documentobject.cpp: settings
    HRESULT STDMETHODCALLTYPE get_async(VARIANT_BOOL* isAsync) override;
    HRESULT STDMETHODCALLTYPE put_async(VARIANT_BOOL isAsync) override;
    HRESULT STDMETHODCALLTYPE get_validateOnParse(VARIANT_BOOL* isValidating) override;
    HRESULT STDMETHODCALLTYPE put_validateOnParse(VARIANT_BOOL isValidating) override;
    HRESULT STDMETHODCALLTYPE get_resolveExternals(VARIANT_BOOL* isResolving) override;
    HRESULT STDMETHODCALLTYPE put_resolveExternals(VARIANT_BOOL isResolving) override;
    HRESULT STDMETHODCALLTYPE get_preserveWhiteSpace(VARIANT_BOOL* isPreserving) override;
    HRESULT STDMETHODCALLTYPE put_preserveWhiteSpace(VARIANT_BOOL isPreserving) override;
    HRESULT STDMETHODCALLTYPE setProperty(BSTR name, VARIANT value) override;
    HRESULT STDMETHODCALLTYPE getProperty(BSTR name, VARIANT* value) override;

    // Not there: events, schemas.
    HRESULT STDMETHODCALLTYPE put_onreadystatechange(VARIANT sink) override;
    HRESULT STDMETHODCALLTYPE put_ondataavailable(VARIANT sink) override;
    HRESULT STDMETHODCALLTYPE put_ontransformnode(VARIANT sink) override;
    HRESULT STDMETHODCALLTYPE get_namespaces(IXMLDOMSchemaCollection** namespaces) override;
    HRESULT STDMETHODCALLTYPE get_schemas(VARIANT* schemas) override;
    HRESULT STDMETHODCALLTYPE putref_schemas(VARIANT schemas) override;

private:
    // Takes the text, or the error in its place; answers whether it was taken.
    bool Load(std::string_view utf8, std::optional<LoadError> error);

    LoadError m_outcome; // of the last load; S_OK in its code when there was no error
};

} // namespace winport::dom
