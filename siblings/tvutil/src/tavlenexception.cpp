#include <tvutil/tavlenexception.h>

#include <atomic>
#include <new>
#include <string>
#include <utility>

#include <tvutil/executioncontext.h>

#include "boundedtext.h"
#include "utilitiesstaticlib/slimlock.h"

namespace
{

std::atomic<TavlenException::DebugHook> g_debugHook{nullptr};

// The sink is a pair, wider than what every platform changes at once.
class SinkSlot
{
public:
    TavlenException::Sink Exchange(TavlenException::Sink sink) noexcept
    {
        const SlimLock::Guard guard(m_lock);
        return std::exchange(m_sink, sink);
    }

    TavlenException::Sink Get() noexcept
    {
        const SlimLock::Guard guard(m_lock);
        return m_sink;
    }

private:
    SlimLock m_lock;
    TavlenException::Sink m_sink{nullptr, nullptr};
};

constinit SinkSlot g_sink;

// A std::bad_alloc with a text that does not depend on the runtime.
class BadAllocation final : public std::bad_alloc
{
public:
    const char* what() const noexcept override
    {
        return "bad allocation";
    }
};

WStringView OrEmpty(const WCHAR* text) noexcept
{
    return text != nullptr ? WStringView(text) : WStringView();
}

void Describe(BoundedText& line, const std::exception* exception) noexcept
{
    if (exception == nullptr)
        line << W("unknown exception");
    else if (const auto* const ours = dynamic_cast<const TavlenException*>(exception); ours != nullptr)
        line << ours->GetClassName() << W(": ") << ours->GetText().View();
    else
        line << std::string_view(exception->what());
}

void TraceReport(const TavlenException::Report& report) noexcept
{
    BoundedText line;
    line << W("*Reporting* ") << OrEmpty(report.site.method) << W(" (") << OrEmpty(report.site.file) << W(", line ")
         << report.site.line << W("): ");
    Describe(line, report.exception);
    for (const WStringView addition : {WStringView(report.text), WStringView(report.detail)})
        if (!addition.empty())
            line << W("; ") << addition;
    line.EndLine();
    OutputDebugStringW(line.c_str());
}

} // namespace

// The exporting library emits a constant of its class only where it is defined out of line.
constexpr const WCHAR* TavlenException::kClassName;

struct TavlenException::Content
{
    CXString text;
    std::string what;
};

TavlenException::TavlenException(CXString message, ThrowSite site) : m_site(site)
{
    std::string what = message.ToUtf8();
    m_content = std::make_shared<const Content>(Content{std::move(message), std::move(what)});
}

TavlenException::TavlenException(const TavlenException& other) noexcept = default;
TavlenException& TavlenException::operator=(const TavlenException& other) noexcept = default;
TavlenException::~TavlenException() = default;

const char* TavlenException::what() const noexcept
{
    return m_content->what.c_str();
}

const CXString& TavlenException::GetText() const noexcept
{
    return m_content->text;
}

const ThrowSite& TavlenException::GetSite() const noexcept
{
    return m_site;
}

const WCHAR* TavlenException::GetClassName() const noexcept
{
    return kClassName;
}

TavlenException::DebugHook TavlenException::SetDebugHook(DebugHook hook) noexcept
{
    return g_debugHook.exchange(hook);
}

void TavlenException::AllowForExceptionDebug(const WCHAR* traceLine, const ThrowSite& site,
                                             const ExecutionContextStack& contexts) noexcept
{
    const DebugHook hook = g_debugHook.load();
    if (hook != nullptr && hook(traceLine, site, contexts))
        DebugBreak();
}

TavlenException::Sink TavlenException::SetReportSink(Sink sink) noexcept
{
    return g_sink.Exchange(sink);
}

void TavlenException::DisplayExceptionMessage(bool debugBreak, [[maybe_unused]] bool messageBox,
                                              const std::exception* exception, const WCHAR* sourceFile, int line,
                                              const WCHAR* methodName, const ExecutionContextStack& contexts,
                                              [[maybe_unused]] HWND owner, const WCHAR* text,
                                              const WCHAR* detail) noexcept
{
    const BadAllocation badAllocation; // no static: registering its end may allocate
    const bool isOutOfMemory = dynamic_cast<const std::bad_alloc*>(exception) != nullptr;
    const Report report{.exception = isOutOfMemory ? &badAllocation : exception,
                        .site = {methodName, sourceFile, line},
                        .contexts = &contexts,
                        .text = text != nullptr ? text : W(""),
                        .detail = detail != nullptr ? detail : W("")};
    const Sink sink = g_sink.Get();
    if (sink.function != nullptr)
        sink.function(report, sink.context);
    else
        TraceReport(report);
    if (debugBreak)
        DebugBreak();
}
