#include <utility>

#include <gtest/gtest.h>

#include <tvutil/application.h>
#include <tvutil/driverloadedcontext.h>
#include <tvutil/tavlenutilities.h>

namespace
{

TEST(Programs, ThatAskForNoLengthsGetNoCustomSize)
{
    EXPECT_TRUE(Application::DoesApplicationNeedCustomSizeRemovedFromPrintCapabilitiesXml(W("PrintDialog.exe")));
    EXPECT_TRUE(TavlenUtilities::GetExecutableName().ToLower().StartsWith(W("tvutil_tests")));
    EXPECT_FALSE(Application::DoesApplicationNeedCustomSizeRemovedFromPrintCapabilitiesXml());
}

TEST(RegistryHive, IsTheMachinesInThePrintSystemOnly)
{
    const std::pair<WStringView, HKEY> cases[] = {
        {W("C:\\WINDOWS\\SYSTEM32\\SPOOLSV.EXE"), HKEY_LOCAL_MACHINE},
        {W("C:\\Windows\\System32\\PrintFilterPipelineSvc.exe"), HKEY_LOCAL_MACHINE},
        {W("PrintIsolationHost.exe"), HKEY_LOCAL_MACHINE},
        {W("C:\\Windows\\spoolsv.exe\\notepad.exe"), HKEY_CURRENT_USER},
        {W("C:\\Tools\\myspoolsv.exe"), HKEY_CURRENT_USER},
    };
    for (const auto& [executable, hive] : cases)
        EXPECT_EQ(TavlenUtilities::GetRegistryHiveOfExecutable(executable), hive) << CXString(executable).ToUtf8();
    EXPECT_EQ(TavlenUtilities::GetRegistryHiveByContext(), HKEY_CURRENT_USER);
    EXPECT_FALSE(DriverLoadedContext::IsSpoolerOrFilterPipelineExeContext());
}

TEST(PortNames, BecomeKeysThatAreValidAndApart)
{
    const auto key = &TavlenUtilities::ConvertPortNameToRegistryKey;
    EXPECT_EQ(key(W("10.0.0.5_1/raw \u00e9")), W("10.0.0.5_1/raw \u00e9"));
    EXPECT_EQ(key(W("")), W("_~00000000"));

    const WideString longest(255, W('p'));
    EXPECT_EQ(key(longest), WStringView(longest));
    const CXString shares[] = {key(W("\\\\server\\c9070")),   key(W("__server_c9070")),
                               key(W("\\\\server\\c9070\t")), key(W("\\\\server_c9070")),
                               key(WideString(256, W('p'))),  key(WideString(257, W('p'))),
                               key(WideString(300, W('\\')))};
    for (const CXString& one : shares)
    {
        EXPECT_EQ(one.Find(W("\\")), CXString::npos);
        EXPECT_LE(one.Length(), 255u);
        for (const CXString& other : shares)
            EXPECT_TRUE(&one == &other || one.CompareNoCase(other) != 0) << one.ToUtf8();
    }
    const CXString cut = key(WideString(245, W('p')) + W("\U0001F5A8") + longest);
    EXPECT_EQ(cut.Find(W("p~")), 244u) << "not within a character: " << cut.ToUtf8();
    EXPECT_EQ(shares[0].CompareNoCase(key(W("\\\\SERVER\\C9070"))), 0) << "as the registry compares";
    EXPECT_TRUE(shares[0].StartsWith(W("__server_c9070~"))) << shares[0].ToUtf8();
}

} // namespace
