#include "tests/common/failurecode.h"

#include <gtest/gtest.h>

#include <tvutil/tavlencomexception.h>

HRESULT CodeOf(const std::function<void()>& action, std::string* method)
{
    try
    {
        action();
    }
    catch (const TavlenComException& failure)
    {
        EXPECT_TRUE(failure.GetText().IsEmpty());
        if (method != nullptr)
            *method = CXString(failure.GetSite().method).ToUtf8();
        return failure.GetHresult();
    }
    return S_OK;
}
