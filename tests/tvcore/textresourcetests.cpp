// Whose texts are in force, on which thread, and for how long.
#include <gtest/gtest.h>

#include <memory>
#include <thread>

#include <tvcore/printermodel.h>
#include <tvcore/productdata.h>
#include <tvcore/productstringloader.h>
#include <tvutil/textresourceloader.h>

namespace
{

constexpr std::int32_t kNumber = 41034;

std::unique_ptr<ProductData> ProductSaying(const WCHAR* printer, const WCHAR* text)
{
    PrinterModel model;
    model.productStrings = {{kNumber, CXString(text)}};
    return std::make_unique<ProductData>(std::move(model), CXString(printer));
}

bool PutInForce(const WCHAR* printer, bool forget = false)
{
    return TextResourceLoader::Initialize(CXString(printer), forget);
}

CXString Text()
{
    return ProductStringLoader(ProductData::ControllerFamilyColor).LoadStringW(kNumber);
}

TEST(TextsInForce, AreThoseOfThePrinterInitialisedLast)
{
    const auto first = ProductSaying(W("One"), W("first"));
    const auto second = ProductSaying(W("Two"), W("second"));
    EXPECT_TRUE(PutInForce(W("one"))); // printers are compared ignoring case
    EXPECT_EQ(Text(), W("first"));
    EXPECT_TRUE(PutInForce(W("Two")));
    EXPECT_EQ(Text(), W("second"));
    EXPECT_FALSE(PutInForce(W("Three")));
    EXPECT_EQ(Text(), W("")); // not another printer's
}

TEST(TextsInForce, LiveAsLongAsAProductThatHasThem)
{
    auto first = ProductSaying(W("One"), W("old"));
    auto same = ProductSaying(W("One"), W("old"));
    EXPECT_TRUE(PutInForce(W("One")));
    same.reset();
    EXPECT_EQ(Text(), W("old"));

    auto newer = ProductSaying(W("One"), W("new"));
    EXPECT_EQ(Text(), W("old")); // until the printer is initialised again
    EXPECT_TRUE(PutInForce(W("One")));
    EXPECT_EQ(Text(), W("new"));
    newer.reset();
    EXPECT_EQ(Text(), W(""));
    EXPECT_TRUE(PutInForce(W("One")));
    EXPECT_EQ(Text(), W("old"));

    EXPECT_FALSE(PutInForce(W("One"), true)); // forgotten, though a product still has them
    first.reset();
    EXPECT_FALSE(PutInForce(W("One")));
}

// A product stays with whoever bound it first, while its printer is renamed or its name becomes another product's.
TEST(TextsInForce, AreThoseOfAProductThatSaysSo)
{
    const auto first = ProductSaying(W("One"), W("first"));
    const auto newer = ProductSaying(W("One"), W("newer"));
    const auto nobodys = ProductSaying(W(""), W("nobody's"));
    EXPECT_FALSE(PutInForce(W("")));
    for (const bool forgotten : {false, true})
    {
        PutInForce(W("One"), forgotten);
        first->PutTextsInForce();
        EXPECT_EQ(Text(), W("first"));
        nobodys->PutTextsInForce();
        EXPECT_EQ(Text(), W("nobody's"));
        PutInForce(W("One"));
        EXPECT_EQ(Text(), forgotten ? W("") : W("newer"));
    }
}

TEST(TextsInForce, AreEachThreadsOwn)
{
    const auto first = ProductSaying(W("One"), W("first"));
    const auto second = ProductSaying(W("Two"), W("second"));
    PutInForce(W("One"));
    CXString before;
    CXString after;
    std::thread(
        [&]
        {
            before = Text();
            PutInForce(W("Two"));
            after = Text();
        })
        .join();
    EXPECT_EQ(before, W("first")); // a thread that never chose sees the process's last choice
    EXPECT_EQ(after, W("second"));
    EXPECT_EQ(Text(), W("first"));
}

TEST(TextsInForce, MayBeSharedAndAskedForOnManyThreads)
{
    constexpr int kThreads = 4;
    constexpr int kRounds = 200;
    std::thread threads[kThreads];
    for (int index = 0; index < kThreads; ++index)
        threads[index] = std::thread(
            [index]
            {
                const CXString name = CXString::FromInteger(index);
                for (int round = 0; round < kRounds; ++round)
                {
                    const auto product = ProductSaying(name.c_str(), name.c_str());
                    PutInForce(name.c_str());
                    EXPECT_EQ(Text(), name);
                }
            });
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
