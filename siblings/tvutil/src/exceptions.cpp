#include <tvutil/exceptions.h>

// The exporting library emits a constant of its class only where it is defined out of line.
constexpr const WCHAR* ExceptionPrinterFailure::kClassName;
constexpr const WCHAR* ExceptionPrintDriverFailure::kClassName;
constexpr const WCHAR* ExceptionInvalidPrinterHandle::kClassName;
constexpr const WCHAR* ExceptionDataCacheFailure::kClassName;
constexpr const WCHAR* ExceptionMicrosoftFeatureNotFound::kClassName;
constexpr const WCHAR* ExceptionMicrosoftDevmodeValueMappingFailed::kClassName;
constexpr const WCHAR* ExceptionMicrosoftPrivateDevmodeOffsetOutOfBounds::kClassName;
constexpr const WCHAR* ExceptionIPrintCoreHelperReadFailure::kClassName;
constexpr const WCHAR* ExceptionIPrintCoreHelperWriteFailure::kClassName;
constexpr const WCHAR* ExceptionInvalidPaperSizeData::kClassName;
constexpr const WCHAR* ExceptionInvalidFormName::kClassName;
constexpr const WCHAR* ExceptionInvalidFeatureValue::kClassName;
constexpr const WCHAR* ExceptionInvalidArgumentNullPointer::kClassName;
constexpr const WCHAR* ExceptionWorkflowObjectNotInitialized::kClassName;
constexpr const WCHAR* ExceptionDelayLoadDllLoadFailure::kClassName;

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

const WCHAR* ExceptionInvalidFeatureValue::GetClassName() const noexcept
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
