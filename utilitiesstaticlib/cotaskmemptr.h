// CoTaskMemPtr<T>: the owner of task memory that a COM call handed out.
#pragma once

#include <objbase.h>

#include <memory>

struct CoTaskMemDeleter
{
    void operator()(void* memory) const noexcept
    {
        CoTaskMemFree(memory);
    }
};

template <class T>
using CoTaskMemPtr = std::unique_ptr<T, CoTaskMemDeleter>;

// The out-parameter of a call that hands out task memory: `helper->GetOptions(TaskMemoryOut(options))`. What the owner
// held is freed first; it takes over the answer when the statement ends.
template <class T>
class TaskMemoryOut
{
public:
    using Pointer = typename CoTaskMemPtr<T>::pointer;

    explicit TaskMemoryOut(CoTaskMemPtr<T>& owner) noexcept : m_owner(owner)
    {
        m_owner.reset();
    }

    TaskMemoryOut(const TaskMemoryOut&) = delete;
    TaskMemoryOut& operator=(const TaskMemoryOut&) = delete;

    ~TaskMemoryOut()
    {
        m_owner.reset(m_memory);
    }

    operator Pointer*() noexcept
    {
        return &m_memory;
    }

private:
    CoTaskMemPtr<T>& m_owner;
    Pointer m_memory = nullptr;
};
