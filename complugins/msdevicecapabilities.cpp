#include "complugins/msdevicecapabilities.h"

#include <optional>
#include <utility>

#include <tvcore/datamodelids.h>
#include <tvutil/driverloadedcontext.h>
#include <tvutil/exceptions.h>
#include <tvutil/persistentattributes.h>
#include <tvutil/throwexception.h>

#include "complugins/devicepaperlist.h"
#include "complugins/xdevmode.h"

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\msdevicecapabilities");

std::optional<std::vector<FormsInfoRecord>> ReadPaperListOf(DEVMODEW* devmode)
{
    XDevmode settings(devmode);
    const AttributeBytesIndexedList& list =
        *settings.GetAttributeBytesIndexedList(PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId());
    const AttributeBytesValue* const value = list.GetAttributeBytes(DataModelIds::Feature::DevicePaperList);
    if (value == nullptr || value->kind != AttributeBytesKind::Binary)
        return std::nullopt;
    return DevicePaperList::Read(value->data.bytes());
}

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
    std::optional<std::vector<FormsInfoRecord>> list = ReadPaperListOf(devmode);
    if (!list)
        return E_FAIL;
    forms = *std::move(list);
    return S_OK;
}
