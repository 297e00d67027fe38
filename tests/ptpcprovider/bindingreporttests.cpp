// What the small operations report when they fail: the code alone says nothing.
#include <windows.h>

#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tvutil/executioncontext.h>
#include <tvutil/tavlenexception.h>

#include "complugins/ptpcprovider/tavlenptprovider.h"
#include "tests/common/testprinter.h"

namespace
{

struct Reported
{
    std::string method;
    std::string what;
    std::size_t depth = 0;
};

class BindingReport : public testing::Test
{
protected:
    BindingReport() : m_previous(TavlenException::SetReportSink({Record, this}))
    {
        EXPECT_EQ(S_OK, CreateTavlenPtProvider(m_provider.Put()));
    }
    ~BindingReport() override
    {
        TavlenException::SetReportSink(m_previous);
    }

    std::vector<Reported> m_reports;
    ComPtr<IPrintOemPrintTicketProvider> m_provider;

private:
    static void Record(const TavlenException::Report& report, void* context)
    {
        static_cast<BindingReport*>(context)->m_reports.push_back(
            {CXString(report.site.method).ToUtf8(), report.exception != nullptr ? report.exception->what() : "none",
             report.contexts->Depth()});
    }

    TavlenException::Sink m_previous;
};

TEST_F(BindingReport, NamesTheFaultWithinTheOperationsContext)
{
    const TestPrinter printer({0xE02, "", {"tvwftu_b.dll"}}); // its data file is no model
    OEMPTOPTS options = OEMPT_DEFAULT;
    INT count = 0;
    BSTR* namespaces = nullptr;
    EXPECT_EQ(E_FAIL, m_provider->BindPrinter(printer.Handle(), 1, &options, &count, &namespaces));
    ASSERT_EQ(1u, m_reports.size());
    EXPECT_EQ("TavlenPtProvider::BindPrinter", m_reports[0].method);
    EXPECT_NE(std::string::npos, m_reports[0].what.find("tvtestdata")) << m_reports[0].what;
    EXPECT_EQ(1u, m_reports[0].depth);
}

// What substantial work is under way when something is thrown, from the innermost outwards.
TEST_F(BindingReport, LetsTheHookSeeWhatIsBeingDone)
{
    static std::string seen;
    seen.clear();
    const auto hook = [](const WCHAR*, const ThrowSite&, const ExecutionContextStack& contexts)
    {
        for (const BasicExecutionContext* context = contexts.Top(); context != nullptr; context = context->outer)
            seen += CXString(context->site.method).ToUtf8() + " ";
        return false;
    };
    const TestPrinter printer({0xE02, "", {"tvwftu_b.dll"}});
    OEMPTOPTS options = OEMPT_DEFAULT;
    INT count = 0;
    BSTR* namespaces = nullptr;
    TavlenException::SetDebugHook(hook);
    EXPECT_EQ(E_FAIL, m_provider->BindPrinter(printer.Handle(), 1, &options, &count, &namespaces));
    TavlenException::SetDebugHook(nullptr);
    EXPECT_EQ("ProductData::ProductData WorkflowObject::Load TavlenPtProvider::BindPrinter ", seen);
}

// A helper that does not keep to COM's rule against exceptions.
template <class Thrown>
class ThrowingHelper final : public IUnknown
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override
    {
        throw Thrown();
    }
    ULONG STDMETHODCALLTYPE AddRef() override
    {
        return 1;
    }
    ULONG STDMETHODCALLTYPE Release() override
    {
        return 1;
    }
};

TEST_F(BindingReport, NoExceptionOfAHelperLeavesTheProvider)
{
    ThrowingHelper<std::bad_alloc> outOfMemory;
    ThrowingHelper<std::bad_exception> broken;
    ThrowingHelper<int> odd;
    EXPECT_EQ(E_OUTOFMEMORY, m_provider->PublishPrintTicketHelperInterface(&outOfMemory));
    EXPECT_EQ(E_FAIL, m_provider->PublishPrintTicketHelperInterface(&broken));
    EXPECT_EQ(E_FAIL, m_provider->PublishPrintTicketHelperInterface(&odd));
    ASSERT_EQ(3u, m_reports.size());
    EXPECT_EQ("bad allocation", m_reports[0].what);
    EXPECT_EQ("none", m_reports[2].what);
}

} // namespace
