// The specific classes of the family: one for each failure that somebody catches by name, or that a report must tell
// apart. All are thrown with ThrowException (throwexception.h); the message says what was attempted, on what.
//
// Each class has its one out-of-line function in this library: its type information exists once in a process, so that
// what one module throws another catches by type.
#pragma once

#include <tvutil/tavlenexception.h>

// Printing.

// A spooler call on a printer failed.
class TVUTIL_API ExceptionPrinterFailure : public TavlenException
{
public:
    static constexpr const WCHAR* kClassName = W("ExceptionPrinterFailure");
    using TavlenException::TavlenException;
    [[nodiscard]] const WCHAR* GetClassName() const noexcept override;
};

// The printer's driver could not be asked, or was not installed by its set-up.
class TVUTIL_API ExceptionPrintDriverFailure : public TavlenException
{
public:
    static constexpr const WCHAR* kClassName = W("ExceptionPrintDriverFailure");
    using TavlenException::TavlenException;
    [[nodiscard]] const WCHAR* GetClassName() const noexcept override;
};

// A printer handle is null or all ones.
class TVUTIL_API ExceptionInvalidPrinterHandle : public TavlenException
{
public:
    static constexpr const WCHAR* kClassName = W("ExceptionInvalidPrinterHandle");
    using TavlenException::TavlenException;
    [[nodiscard]] const WCHAR* GetClassName() const noexcept override;
};

// A data cache could not be opened, read or written.
class TVUTIL_API ExceptionDataCacheFailure : public TavlenException
{
public:
    static constexpr const WCHAR* kClassName = W("ExceptionDataCacheFailure");
    using TavlenException::TavlenException;
    [[nodiscard]] const WCHAR* GetClassName() const noexcept override;
};

// Core driver settings.

// The core driver has no such feature, or none in this devmode layout.
class TVUTIL_API ExceptionMicrosoftFeatureNotFound : public TavlenException
{
public:
    static constexpr const WCHAR* kClassName = W("ExceptionMicrosoftFeatureNotFound");
    using TavlenException::TavlenException;
    [[nodiscard]] const WCHAR* GetClassName() const noexcept override;
};

// A feature's value table has no row for the value.
class TVUTIL_API ExceptionMicrosoftDevmodeValueMappingFailed : public TavlenException
{
public:
    static constexpr const WCHAR* kClassName = W("ExceptionMicrosoftDevmodeValueMappingFailed");
    using TavlenException::TavlenException;
    [[nodiscard]] const WCHAR* GetClassName() const noexcept override;
};

// An offset lies outside the core driver's private devmode part.
class TVUTIL_API ExceptionMicrosoftPrivateDevmodeOffsetOutOfBounds : public TavlenException
{
public:
    static constexpr const WCHAR* kClassName = W("ExceptionMicrosoftPrivateDevmodeOffsetOutOfBounds");
    using TavlenException::TavlenException;
    [[nodiscard]] const WCHAR* GetClassName() const noexcept override;
};

// The print core helper did not answer an option.
class TVUTIL_API ExceptionIPrintCoreHelperReadFailure : public TavlenException
{
public:
    static constexpr const WCHAR* kClassName = W("ExceptionIPrintCoreHelperReadFailure");
    using TavlenException::TavlenException;
    [[nodiscard]] const WCHAR* GetClassName() const noexcept override;
};

// The print core helper did not take an option.
class TVUTIL_API ExceptionIPrintCoreHelperWriteFailure : public TavlenException
{
public:
    static constexpr const WCHAR* kClassName = W("ExceptionIPrintCoreHelperWriteFailure");
    using TavlenException::TavlenException;
    [[nodiscard]] const WCHAR* GetClassName() const noexcept override;
};

// Paper sizes.

// Paper id, width and length do not fit together.
class TVUTIL_API ExceptionInvalidPaperSizeData : public TavlenException
{
public:
    static constexpr const WCHAR* kClassName = W("ExceptionInvalidPaperSizeData");
    using TavlenException::TavlenException;
    [[nodiscard]] const WCHAR* GetClassName() const noexcept override;
};

// A form name does not fit a devmode.
class TVUTIL_API ExceptionInvalidFormName : public TavlenException
{
public:
    static constexpr const WCHAR* kClassName = W("ExceptionInvalidFormName");
    using TavlenException::TavlenException;
    [[nodiscard]] const WCHAR* GetClassName() const noexcept override;
};

// The feature data model.

// A feature does not exist, not where it was looked for, or does not take the value.
class TVUTIL_API ExceptionInvalidFeatureValue : public TavlenException
{
public:
    static constexpr const WCHAR* kClassName = W("ExceptionInvalidFeatureValue");
    using TavlenException::TavlenException;
    [[nodiscard]] const WCHAR* GetClassName() const noexcept override;
};

// Arguments and modules.

// An argument that must point somewhere is null.
class TVUTIL_API ExceptionInvalidArgumentNullPointer : public TavlenException
{
public:
    static constexpr const WCHAR* kClassName = W("ExceptionInvalidArgumentNullPointer");
    using TavlenException::TavlenException;
    [[nodiscard]] const WCHAR* GetClassName() const noexcept override;
};

// The workflow module is asked before it was loaded.
class TVUTIL_API ExceptionWorkflowObjectNotInitialized : public TavlenException
{
public:
    static constexpr const WCHAR* kClassName = W("ExceptionWorkflowObjectNotInitialized");
    using TavlenException::TavlenException;
    [[nodiscard]] const WCHAR* GetClassName() const noexcept override;
};

// A delay-loaded sibling module could not be loaded.
class TVUTIL_API ExceptionDelayLoadDllLoadFailure : public TavlenException
{
public:
    static constexpr const WCHAR* kClassName = W("ExceptionDelayLoadDllLoadFailure");
    using TavlenException::TavlenException;
    [[nodiscard]] const WCHAR* GetClassName() const noexcept override;
};
