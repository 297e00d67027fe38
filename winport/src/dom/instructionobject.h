// InstructionObject: a processing instruction. FragmentObject: a document fragment.
#pragma once

#include "dom/nodeobject.h"
#include "dom/strings.h"

namespace winport::dom
{

class InstructionObject final : public NodeObject<IXMLDOMProcessingInstruction, IID_IXMLDOMProcessingInstruction>
{
public:
    using NodeObject::NodeObject;

    HRESULT STDMETHODCALLTYPE get_target(BSTR* target) override
    {
        return Call([&] { return GetNodeName(target); });
    }

    HRESULT STDMETHODCALLTYPE get_data(BSTR* data) override
    {
        return Call([&] { return GetText(data); });
    }

    HRESULT STDMETHODCALLTYPE put_data(BSTR data) override
    {
        return Call(
            [&]
            {
                SetValue(XmlTextOf(data));
                return S_OK;
            });
    }
};

class FragmentObject final : public NodeObject<IXMLDOMDocumentFragment, IID_IXMLDOMDocumentFragment>
{
public:
    using NodeObject::NodeObject;
};

} // namespace winport::dom
