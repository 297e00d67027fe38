// The objects of texts, CDATA sections and comments.
#pragma once

#include "dom/characterdata.h"
#include "dom/links.h"
#include "dom/nodeobject.h"
#include "dom/strings.h"

namespace winport::dom
{

template <class Shown, const IID&... OwnIds>
class CharacterDataObject : public NodeObject<Shown, IID_IXMLDOMCharacterData, OwnIds...>
{
public:
    using NodeObject<Shown, IID_IXMLDOMCharacterData, OwnIds...>::NodeObject;

    HRESULT STDMETHODCALLTYPE get_data(BSTR* data) override
    {
        return Call(
            [&]
            {
                if (data == nullptr)
                    return E_INVALIDARG;
                *data = nullptr;
                *data = NewBstr(View(this->Node()->content));
                return S_OK;
            });
    }

    HRESULT STDMETHODCALLTYPE put_data(BSTR data) override
    {
        return Call(
            [&]
            {
                this->SetValue(XmlTextOf(data));
                return S_OK;
            });
    }

    HRESULT STDMETHODCALLTYPE get_length(LONG* length) override
    {
        return Call(
            [&]
            {
                if (length == nullptr)
                    return E_INVALIDARG;
                *length = static_cast<LONG>(DataOf(this->Node()).size());
                return S_OK;
            });
    }

    HRESULT STDMETHODCALLTYPE substringData(LONG offset, LONG count, BSTR* data) override
    {
        return Call(
            [&]
            {
                if (data == nullptr)
                    return E_INVALIDARG;
                *data = nullptr;
                const std::u16string text = DataOf(this->Node());
                const DataRange range = CheckedRange(text, offset, count);
                *data = NewBstr(std::u16string_view(text).substr(range.offset, range.count));
                return S_OK;
            });
    }

    HRESULT STDMETHODCALLTYPE appendData(BSTR data) override
    {
        return Call(
            [&]
            {
                this->SetValue(EditedText(DataOf(this->Node()).append(BstrView(data))));
                return S_OK;
            });
    }

    HRESULT STDMETHODCALLTYPE insertData(LONG offset, BSTR data) override
    {
        return Call([&] { return Edit(offset, 0, data); });
    }

    HRESULT STDMETHODCALLTYPE deleteData(LONG offset, LONG count) override
    {
        return Call([&] { return Edit(offset, count, nullptr); });
    }

    HRESULT STDMETHODCALLTYPE replaceData(LONG offset, LONG count, BSTR data) override
    {
        return Call([&] { return Edit(offset, count, data); });
    }

private:
    HRESULT Edit(LONG offset, LONG count, BSTR data)
    {
        std::u16string text = DataOf(this->Node());
        const DataRange range = CheckedRange(text, offset, count);
        this->SetValue(EditedText(text.replace(range.offset, range.count, BstrView(data))));
        return S_OK;
    }
};

template <class Shown, const IID&... OwnIds>
class SplittableObject : public CharacterDataObject<Shown, IID_IXMLDOMText, OwnIds...>
{
public:
    using CharacterDataObject<Shown, IID_IXMLDOMText, OwnIds...>::CharacterDataObject;

    HRESULT STDMETHODCALLTYPE splitText(LONG offset, IXMLDOMText** right) override
    {
        return Call(
            [&]
            {
                if (right == nullptr)
                    return E_INVALIDARG;
                *right = nullptr;
                const auto [before, behind] = SplitAt(DataOf(this->Node()), offset);
                const NodeRef object = NewTwin(behind);
                SetContent(this->Node(), before);
                if (this->Node()->parent != nullptr)
                    LinkChild(this->Node()->parent, object->Node(), this->Node()->next);
                this->GetTree()->CountChange();
                *right = NodeRef(object).template Detach<IXMLDOMText>();
                return S_OK;
            });
    }

private:
    NodeRef NewTwin(const std::string& text)
    {
        const bool isCData = this->Node()->type == XML_CDATA_SECTION_NODE;
        xmlDoc* const document = this->GetTree()->Document();
        OwnedNode node = isCData ? NewCData(document, text) : NewText(document, text);
        NodeRef object = ObjectOf(this->GetTree(), node.get());
        static_cast<void>(node.release());
        return object;
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
