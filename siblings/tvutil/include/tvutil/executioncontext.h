// Execution contexts: what a thread is busy with, so that failures and dumps name their place.
//
// A method that does substantial work opens a record for the lifetime of the call:
//
//     const ExecutionContextLifetime context({W("Class::Method"), kSourceFile});
//
// Records nest. They live on the callers' frames and each knows the one around it, so opening one allocates nothing and
// there may be any number. A thread's innermost one is found by UtilitiesDllPerThreadStorage.
#pragma once

#include <cstddef>

#include <tvutil/throwsite.h>

struct BasicExecutionContext
{
    ThrowSite site;
    LONG id = 0;                                  // 0: none; a few contexts are known by number
    const BasicExecutionContext* outer = nullptr; // the one around it, or null
};

// The records that were open on a thread when it was asked. Valid on that thread, and only until one of them ends.
class TVUTIL_API ExecutionContextStack
{
public:
    constexpr ExecutionContextStack() noexcept = default; // none open
    constexpr explicit ExecutionContextStack(const BasicExecutionContext* innermost) noexcept : m_innermost(innermost)
    {
    }

    // The innermost, or null; from there by `outer`.
    [[nodiscard]] constexpr const BasicExecutionContext* Top() const noexcept
    {
        return m_innermost;
    }

    [[nodiscard]] std::size_t Depth() const noexcept; // how many are open

private:
    const BasicExecutionContext* m_innermost = nullptr;
};

// Opens a record on this thread for as long as it lives. It ends on the thread that it began on, before those around
// it. Where the platform has no room for a thread's list, the record is left out of it, silently: what a context
// describes must not fail for want of it.
class TVUTIL_API ExecutionContextLifetime
{
public:
    explicit ExecutionContextLifetime(ThrowSite site, LONG id = 0) noexcept;
    ~ExecutionContextLifetime();
    ExecutionContextLifetime(const ExecutionContextLifetime&) = delete;
    ExecutionContextLifetime& operator=(const ExecutionContextLifetime&) = delete;

private:
    BasicExecutionContext m_context;
    bool m_isListed;
};
