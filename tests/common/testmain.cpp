// The entry of every test program: the tests run on a thread that has COM, as the module's callers do.
#include <objbase.h>

#include <cstdio>

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (FAILED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)))
    {
        std::fputs("COM does not start on the test thread\n", stderr);
        return 1;
    }
    const int result = RUN_ALL_TESTS();
    CoUninitialize();
    return result;
}
