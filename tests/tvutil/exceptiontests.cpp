// The throw pattern: everything here is thrown on the other side of the library's border.
#include <windows.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <tvutil/exceptions.h>
#include <tvutil/executioncontext.h>
#include <tvutil/tavlencomexception.h>
#include <tvutil/throwexception.h>
#include <tvutil/utilitiesdllperthreadstorage.h>

namespace
{

constexpr const WCHAR* kFile = W("tests\\tvutil\\exceptiontests");
constexpr int kLine = 867;
constexpr ThrowSite kSite{W("Class::Method"), kFile, kLine};

// What the debug hook saw, in order.
struct Seen
{
    std::string traceLine;
    std::string method;
    int line;
    std::size_t depth;
};
std::vector<Seen> g_seen;

bool RecordingHook(const WCHAR* traceLine, const ThrowSite& site, const ExecutionContextStack& contexts)
{
    g_seen.push_back({CXString(traceLine).ToUtf8(), CXString(site.method).ToUtf8(), site.line, contexts.Depth()});
    return false;
}

class ThrowPattern : public testing::Test
{
protected:
    void SetUp() override
    {
        g_seen.clear();
        EXPECT_EQ(TavlenException::SetDebugHook(RecordingHook), nullptr);
    }

    void TearDown() override
    {
        EXPECT_EQ(TavlenException::SetDebugHook(nullptr), RecordingHook);
    }
};

TEST_F(ThrowPattern, ShowsTheHookTheLineTheSiteAndTheContextsBeforeTheThrow)
{
    const ExecutionContextLifetime context({W("Class::Method"), kFile});
    try
    {
        ThrowException<ExceptionInvalidFormName>(kSite, W("form \"%s\" has %u characters"), {W("A4"), 33u});
    }
    catch (const TavlenException& exception)
    {
        EXPECT_EQ(std::string(exception.what()), "form \"A4\" has 33 characters");
        EXPECT_EQ(exception.GetSite().line, kLine);
        EXPECT_EQ(CXString(exception.GetSite().file), kFile);
    }
    ASSERT_EQ(g_seen.size(), 1u);
    EXPECT_EQ(g_seen[0].traceLine, "*Throwing* ExceptionInvalidFormName: form \"A4\" has 33 characters");
    EXPECT_EQ(g_seen[0].method, "Class::Method");
    EXPECT_EQ(g_seen[0].line, kLine);
    EXPECT_EQ(g_seen[0].depth, 1u);
}

TEST_F(ThrowPattern, MessagesThatCannotBeComposedDoNotHideTheFailure)
{
    const std::string fixed = "A message argument was supplied, but the resulting string is empty.";
    EXPECT_TRUE(ComposeExceptionMessage({}, {}).IsEmpty());
    for (const CXString& message :
         {ComposeExceptionMessage(W("%s"), {W("")}), ComposeExceptionMessage(W("wrong: %s %x"), {W("a"), 1}),
          ComposeExceptionMessage(W("missing: %s %s"), {W("a")})})
        EXPECT_EQ(message.ToUtf8().substr(0, fixed.size()), fixed);
}

TEST_F(ThrowPattern, ResultCodesThrowWithTheirOwnLineUnlessTheySucceed)
{
    ThrowIfFailed(S_OK, kSite);
    ThrowIfFailed(S_FALSE, kSite);
    EXPECT_TRUE(g_seen.empty());
    for (const HRESULT result : {E_FAIL, HRESULT_FROM_WIN32(ERROR_NOT_FOUND)})
        try
        {
            ThrowIfFailed(result, {W("Class::Method"), kFile});
            FAIL();
        }
        catch (const TavlenComException& exception)
        {
            EXPECT_EQ(exception.GetHresult(), result);
            EXPECT_EQ(exception.GetSite().line, __LINE__ - 6);
            EXPECT_STREQ(exception.what(), "");
        }
    EXPECT_THROW(ThrowComException(S_FALSE, kSite), TavlenComException);
    EXPECT_THROW(ThrowComException(E_FAIL, kSite, W("%s"), {W("x")}), TavlenComException);
    ASSERT_EQ(g_seen.size(), 4u);
    EXPECT_EQ(g_seen[0].traceLine, "*Throwing* TavlenComException: ");
    EXPECT_EQ(g_seen[3].traceLine, "*Throwing* TavlenComException: x");
}

TEST(ExecutionContexts, NestAndBelongToTheirThread)
{
    const auto open = []()
    {
        return UtilitiesDllPerThreadStorage::GetExecutionContextStack();
    };
    EXPECT_EQ(open().Top(), nullptr);
    {
        const ExecutionContextLifetime outer(kSite, 1);
        std::vector<std::unique_ptr<ExecutionContextLifetime>> many;
        for (LONG id = 2; id <= 1000; ++id)
            many.push_back(std::make_unique<ExecutionContextLifetime>(kSite, id));
        EXPECT_EQ(open().Depth(), 1000u);
        EXPECT_EQ(open().Top()->id, 1000);
        EXPECT_EQ(open().Top()->outer->id, 999);
        std::thread([&open]() { EXPECT_EQ(open().Depth(), 0u); }).join();
        while (!many.empty())
            many.pop_back();
        EXPECT_EQ(open().Top()->id, 1);
        EXPECT_EQ(open().Depth(), 1u);
    }
    EXPECT_EQ(open().Depth(), 0u);
}

} // namespace
