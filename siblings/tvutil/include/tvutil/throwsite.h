// ThrowSite: the place of a throw, as reports and exceptions name it.
//
// A value, so that no macro is needed: the line is the caller's, or the constant that the system reports there.
#pragma once

#include "utilitiesstaticlib/wideliteral.h"

struct ThrowSite
{
    const WCHAR* method = nullptr; // "Class::Method", static text
    const WCHAR* file = nullptr;   // "complugins\\ptpcprovider\\...", without extension, static text
    int line = __builtin_LINE();
};
