// The product of an installed printer: found through its driver's data file.
#include <gtest/gtest.h>

#include <tvcore/productdata.h>
#include <tvutil/exceptions.h>

#include "tests/common/testprinter.h"

namespace
{

TEST(ProductOfAnInstalledPrinter, IsItsDriversModel)
{
    const TestPrinter installed({{}, "tavlen-b7000-xps.json", {}});
    const ProductData product(installed.Handle());

    EXPECT_EQ(product.GetName(), W("Tavlen B7000 XPS"));
    EXPECT_EQ(product.GetCapability(), 0x1404u);
    EXPECT_TRUE(product.GetInfo(14).IsEmpty());
    EXPECT_EQ(product.GetMargins(331).bottom, 15000);
    EXPECT_EQ(product.GetMargins(2).left, 0); // a paper that the product says nothing of
}

// As the module sees it, which does not know the reader's exception.
TEST(ProductOfAnInstalledPrinter, FailsAsOneOfTheFamilyWithoutAModelOrAPrinter)
{
    const TestPrinter installed({.capabilityWord = {}, .model = {}, .dependentFiles = {}, .dataText = "no model"});
    EXPECT_THROW(ProductData{installed.Handle()}, TavlenException);
    EXPECT_THROW(ProductData{static_cast<HANDLE>(nullptr)}, ExceptionPrinterFailure);
}

} // namespace
