// SlimLock: a mutex of one word, ready without a constructor and in need of no destruction.
//
// For what a process shares. The standard library's mutex allocates at its first use under some tool chains, and is
// past its end where a module's end still needs it. Not to be locked again by the thread that holds it.
#pragma once

#include <windows.h>

class SlimLock
{
public:
    constexpr SlimLock() noexcept = default;
    SlimLock(const SlimLock&) = delete;
    SlimLock& operator=(const SlimLock&) = delete;

    class [[nodiscard]] Guard
    {
    public:
        explicit Guard(SlimLock& lock) noexcept : m_lock(lock)
        {
            AcquireSRWLockExclusive(&m_lock.m_word);
        }
        ~Guard()
        {
            ReleaseSRWLockExclusive(&m_lock.m_word);
        }
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;

    private:
        SlimLock& m_lock;
    };

private:
    SRWLOCK m_word = SRWLOCK_INIT;
};
