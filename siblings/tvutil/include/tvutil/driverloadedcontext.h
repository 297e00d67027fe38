// DriverLoadedContext: what kind of process the driver's modules run in.
#pragma once

#include <windows.h>

class TVUTIL_API DriverLoadedContext
{
public:
    // The spooler, the filter pipeline, or the host of isolated drivers.
    [[nodiscard]] static bool IsSpoolerOrFilterPipelineExeContext();
};
