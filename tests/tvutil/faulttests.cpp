// Linux only: any allocation of the test's thread can be made to fail there, and debug output be captured.
#include <cstdlib>
#include <functional>
#include <new>
#include <stdexcept>

#include <gtest/gtest.h>

#include <tvutil/exceptions.h>
#include <tvutil/executioncontext.h>
#include <tvutil/globalcaches.h>
#include <tvutil/persistentattributes.h>
#include <tvutil/throwexception.h>
#include <tvutil/utilitiesdllperthreadstorage.h>

#include "tests/tvutil/attributebytessamples.h"
#include "winport/faultinjection.h"

namespace
{

constexpr ThrowSite kSite{W("Class::Method"), W("tests\\tvutil\\faulttests"), 1};

// Lets the first, second, third … allocation of the work fail, until the work runs through; returns how many failed.
unsigned FailEachAllocation(
    const std::function<void()>& work, const std::function<void()>& afterEach = [] {})
{
    for (unsigned nth = 1;; ++nth)
    {
        bool failed = false;
        winport::ArmFault(winport::FaultKind::Allocation, nth);
        try
        {
            work();
        }
        catch (const std::bad_alloc&)
        {
            failed = true;
        }
        const bool fired = winport::DisarmFault(winport::FaultKind::Allocation);
        EXPECT_EQ(failed, fired) << "allocation " << nth;
        if (!fired)
            return nth - 1;
        afterEach();
    }
}

class AllocationFaults : public testing::Test
{
protected:
    void SetUp() override
    {
        if (TVPT_ALLOCATION_FAULTS == 0)
            GTEST_SKIP() << "the thread sanitizer allocates by itself";
    }
};

constexpr const WCHAR* kLong = W("a text that is too long for the room that strings have within themselves");

TEST_F(AllocationFaults, LeaveListsStatesAndCachesAsTheyWere)
{
    constexpr AttributeBytesNameSpacesId kId = PersistentAttributes::GetDataModelDocPropNameSpaceId();
    const AttributeBytesIndexedList sample = SampleList();
    const ByteBuffer bytes = BytesOf(sample);
    for (const bool isIndexed : {false, true})
    {
        AttributeBytesIndexedList list;
        std::size_t count = 0;
        EXPECT_GT(FailEachAllocation(
                      [&]
                      {
                          list = sample;
                          count = list.GetCount();
                          list.SetIndexed(isIndexed);
                          for (const std::int32_t feature : {35, 10, 99})
                          {
                              list.SetAttributeBytes(feature, MakeIntegerAttributeBytes(1));
                              count = list.GetCount();
                          }
                          list.ImportFromRawList(RawListOf(bytes));
                          count = list.GetCount();
                          EXPECT_NE(list.GetCollection(60), nullptr);
                      },
                      [&]
                      {
                          EXPECT_EQ(list.GetCount(), count);
                          EXPECT_NE(list.GetAttributeBytes(10), nullptr);
                          EXPECT_EQ(Hex(BytesOf(sample)), Hex(bytes));
                      }),
                  10u)
            << isIndexed;
    }

    AttributeBytesNameSpaces nameSpaces;
    nameSpaces.SetAttributeBytesList(kId, RawListOf(sample));
    PersistentAttributes stored;
    ASSERT_TRUE(stored.SetAttributeBytesNameSpaces(nameSpaces));
    const ByteBuffer state = stored.GetPersistentAttributesState();
    nameSpaces.SetAttributeBytesList(kId, AttributeBytesRawList());
    EXPECT_GT(FailEachAllocation([&] { static_cast<void>(stored.SetAttributeBytesNameSpaces(nameSpaces)); },
                                 [&] { EXPECT_EQ(stored.GetPersistentAttributesState(), state); }),
              1u);

    GlobalCaches::Clear();
    EXPECT_GT(FailEachAllocation(
                  [&] {
                      GlobalCaches::AddXDevmodeAttributeBytesIndexedListCacheEntry(GlobalCaches::kDocPropListCacheName,
                                                                                   kId, 1, sample);
                  },
                  [] { EXPECT_EQ(GlobalCaches::GetListCounters().entries, 0u); }),
              2u);
}

TEST_F(AllocationFaults, AThrowThatRunsOutOfMemoryIsABadAllocation)
{
    EXPECT_GT(FailEachAllocation(
                  []()
                  {
                      try
                      {
                          ThrowException<ExceptionPrinterFailure>(kSite, W("%s"), {kLong});
                      }
                      catch (const ExceptionPrinterFailure& failure)
                      {
                          EXPECT_EQ(failure.GetText(), kLong);
                      }
                  }),
              2u);
}

// A report is made where memory has just run out, and a context is opened on every path.
TEST_F(AllocationFaults, ReportsAndContextsAllocateNothing)
{
    const auto touch = [](const TavlenException::Report& report, void* count)
    {
        *static_cast<int*>(count) += report.exception != nullptr ? 1 : 0;
    };
    const ExceptionPrinterFailure failure(kLong, kSite);
    const std::bad_alloc outOfMemory;
    const auto reportBoth = [&]()
    {
        const ExecutionContextLifetime context(kSite);
        for (const std::exception* const exception :
             {static_cast<const std::exception*>(&failure), static_cast<const std::exception*>(&outOfMemory)})
            TavlenException::DisplayExceptionMessage(false, false, exception, W("file"), 1, W("method"),
                                                     UtilitiesDllPerThreadStorage::GetExecutionContextStack(), nullptr,
                                                     kLong, W(""));
    };
    EXPECT_EQ(FailEachAllocation(reportBoth), 0u) << "as a trace line";
    int count = 0;
    TavlenException::SetReportSink({touch, &count});
    EXPECT_EQ(FailEachAllocation(reportBoth), 0u) << "to the sink";
    TavlenException::SetReportSink({nullptr, nullptr});
    EXPECT_EQ(count, 2);
}

// Without a sink a report is one line of bounded length, whoever's text makes it too long.
TEST(TraceLines, AreCutAndStillEnd)
{
    const auto traced = [](const std::exception& exception)
    {
        testing::internal::CaptureStderr();
        setenv("WINPORT_DEBUG_OUTPUT", "1", 1);
        TavlenException::DisplayExceptionMessage(false, false, &exception, W("file"), 1, W("method"),
                                                 UtilitiesDllPerThreadStorage::GetExecutionContextStack(), nullptr,
                                                 W("text"), nullptr);
        unsetenv("WINPORT_DEBUG_OUTPUT");
        return testing::internal::GetCapturedStderr();
    };
    EXPECT_EQ(traced(std::runtime_error("broken")), "*Reporting* method (file, line 1): broken; text\n");
    const std::string foreign = traced(std::runtime_error(std::string(5000, 'x')));
    const std::string ours = traced(ExceptionPrinterFailure(CXString(WideString(5000, W('x'))), kSite));
    for (const std::string& line : {foreign, ours})
    {
        EXPECT_EQ(line.size(), 1023u);
        EXPECT_EQ(line.substr(line.size() - 2), "x\n");
    }
}

} // namespace
