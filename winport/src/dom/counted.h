// Counted<Interface>: IUnknown of the objects that are no nodes (lists, maps, parse errors).
#pragma once

#include <atomic>

#include "dom/dispatch.h"

namespace winport::dom
{

// `InterfaceId` is Interface's own id. A new object has one reference.
template <class Interface, const IID& InterfaceId>
class Counted : public Dispatch<Interface>
{
public:
    Counted() = default;
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    virtual ~Counted() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override
    {
        return Call(
            [&]
            {
                if (object == nullptr)
                    return E_POINTER;
                const bool isKnown = riid == IID_IUnknown || riid == IID_IDispatch || riid == InterfaceId;
                *object = isKnown ? static_cast<Interface*>(this) : nullptr;
                if (!isKnown)
                    return E_NOINTERFACE;
                ++m_references;
                return S_OK;
            });
    }

    ULONG STDMETHODCALLTYPE AddRef() override
    {
        return ++m_references;
    }

    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG left = --m_references;
        if (left == 0)
            delete this;
        return left;
    }

private:
    std::atomic<ULONG> m_references{1};
};

} // namespace winport::dom
