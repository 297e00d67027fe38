#include "complugins/msdevicecapabilities.h"

#include <optional>
#include <utility>

#include <tvutil/driverloadedcontext.h>
#include <tvutil/exceptions.h>
#include <tvutil/persistentattributes.h>
#include <tvutil/throwexception.h>

#include "complugins/devicepaperlist.h"
#include "complugins/xdevmode.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\msdevicecapabilities");

} // namespace

void MSDeviceCapabilities::Initialize(HANDLE printer, Context context)
{
    if (printer == nullptr || printer == INVALID_HANDLE_VALUE)
        ThrowException<ExceptionInvalidPrinterHandle>({W("MSDeviceCapabilities::Initialize"), kSourceFile});
    m_printer = printer;
    m_isSpooler = context == Context::OfThisProcess ? DriverLoadedContext::IsSpoolerOrFilterPipelineExeContext()
                                                    : context == Context::Spooler;
}

HANDLE MSDeviceCapabilities::GetPrinterHandle() const noexcept
{
    return m_printer;
}

HRESULT MSDeviceCapabilities::GetPaperDatabaseCachedDeviceCapabilitiesVector(HANDLE /*printer*/, DEVMODEW* devmode,
                                                                             std::vector<_tag_FormsInfoRec>& forms)
{
    forms.clear();
    if (!m_isSpooler || devmode == nullptr)
        return E_FAIL;
    XDevmode settings(devmode);
    auto list = DevicePaperList::ReadFrom(
        *settings.GetAttributeBytesIndexedList(PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId()));
    if (!list)
        return E_FAIL;
    forms = *std::move(list);
    return S_OK;
}
