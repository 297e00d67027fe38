// An object that shows its references, for tests of owners.
#pragma once

#include <windows.h>

#include <unknwn.h>

class CountingUnknown : public IUnknown
{
public:
    virtual ~CountingUnknown() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override
    {
        if (!IsEqualIID(riid, IID_IUnknown))
        {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        *object = static_cast<IUnknown*>(this);
        AddRef();
        return S_OK;
    }

    ULONG STDMETHODCALLTYPE AddRef() override
    {
        return ++m_references;
    }

    // Stays where it is: the test owns it.
    ULONG STDMETHODCALLTYPE Release() override
    {
        return --m_references;
    }

    [[nodiscard]] ULONG References() const
    {
        return m_references;
    }

private:
    ULONG m_references = 1;
};
