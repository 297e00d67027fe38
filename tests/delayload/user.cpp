// Calls of delay-loaded functions.
#include "tests/delayload/user.h"

#include <windows.h>

#include <delayimp.h>

#include <tvutil/exceptions.h>

#include "tests/delayload/samples.h"

namespace
{

class DoubleCounter : public NearCounter
{
public:
    using NearCounter::NearCounter;
    int Next() override
    {
        return NearCounter::Next() * 2;
    }
};

struct PlatformSearchFailed
{
};

FARPROC WINAPI FailPlatformSearch(unsigned notification, PDelayLoadInfo /*info*/)
{
    if (notification == dliFailLoadLib)
        throw PlatformSearchFailed();
    return nullptr;
}

} // namespace

int UserNearSum(int a, int b, int c, int d, int e)
{
    return NearSum(a, b, c, d, e);
}

int UserNearCounter(int start)
{
    NearCounter single(start);
    DoubleCounter twice(start);
    NearCounter* const counters[] = {&single, &twice};
    int sum = 0;
    for (NearCounter* const counter : counters)
        sum += counter->Next();
    return sum;
}

int UserThirdAnswer()
{
    return ThirdAnswer();
}

int UserAbsentAnswer(bool* unwound)
{
    struct Witness
    {
        bool* gone;
        ~Witness()
        {
            *gone = true;
        }
    };
    const Witness witness{unwound};
    return AbsentAnswer();
}

bool UserCatchesAbsence()
try
{
    return AbsentAnswer() == 0;
}
catch (const ExceptionDelayLoadDllLoadFailure&)
{
    return true;
}

bool UserSearchesAsThePlatform()
{
    __pfnDliFailureHook2 = &FailPlatformSearch;
    bool failed = false;
    try
    {
        AbsentAnswer();
    }
    catch (const PlatformSearchFailed&)
    {
        failed = true;
    }
    __pfnDliFailureHook2 = nullptr;
    return failed;
}
