// AttributeObject: an attribute, or a namespace declaration, which is one too.
#pragma once

#include "dom/nodeobject.h"

namespace winport::dom
{

class AttributeObject final : public NodeObject<IXMLDOMAttribute, IID_IXMLDOMAttribute>
{
public:
    using NodeObject::NodeObject;

    HRESULT STDMETHODCALLTYPE get_name(BSTR* name) override
    {
        return Call([&] { return GetNodeName(name); });
    }

    HRESULT STDMETHODCALLTYPE get_value(VARIANT* value) override
    {
        return Call([&] { return GetNodeValue(value); });
    }

    HRESULT STDMETHODCALLTYPE put_value(VARIANT value) override
    {
        return Call([&] { return PutNodeValue(value); });
    }
};

} // namespace winport::dom
