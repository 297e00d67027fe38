// delayload_user asks its DllDelayLoader directly, as the delay-load helper does: runs on every platform.
#include "tests/delayload/user.h"

#include "utilitiesstaticlib/dlldelayloader.h"

FARPROC UserNotify(unsigned notification, const char* name)
{
    DelayLoadInfo info{};
    info.cb = sizeof(info);
    info.szDll = name;
    return DllDelayLoader::Instance().Notify(notification, info);
}

void UserFreeModules()
{
    DllDelayLoader::Instance().FreeModules();
}

void UserSetEnabled(bool enabled)
{
    DllDelayLoader::Instance().SetEnabled(enabled);
}
