#include <windows.h>

#include <tvutil/driverloadedcontext.h>

#include <tvutil/tavlenutilities.h>

bool DriverLoadedContext::IsSpoolerOrFilterPipelineExeContext()
{
    // The hive is chosen by this very question, in the one place that knows the executables.
    static const bool isPrintSystem = TavlenUtilities::GetRegistryHiveByContext() == HKEY_LOCAL_MACHINE;
    return isPrintSystem;
}
