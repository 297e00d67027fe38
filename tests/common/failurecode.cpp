#include "tests/common/failurecode.h"

#include <gtest/gtest.h>

#include <tvutil/tavlencomexception.h>

HRESULT CodeOf(const std::function<void()>& action, std::string* place)
{
    try
    {
        action();
    }
    catch (const TavlenComException& failure)
    {
        EXPECT_TRUE(failure.GetText().IsEmpty());
        if (place != nullptr)
            *place = CXString(failure.GetSite().file).ToUtf8() + " " + CXString(failure.GetSite().method).ToUtf8();
        return failure.GetHresult();
    }
    return S_OK;
}

void ExpectCode(HRESULT code, const std::vector<std::function<void()>>& actions)
{
    for (std::size_t at = 0; at < actions.size(); ++at)
        EXPECT_EQ(code, CodeOf(actions[at])) << "action " << at;
}
