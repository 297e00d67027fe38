// BSTRs, a thread's COM and the classes that it makes objects of.
#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <cstdint>
#include <cstring>
#include <thread>

#include "tests/platform/domfixture.h"
#include "utilitiesstaticlib/domclassid.h"

TEST(Bstr, CarriesItsLengthBeforeAndATerminatorBehindItsCharacters)
{
    for (const auto& [string, length] :
         {std::pair(SysAllocString(W("Letter")), 6u), std::pair(SysAllocString(W("")), 0u),
          std::pair(SysAllocStringLen(W("a\0b"), 3), 3u), std::pair(SysAllocStringLen(nullptr, 5), 5u)})
    {
        ASSERT_NE(string, nullptr);
        std::uint32_t prefix = 0;
        std::memcpy(&prefix, reinterpret_cast<const char*>(string) - sizeof(prefix), sizeof(prefix));
        EXPECT_EQ(prefix, length * sizeof(OLECHAR));
        EXPECT_EQ(SysStringLen(string), length);
        EXPECT_EQ(string[length], 0);
        SysFreeString(string);
    }
    for (const UINT length : {0x7FFFFFFFu, 0x80000001u, 0xFFFFFFFFu})
        EXPECT_EQ(SysAllocStringLen(nullptr, length), nullptr) << "does not fit the count of bytes: " << length;
    EXPECT_EQ(SysStringLen(nullptr), 0u);
}
