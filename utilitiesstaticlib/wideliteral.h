// Wide literals and views.
//
// W("...") is the one macro of our own: a wide literal is L"..." where WCHAR is wchar_t (Windows) and u"..." where it
// is char16_t (the portability layer). WINPORT_WIDE_LITERAL comes from that layer's build files.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#ifdef WINPORT_WIDE_LITERAL
#define W(literal) u##literal
#else
#define W(literal) L##literal
#endif

using WStringView = std::basic_string_view<WCHAR>;
using WideString = std::basic_string<WCHAR>;
