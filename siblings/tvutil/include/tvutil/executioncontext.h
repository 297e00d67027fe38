// Execution contexts: what a thread is busy with, so that failures and dumps name their place.
//
// A method that does substantial work opens a record for the lifetime of the call:
//
//     const ExecutionContextLifetime context({W("Class::Method"), kSourceFile});
//
// Records nest; the stack belongs to one thread (UtilitiesDllPerThreadStorage) and holds references to records that
// live on the callers' frames, so opening one allocates nothing.
#pragma once

#include <cstddef>

#include <tvutil/throwsite.h>

struct BasicExecutionContext
{
    ThrowSite site;
    LONG id = 0; // 0: none; a few contexts are known by number
};

// Bounded: records beyond the bound are counted and not kept, so that recursion cannot exhaust it.
class TVUTIL_API ExecutionContextStack
{
public:
    static constexpr std::size_t kCapacity = 64;

    void Push(const BasicExecutionContext& context) noexcept;
    void Pop() noexcept;

    [[nodiscard]] std::size_t Depth() const noexcept;                // records open, those beyond the bound included
    [[nodiscard]] const BasicExecutionContext* Top() const noexcept; // the innermost kept record, or null
    [[nodiscard]] const BasicExecutionContext* At(std::size_t index) const noexcept; // 0 is the outermost; or null

private:
    const BasicExecutionContext* m_records[kCapacity] = {};
    std::size_t m_depth = 0;
};

// Pushes on construction and pops on destruction, on this thread's stack.
class TVUTIL_API ExecutionContextLifetime
{
public:
    explicit ExecutionContextLifetime(ThrowSite site, LONG id = 0) noexcept;
    ~ExecutionContextLifetime();
    ExecutionContextLifetime(const ExecutionContextLifetime&) = delete;
    ExecutionContextLifetime& operator=(const ExecutionContextLifetime&) = delete;

private:
    BasicExecutionContext m_context;
    ExecutionContextStack& m_stack;
};
