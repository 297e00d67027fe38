#include <windows.h>

#include <tvutil/driverloadedcontext.h>

#include <atomic>

#include <tvutil/tavlenutilities.h>

namespace
{

enum class Answer
{
    Unknown,
    No,
    Yes,
};

// Threads that ask first at the same time find the same. No static of a function: its guard may allocate.
std::atomic<Answer> g_isPrintSystem{Answer::Unknown};

} // namespace

bool DriverLoadedContext::IsSpoolerOrFilterPipelineExeContext()
{
    Answer answer = g_isPrintSystem.load();
    if (answer == Answer::Unknown)
    {
        // The hive is chosen by this very question, in the one place that knows the executables.
        answer = TavlenUtilities::GetRegistryHiveByContext() == HKEY_LOCAL_MACHINE ? Answer::Yes : Answer::No;
        g_isPrintSystem = answer;
    }
    return answer == Answer::Yes;
}
