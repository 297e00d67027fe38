// The hook over the real loader, in a module whose folder is not the program's.
#include <windows.h>

#include <delayimp.h>

#include <gtest/gtest.h>

#include <tvutil/exceptions.h>

#include "tests/delayload/usermodule.h"

namespace
{

using Notify = FARPROC(unsigned notification, const char* name);

class DelayLoadUser : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_NE(m_user.Handle(), nullptr);
        m_notify = m_user.Find<Notify>("UserNotify");
        ASSERT_NE(m_notify, nullptr);
    }

    HMODULE Load(const char* name) const
    {
        return reinterpret_cast<HMODULE>(m_notify(dliNotePreLoadLibrary, name));
    }

    UserModule m_user;
    Notify* m_notify = nullptr;
};

} // namespace

TEST_F(DelayLoadUser, FindsModulesByItsOwnPlaceAndFreesThem)
{
    struct Case
    {
        const char* name;
        const WCHAR* wideName;
        WStringView path; // from the module's folder
    };
    // The file's extension is the platform's.
    const Case cases[] = {
        {"delayload_near.dll", W("delayload_near.dll"), W("delayload_near.")},
        {"delayload_third.dll", W("delayload_third.dll"), W("3/delayload_third.")},
    };
    for (const Case& test : cases)
    {
        SCOPED_TRACE(test.name);
        ASSERT_EQ(GetModuleHandleW(test.wideName), nullptr);
        HMODULE const module = Load(test.name);
        EXPECT_NE(module, nullptr);
        EXPECT_EQ(module, GetModuleHandleW(test.wideName));
        EXPECT_TRUE(PathOf(module).starts_with(UserModule::Folder().append(test.path)));
    }
    m_user.Find<void()>("UserFreeModules")();
    for (const Case& test : cases)
        EXPECT_EQ(GetModuleHandleW(test.wideName), nullptr) << test.name;

    EXPECT_EQ(Load("TVUTIL_b.dll"), nullptr) << "left to the platform";
    for (const char* const name : {"delayload_absent.dll", "delayload_nowhere.dll"})
        EXPECT_THROW(Load(name), ExceptionDelayLoadDllLoadFailure) << name;
}
