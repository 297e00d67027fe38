// The throw pattern, in one place: compose the message, write the trace line, let the debug hook see it, build the
// exception, throw.
//
//     ThrowException<ExceptionPrinterFailure>({W("Printer::GetPortName"), kSourceFile},
//                                             W("GetPrinterW failed for \"%s\": Win32 error %u"), {name, error});
//
// TavlenComException, which carries a result code, is thrown by ThrowComException (tavlencomexception.h).
#pragma once

#include <initializer_list>

#include <tvutil/cxstring.h>
#include <tvutil/throwsite.h>

// The message of a throw (CXString::Format). What goes wrong here must not hide the failure that is to be thrown:
// arguments that do not match the format, and arguments that together make an empty text, give a fixed text instead,
// which begins "A message argument was supplied, but the resulting string is empty." No format and no arguments are
// an empty message.
TVUTIL_API CXString ComposeExceptionMessage(WStringView format, std::initializer_list<CXString::Argument> arguments);

// Writes "*Throwing* <class>: <message>" to the debugger, then offers it, with this thread's contexts, to
// TavlenException::AllowForExceptionDebug.
TVUTIL_API void AnnounceException(const WCHAR* className, const CXString& message, const ThrowSite& site);

template <class Exception>
[[noreturn]] void ThrowException(ThrowSite site, WStringView format = {},
                                 std::initializer_list<CXString::Argument> arguments = {})
{
    const CXString message = ComposeExceptionMessage(format, arguments);
    AnnounceException(Exception::kClassName, message, site);
    throw Exception(message, site);
}
