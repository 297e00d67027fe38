// The class id of MSXML 6's DOM document, which MinGW's headers lack:
// CoCreateInstance(kDomDocumentClassId, nullptr, CLSCTX_INPROC_SERVER, ...). The value is the published one.
#pragma once

#include <objbase.h>

inline constexpr CLSID kDomDocumentClassId{
    0x88D96A05, 0xF192, 0x11D4, {0xA6, 0x5F, 0x00, 0x40, 0x96, 0x32, 0x51, 0xE5}};
