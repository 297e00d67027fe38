// delayload_user: calls of delay-loaded functions. What it exports is found by name: it is loaded at run time.
#include "tests/delayload/samples.h"

extern "C" DELAYLOAD_USER_API int UserNearSum(int a, int b, int c, int d, int e)
{
    return NearSum(a, b, c, d, e);
}

// *unwound tells whether the destructors of the calling function ran.
extern "C" DELAYLOAD_USER_API int UserAbsentAnswer(bool* unwound)
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
