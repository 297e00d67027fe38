// The objects of texts, CDATA sections and comments.
#pragma once

#include "dom/nodeobject.h"

namespace winport::dom
{

template <class Shown, const IID&... OwnIds>
class CharacterDataObject : public NodeObject<Shown, IID_IXMLDOMCharacterData, OwnIds...>
{
public:
    using NodeObject<Shown, IID_IXMLDOMCharacterData, OwnIds...>::NodeObject;

    HRESULT STDMETHODCALLTYPE get_data(BSTR*) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE put_data(BSTR) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE get_length(LONG*) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE substringData(LONG, LONG, BSTR*) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE appendData(BSTR) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE insertData(LONG, BSTR) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE deleteData(LONG, LONG) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE replaceData(LONG, LONG, BSTR) override
    {
        return Call([] { return E_NOTIMPL; });
    }
};

template <class Shown, const IID&... OwnIds>
class SplittableObject : public CharacterDataObject<Shown, IID_IXMLDOMText, OwnIds...>
{
public:
    using CharacterDataObject<Shown, IID_IXMLDOMText, OwnIds...>::CharacterDataObject;

    HRESULT STDMETHODCALLTYPE splitText(LONG, IXMLDOMText**) override
    {
        return Call([] { return E_NOTIMPL; });
    }
};

class TextObject final : public SplittableObject<IXMLDOMText>
{
public:
    using SplittableObject::SplittableObject;
};

class CDataObject final : public SplittableObject<IXMLDOMCDATASection, IID_IXMLDOMCDATASection>
{
public:
    using SplittableObject::SplittableObject;
};

class CommentObject final : public CharacterDataObject<IXMLDOMComment, IID_IXMLDOMComment>
{
public:
    using CharacterDataObject::CharacterDataObject;
};

} // namespace winport::dom
