// The two places where a Windows module meets its DllDelayLoader: the hook that the delay-load helper asks, and the
// module's end. Only for Windows; linked in by the hook's name (utilitiesstaticlib/CMakeLists.txt).
#include "utilitiesstaticlib/dlldelayloader.h"

namespace
{

FARPROC WINAPI NotifyDelayLoader(unsigned notification, PDelayLoadInfo info)
{
    return DllDelayLoader::Instance().Notify(notification, *info);
}

} // namespace

extern "C"
{

    // In place before any code of the module runs.
    PfnDliHook __pfnDliNotifyHook2 = &NotifyDelayLoader;

    // Modules are freed here although the loader's lock is held, since nothing else can do it: until now our imports
    // lead into them, and from now on there is no code of ours. The loader takes the nested call; what makes it
    // dangerous elsewhere is excluded. The modules that we delay-load import nothing of ours, so there is no circle;
    // nobody waits for another thread; and after this only destructors of statics run, which by our rule have nothing
    // to do: the list of modules is empty then.
    //
    // Not when the process ends (`reserved` is set): other modules may be gone already, and the system takes
    // everything.
    BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD reason, LPVOID reserved)
    {
        if (reason == DLL_PROCESS_DETACH && reserved == nullptr)
            DllDelayLoader::Instance().FreeModules();
        return TRUE;
    }

} // extern "C"
