// The classes that CoCreateInstance knows.
#include <msxml2.h>
#include <objbase.h>

#include "core/comthreads.h"
#include "dom/domfactory.h"
#include "winport/faultinjection.h"

namespace
{

struct ClassRow
{
    CLSID classId;
    HRESULT (*create)(REFIID riid, void** object);
};

// One document class behind the three ids: the parsers that they name on Windows differ in what we do not use.
constexpr ClassRow kClasses[] = {
    {CLSID_DOMDocument60, winport::dom::CreateDomDocument},
    {CLSID_DOMDocument30, winport::dom::CreateDomDocument},
    {CLSID_DOMDocument, winport::dom::CreateDomDocument},
};

} // namespace

HRESULT WINAPI CoCreateInstance(REFCLSID classId, LPUNKNOWN outer, DWORD context, REFIID riid, LPVOID* object)
{
    if (object == nullptr)
        return E_POINTER;
    *object = nullptr;
    if (!winport::ThreadHasCom())
        return CO_E_NOTINITIALIZED;
    if (winport::PlatformCallMustFail())
        return E_OUTOFMEMORY;

    for (const ClassRow& row : kClasses)
    {
        if (row.classId != classId || (context & CLSCTX_INPROC_SERVER) == 0)
            continue;
        return outer != nullptr ? CLASS_E_NOAGGREGATION : row.create(riid, object);
    }
    return REGDB_E_CLASSNOTREG;
}
