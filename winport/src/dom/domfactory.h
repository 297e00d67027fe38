// Makes DOM documents, for CoCreateInstance.
#pragma once

#include "msxml2.h"

namespace winport::dom
{

// An empty document. E_POINTER for a null out-parameter, E_NOINTERFACE for an interface that documents do not have,
// E_OUTOFMEMORY; the out-parameter is null after a failure.
HRESULT CreateDomDocument(REFIID riid, void** object);

} // namespace winport::dom
