#include <tvutil/exceptions.h>

const WCHAR* ExceptionPrinterFailure::GetClassName() const noexcept
{
    return kClassName;
}

const WCHAR* ExceptionPrintDriverFailure::GetClassName() const noexcept
{
    return kClassName;
}

const WCHAR* ExceptionInvalidPrinterHandle::GetClassName() const noexcept
{
    return kClassName;
}

const WCHAR* ExceptionDataCacheFailure::GetClassName() const noexcept
{
    return kClassName;
}

const WCHAR* ExceptionMicrosoftFeatureNotFound::GetClassName() const noexcept
{
    return kClassName;
}

const WCHAR* ExceptionMicrosoftDevmodeValueMappingFailed::GetClassName() const noexcept
{
    return kClassName;
}

const WCHAR* ExceptionMicrosoftPrivateDevmodeOffsetOutOfBounds::GetClassName() const noexcept
{
    return kClassName;
}

const WCHAR* ExceptionIPrintCoreHelperReadFailure::GetClassName() const noexcept
{
    return kClassName;
}

const WCHAR* ExceptionIPrintCoreHelperWriteFailure::GetClassName() const noexcept
{
    return kClassName;
}

const WCHAR* ExceptionInvalidPaperSizeData::GetClassName() const noexcept
{
    return kClassName;
}

const WCHAR* ExceptionInvalidFormName::GetClassName() const noexcept
{
    return kClassName;
}

const WCHAR* ExceptionInvalidArgumentNullPointer::GetClassName() const noexcept
{
    return kClassName;
}

const WCHAR* ExceptionWorkflowObjectNotInitialized::GetClassName() const noexcept
{
    return kClassName;
}

const WCHAR* ExceptionDelayLoadDllLoadFailure::GetClassName() const noexcept
{
    return kClassName;
}
