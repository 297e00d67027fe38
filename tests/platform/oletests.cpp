// BSTRs, variants and task memory.
#include <oleauto.h>

#include <gtest/gtest.h>

TEST(Bstr, NullHasNoLength)
{
    EXPECT_EQ(SysStringLen(nullptr), 0u);
    EXPECT_EQ(SysStringByteLen(nullptr), 0u);
}
