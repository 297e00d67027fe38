// Whose texts are in force, on which thread, and for how long.
#include <gtest/gtest.h>

#include <memory>
#include <thread>

#include <tvutil/textresourceloader.h>

namespace
{

using SharedTexts = std::shared_ptr<const TextResourceLoader::Texts>;

constexpr std::int32_t kNumber = 41034;

SharedTexts Share(const WCHAR* printer, const WCHAR* text)
{
    return TextResourceLoader::Share(CXString(printer), {{kNumber, CXString(text)}});
}

bool PutInForce(const WCHAR* printer, bool forget = false)
{
    return TextResourceLoader::Initialize(CXString(printer), forget);
}

CXString Text()
{
    return TextResourceLoader::LoadStringW(kNumber);
}

TEST(TextsInForce, LiveAsLongAsSomebodyKeepsThem)
{
    SharedTexts first = Share(W("One"), W("old"));
    SharedTexts same = Share(W("One"), W("old"));
    EXPECT_TRUE(PutInForce(W("One")));
    same.reset();
    EXPECT_EQ(Text(), W("old"));

    SharedTexts newer = Share(W("One"), W("new"));
    EXPECT_EQ(Text(), W("old")); // until the printer is initialised again
    EXPECT_TRUE(PutInForce(W("One")));
    EXPECT_EQ(Text(), W("new"));
    newer.reset();
    EXPECT_EQ(Text(), W(""));
    EXPECT_TRUE(PutInForce(W("One")));
    EXPECT_EQ(Text(), W("old"));

    EXPECT_FALSE(PutInForce(W("One"), true)); // forgotten, though somebody still keeps them
    first.reset();
    EXPECT_FALSE(PutInForce(W("One")));
}

// They stay with whoever keeps them, while their printer is renamed or its name becomes another product's.
TEST(TextsInForce, AreThoseThatTheirKeeperPutsInForce)
{
    const SharedTexts first = Share(W("One"), W("first"));
    const SharedTexts newer = Share(W("One"), W("newer"));
    const SharedTexts nobodys = Share(W(""), W("nobody's"));
    EXPECT_FALSE(PutInForce(W("")));
    for (const bool forgotten : {false, true})
    {
        PutInForce(W("One"), forgotten);
        TextResourceLoader::Initialize(first);
        EXPECT_EQ(Text(), W("first"));
        TextResourceLoader::Initialize(nobodys);
        EXPECT_EQ(Text(), W("nobody's"));
        PutInForce(W("One"));
        EXPECT_EQ(Text(), forgotten ? W("") : W("newer"));
    }
}

TEST(TextsInForce, AreEachThreadsOwn)
{
    const SharedTexts first = Share(W("One"), W("first"));
    const SharedTexts second = Share(W("Two"), W("second"));
    PutInForce(W("one")); // printers are compared ignoring case
    std::thread(
        []
        {
            EXPECT_EQ(Text(), W("first")) << "a thread that never chose sees the process's last choice";
            PutInForce(W("Two"));
            EXPECT_EQ(Text(), W("second"));
        })
        .join();
    EXPECT_EQ(Text(), W("first"));
}

} // namespace
