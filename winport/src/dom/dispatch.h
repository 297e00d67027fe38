// Dispatch<Interface>: the IDispatch part of the DOM's interfaces. Nobody here calls the DOM by name.
#pragma once

#include "dom/call.h"
#include "oleauto.h"

namespace winport::dom
{

template <class Interface>
class Dispatch : public Interface
{
public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override
    {
        return Call(
            [&]
            {
                if (count != nullptr)
                    *count = 0;
                return E_NOTIMPL;
            });
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override
    {
        return Call([] { return E_NOTIMPL; });
    }

    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return Call([] { return E_NOTIMPL; });
    }
};

} // namespace winport::dom
