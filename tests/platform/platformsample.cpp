// A module to be loaded by the loader's tests.
#include <windows.h>

#include <objbase.h>

extern "C"
{

    PLATFORM_SAMPLE_API int SampleAnswer();
    PLATFORM_SAMPLE_API void* SampleAllocate();

    int SampleAnswer()
    {
        return 42;
    }

    // Makes the module import another one.
    void* SampleAllocate()
    {
        return CoTaskMemAlloc(1);
    }

} // extern "C"
