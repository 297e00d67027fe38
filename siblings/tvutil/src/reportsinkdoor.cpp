#include <tvutil/reportsinkdoor.h>

void TavlenSetReportSink(TavlenException::ReportSink function, void* context) noexcept
{
    TavlenException::SetReportSink({function, context});
}
