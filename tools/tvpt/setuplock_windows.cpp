#include "setuplock.h"

#include <windows.h>

#include "failure.h"

namespace
{

struct HandleCloser
{
    void operator()(HANDLE handle) const noexcept
    {
        CloseHandle(handle);
    }
};

} // namespace

class SetupLock::Owner
{
public:
    Owner() : m_mutex(CreateMutexW(nullptr, FALSE, L"Global\\Tavlen printer set-up"))
    {
        // A process that ended while it held the mutex leaves it to the next one, which is no failure.
        if (m_mutex == nullptr || WaitForSingleObject(m_mutex.get(), INFINITE) == WAIT_FAILED)
            FailWithWin32Error("locking the printers' set-up", "the spooler", GetLastError());
    }

    ~Owner()
    {
        ReleaseMutex(m_mutex.get());
    }

    Owner(const Owner&) = delete;
    Owner& operator=(const Owner&) = delete;

private:
    std::unique_ptr<void, HandleCloser> m_mutex;
};

SetupLock::SetupLock() : m_owner(std::make_unique<Owner>())
{
}

SetupLock::~SetupLock() = default;
