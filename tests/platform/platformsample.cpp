// A module to be loaded by the loader's tests: it has a function, which makes it import another module.
#include <windows.h>

#include <objbase.h>

extern "C" PLATFORM_SAMPLE_API void* SampleFunction();

void* SampleFunction()
{
    return CoTaskMemAlloc(1);
}
