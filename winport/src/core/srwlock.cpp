// Slim locks: the lock's own word says whether it is held, the standard library lets the others sleep.
#include <windows.h>

#include <atomic>

namespace
{

using Word = std::atomic_ref<PVOID>;

static_assert(Word::is_always_lock_free && Word::required_alignment <= alignof(SRWLOCK));

PVOID Held(PSRWLOCK lock)
{
    return lock; // anything but null
}

} // namespace

void WINAPI AcquireSRWLockExclusive(PSRWLOCK lock)
{
    const Word word(lock->Ptr);
    for (PVOID before = nullptr; !word.compare_exchange_strong(before, Held(lock), std::memory_order_acquire);
         before = nullptr)
        word.wait(Held(lock), std::memory_order_relaxed);
}

void WINAPI ReleaseSRWLockExclusive(PSRWLOCK lock)
{
    const Word word(lock->Ptr);
    word.store(nullptr, std::memory_order_release);
    word.notify_one();
}
