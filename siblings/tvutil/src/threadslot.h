// ThreadSlot: a pointer of one's own for each thread, null until the thread sets it.
//
// The platform's slots instead of thread_local: that is emulated by some tool chains, which allocate at the first use
// in a thread and end the process when there is no memory; and with a destructor it would pin the library to the
// thread.
#pragma once

#include <windows.h>

#include <atomic>

class ThreadSlot
{
public:
    constexpr ThreadSlot() noexcept = default;
    ~ThreadSlot();
    ThreadSlot(const ThreadSlot&) = delete;
    ThreadSlot& operator=(const ThreadSlot&) = delete;

    // Neither changes the thread's last error.
    [[nodiscard]] void* Get() const noexcept;
    // False where the platform has no slot or no memory left: the thread keeps the former pointer.
    bool Set(void* pointer) noexcept;

private:
    [[nodiscard]] DWORD Obtain() noexcept;

    std::atomic<DWORD> m_slot{TLS_OUT_OF_INDEXES}; // from the first Set on
};
