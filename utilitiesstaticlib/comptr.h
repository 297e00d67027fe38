// ComPtr<T>: the owner of one reference to a COM interface.
//
// `Put()` is the out-parameter of calls that hand out a reference; `Attach` takes a reference over, the constructor
// from a raw pointer adds one.
#pragma once

#include <unknwn.h>

#include <cstddef>
#include <utility>

#include "utilitiesstaticlib/iidof.h"

template <class Interface>
class ComPtr
{
public:
    ComPtr() noexcept = default;

    ComPtr(std::nullptr_t) noexcept
    {
    }

    explicit ComPtr(Interface* pointer) noexcept : m_pointer(pointer)
    {
        if (m_pointer != nullptr)
            m_pointer->AddRef();
    }

    ComPtr(const ComPtr& other) noexcept : ComPtr(other.m_pointer)
    {
    }

    ComPtr(ComPtr&& other) noexcept : m_pointer(other.Detach())
    {
    }

    ComPtr& operator=(const ComPtr& other) noexcept
    {
        if (this != &other)
            Attach(ComPtr(other).Detach());
        return *this;
    }

    ComPtr& operator=(ComPtr&& other) noexcept
    {
        Attach(other.Detach());
        return *this;
    }

    ~ComPtr()
    {
        if (m_pointer != nullptr)
            m_pointer->Release();
    }

    // Takes over a reference that the caller owned.
    void Attach(Interface* pointer) noexcept
    {
        ComPtr released;
        released.m_pointer = std::exchange(m_pointer, pointer);
    }

    // Hands the reference over to the caller, who releases it.
    [[nodiscard]] Interface* Detach() noexcept
    {
        return std::exchange(m_pointer, nullptr);
    }

    void Reset() noexcept
    {
        Attach(nullptr);
    }

    // The out-parameter: what was held is released first.
    [[nodiscard]] Interface** Put() noexcept
    {
        Reset();
        return &m_pointer;
    }

    [[nodiscard]] void** PutVoid() noexcept
    {
        return reinterpret_cast<void**>(Put());
    }

    [[nodiscard]] Interface* Get() const noexcept
    {
        return m_pointer;
    }

    Interface* operator->() const noexcept
    {
        return m_pointer;
    }

    explicit operator bool() const noexcept
    {
        return m_pointer != nullptr;
    }

    // The object's other face. QueryInterface's own result; `other` is null when it failed or this pointer is null.
    template <class Other>
    HRESULT As(ComPtr<Other>& other) const noexcept
    {
        other.Reset();
        if (m_pointer == nullptr)
            return E_POINTER;
        return m_pointer->QueryInterface(IidOf<Other>::Value(), other.PutVoid());
    }

    // Gives the caller's out-parameter a reference of its own.
    HRESULT CopyTo(Interface** target) const noexcept
    {
        if (target == nullptr)
            return E_POINTER;
        *target = ComPtr(*this).Detach();
        return S_OK;
    }

private:
    Interface* m_pointer = nullptr;
};
