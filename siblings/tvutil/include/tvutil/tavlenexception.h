// TavlenException: the root of the library's exception family, and the two doors through which failures are seen.
//
// Every throw goes through ThrowException (throwexception.h): trace line, AllowForExceptionDebug, factory, throw.
#pragma once

#include <exception>
#include <memory>

#include <tvutil/cxstring.h>
#include <tvutil/throwsite.h>

class ExecutionContextStack;

// Copies share their text, so that copying, catching by value included, neither allocates nor throws.
class TVUTIL_API TavlenException : public std::exception
{
public:
    static constexpr const WCHAR* kClassName = W("TavlenException");

    TavlenException(CXString message, ThrowSite site);
    TavlenException(const TavlenException& other) noexcept;
    TavlenException& operator=(const TavlenException& other) noexcept;
    ~TavlenException() override;

    // The message in UTF-8.
    [[nodiscard]] const char* what() const noexcept override;
    [[nodiscard]] const CXString& GetText() const noexcept;
    [[nodiscard]] const ThrowSite& GetSite() const noexcept;
    [[nodiscard]] virtual const WCHAR* GetClassName() const noexcept;

    // The debug hook: sees every throw before it happens and answers whether to break into a debugger. Called on the
    // throwing thread; it must not throw. Null removes it. Returns the one that was set before.
    using DebugHook = bool (*)(const WCHAR* traceLine, const ThrowSite& site, const ExecutionContextStack& contexts);
    static DebugHook SetDebugHook(DebugHook hook) noexcept;
    static void AllowForExceptionDebug(const WCHAR* traceLine, const ThrowSite& site,
                                       const ExecutionContextStack& contexts) noexcept;

    // What a guard reports. The pointers are valid during the call only; text and detail are never null.
    struct Report
    {
        // Null: something that is no std::exception. Of a std::bad_alloc, one whose what() is "bad allocation",
        // whatever the runtime calls it.
        const std::exception* exception = nullptr;
        ThrowSite site;
        const ExecutionContextStack* contexts = nullptr;
        const WCHAR* text = nullptr;
        const WCHAR* detail = nullptr;
    };

    // Receives the reports of this process, on the reporting thread; null removes it. It must not throw, and, since
    // one of the reports is std::bad_alloc, it should not allocate. Returns the one that was set before, which a report
    // that is under way on another thread may still use.
    using ReportSink = void (*)(const Report& report, void* context);
    struct Sink
    {
        ReportSink function;
        void* context;
    };
    static Sink SetReportSink(Sink sink) noexcept;

    // Reports a caught exception: to the sink, or else as one trace line, cut where it is too long; then breaks into
    // a debugger if asked to. Neither allocates nor throws. There is no message box: a module that runs in the
    // spooler has no desktop, so `messageBox` and `owner` are accepted only.
    static void DisplayExceptionMessage(bool debugBreak, bool messageBox, const std::exception* exception,
                                        const WCHAR* sourceFile, int line, const WCHAR* methodName,
                                        const ExecutionContextStack& contexts, HWND owner, const WCHAR* text,
                                        const WCHAR* detail) noexcept;

private:
    struct Content;

    std::shared_ptr<const Content> m_content;
    ThrowSite m_site;
};
