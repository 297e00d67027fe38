// The paper database.
#include "complugins/msdevicecapabilities.h"

#include <utility>

#include <tvutil/persistentattributes.h>

#include "complugins/devicepaperlist.h"
#include "complugins/papercache.h"
#include "complugins/xdevmode.h"

HRESULT MSDeviceCapabilities::GetPaperDatabaseCachedDeviceCapabilitiesVector(HANDLE printer, DEVMODEW* devmode,
                                                                             std::vector<_tag_FormsInfoRec>& forms)
{
    forms.clear();
    if (printer != nullptr && printer != INVALID_HANDLE_VALUE)
        Initialize(printer, m_context, m_options);
    return IsInSpooler() ? GetFormsOfDevmode(devmode, forms) : GetFormsOfCache(forms);
}

HRESULT MSDeviceCapabilities::GetFormsOfDevmode(DEVMODEW* devmode, std::vector<_tag_FormsInfoRec>& forms) const
{
    if (devmode == nullptr)
        return E_FAIL;
    XDevmode settings(devmode);
    auto list = DevicePaperList::ReadFrom(
        *settings.GetAttributeBytesIndexedList(PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId()));
    if (!list)
        return E_FAIL;
    forms = *std::move(list);
    return S_OK;
}

HRESULT MSDeviceCapabilities::GetFormsOfCache(std::vector<_tag_FormsInfoRec>& forms)
{
    if (!BuildState(m_options.forceMachineHive))
        return E_NOTIMPL;
    if (const HRESULT taken = Take(Cache::Papers, FindPapers(), Validation::CustomForms); FAILED(taken))
        return taken;
    auto read = PaperCache::ReadForms(m_contents[static_cast<std::size_t>(Cache::Papers)].bytes());
    if (!read)
        return E_FAIL;
    forms = *std::move(read);
    return S_OK;
}
