#include <tvutil/throwexception.h>

#include <stdexcept>

#include <tvutil/tavlenexception.h>
#include <tvutil/utilitiesdllperthreadstorage.h>

namespace
{

constexpr const WCHAR* kEmptyMessage =
    W("A message argument was supplied, but the resulting string is empty. The format of the message and its ")
        W("arguments do not belong together, or the arguments are empty.");

} // namespace

CXString ComposeExceptionMessage(WStringView format, std::initializer_list<CXString::Argument> arguments)
try
{
    CXString message = CXString::Format(format, arguments);
    if (message.IsEmpty() && arguments.size() != 0)
        return kEmptyMessage;
    return message;
}
catch (const std::invalid_argument&)
{
    return kEmptyMessage;
}

void AnnounceException(const WCHAR* className, const CXString& message, const ThrowSite& site)
{
    CXString line(W("*Throwing* "));
    line += className;
    line += W(": ");
    line += message;
    OutputDebugStringW((line + W("\n")).c_str());
    TavlenException::AllowForExceptionDebug(line.c_str(), site,
                                            UtilitiesDllPerThreadStorage::GetExecutionContextStack());
}
