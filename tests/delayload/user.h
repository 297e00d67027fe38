// What delayload_user exports, by name: it is loaded at run time.
#pragma once

#include <windows.h>

extern "C"
{

    // On every platform.
    DELAYLOAD_USER_API FARPROC UserNotify(unsigned notification, const char* name);
    DELAYLOAD_USER_API void UserFreeModules();
    DELAYLOAD_USER_API void UserSetEnabled(bool enabled);

    // On Windows: calls of delay-loaded functions.
    DELAYLOAD_USER_API int UserNearSum(int a, int b, int c, int d, int e);
    // Two steps of a class of the module's, and of one derived from it.
    DELAYLOAD_USER_API int UserNearCounter(int start);
    DELAYLOAD_USER_API int UserThirdAnswer();
    // *unwound tells whether the destructors of the calling function ran.
    DELAYLOAD_USER_API int UserAbsentAnswer(bool* unwound);
    // True when the module's failure is caught by its type where it was thrown.
    DELAYLOAD_USER_API bool UserCatchesAbsence();
    // True when the platform's own search is asked for delayload_absent, and fails too.
    DELAYLOAD_USER_API bool UserSearchesAsThePlatform();
}
