// InstructionObject: a processing instruction.
#pragma once

#include "dom/nodeobject.h"

namespace winport::dom
{

class InstructionObject final : public NodeObject<IXMLDOMProcessingInstruction, IID_IXMLDOMProcessingInstruction>
{
public:
    using NodeObject::NodeObject;

    HRESULT STDMETHODCALLTYPE get_target(BSTR*) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE get_data(BSTR*) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE put_data(BSTR) override
    {
        return Call([] { return E_NOTIMPL; });
    }
};

} // namespace winport::dom
