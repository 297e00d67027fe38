#include "threadslot.h"

namespace
{

class KeptLastError
{
public:
    KeptLastError() noexcept : m_error(GetLastError())
    {
    }
    ~KeptLastError()
    {
        SetLastError(m_error);
    }
    KeptLastError(const KeptLastError&) = delete;
    KeptLastError& operator=(const KeptLastError&) = delete;

private:
    DWORD m_error;
};

} // namespace

ThreadSlot::~ThreadSlot()
{
    if (const DWORD slot = m_slot.exchange(TLS_OUT_OF_INDEXES); slot != TLS_OUT_OF_INDEXES)
        TlsFree(slot);
}

void* ThreadSlot::Get() const noexcept
{
    const DWORD slot = m_slot.load();
    if (slot == TLS_OUT_OF_INDEXES)
        return nullptr;
    const KeptLastError kept; // an answer is a success, and said to be one
    return TlsGetValue(slot);
}

bool ThreadSlot::Set(void* pointer) noexcept
{
    const KeptLastError kept;
    const DWORD slot = Obtain();
    return slot != TLS_OUT_OF_INDEXES && TlsSetValue(slot, pointer) != FALSE;
}

DWORD ThreadSlot::Obtain() noexcept
{
    DWORD known = m_slot.load();
    if (known != TLS_OUT_OF_INDEXES)
        return known;
    const DWORD fresh = TlsAlloc();
    if (fresh == TLS_OUT_OF_INDEXES || m_slot.compare_exchange_strong(known, fresh))
        return fresh;
    TlsFree(fresh); // another thread was first
    return known;
}
