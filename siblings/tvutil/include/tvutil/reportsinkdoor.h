// The report sink by a plain name, for a host that finds this library at run time: the copy that a driver's module
// uses need not be the one that the host was linked with.
#pragma once

#include <tvutil/tavlenexception.h>

// TavlenException::SetReportSink. The name stands in the export table as it is.
extern "C" TVUTIL_API void TavlenSetReportSink(TavlenException::ReportSink function, void* context) noexcept;
