#include "core/comthreads.h"

#include <objbase.h>

#include <atomic>

#include "winport/faultinjection.h"

namespace
{

constexpr DWORD kModel = COINIT_APARTMENTTHREADED;
constexpr DWORD kAcceptedHints = 0x4 | 0x8; // COINIT_DISABLE_OLE1DDE, COINIT_SPEED_OVER_MEMORY: nothing to do

struct ThreadState
{
    unsigned long count = 0;
    DWORD model = COINIT_MULTITHREADED;
};

// Trivially destructible: see faultinjection.cpp.
thread_local ThreadState g_thread;

std::atomic<long> g_multithreadedThreads{0};

} // namespace

bool winport::ThreadHasCom() noexcept
{
    return g_thread.count != 0 || g_multithreadedThreads.load() != 0;
}

HRESULT WINAPI CoInitializeEx(LPVOID reserved, DWORD concurrencyModel)
{
    if (reserved != nullptr || (concurrencyModel & ~(kModel | kAcceptedHints)) != 0)
        return E_INVALIDARG;
    if (winport::PlatformCallMustFail())
        return E_OUTOFMEMORY;

    const DWORD model = concurrencyModel & kModel;
    if (g_thread.count != 0)
    {
        if (model != g_thread.model)
            return RPC_E_CHANGED_MODE;
        ++g_thread.count;
        return S_FALSE;
    }
    g_thread = {1, model};
    if (model == COINIT_MULTITHREADED)
        ++g_multithreadedThreads;
    return S_OK;
}

void WINAPI CoUninitialize()
{
    if (g_thread.count == 0 || --g_thread.count != 0)
        return;
    if (g_thread.model == COINIT_MULTITHREADED)
        --g_multithreadedThreads;
}
