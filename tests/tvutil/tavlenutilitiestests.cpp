#include <string>

#include <gtest/gtest.h>

#include <tvutil/driverloadedcontext.h>
#include <tvutil/operatingsystem.h>
#include <tvutil/tavlenutilities.h>

namespace
{

void AFunctionOfThisProgram()
{
}

TEST(Paths, AModuleIsFoundByWhatItContains)
{
    const CXString program = TavlenUtilities::getModulePath(&AFunctionOfThisProgram);
    EXPECT_NE(program.ToLower().Find(W("tvutil_tests")), CXString::npos) << program.ToUtf8();
    static const int anObject = 1;
    EXPECT_EQ(TavlenUtilities::getModulePath(&anObject), program);
    const int onTheStack = 1;
    EXPECT_TRUE(TavlenUtilities::getModulePath(&onTheStack).IsEmpty());
    EXPECT_TRUE(TavlenUtilities::getModulePath(nullptr).IsEmpty());

    const CXString folder = TavlenUtilities::getPathFromFileName(program);
    EXPECT_TRUE(!folder.IsEmpty() && program.StartsWith(folder));
    EXPECT_EQ(program.Mid(folder.Length()).ToLower().Find(W("tvutil_tests")), 0u);
}

TEST(Paths, DirectoriesKeepTheirSeparatorOfEitherKind)
{
    struct Case
    {
        const WCHAR* fileName;
        const char* directory;
    };
    constexpr Case kCases[] = {
        {W("C:\\Windows\\System32\\spool\\tvptpc_B.dll"), "C:\\Windows\\System32\\spool\\"},
        {W("/opt/tavlen/tvptpc_B.so"), "/opt/tavlen/"},
        {W("C:\\a/b.dll"), "C:\\a/"},
        {W("C:/a\\b.dll"), "C:/a\\"},
        {W("b.dll"), ""},
        {W("\\b.dll"), "\\"},
        {W("C:\\a\\"), "C:\\a\\"},
        {W(""), ""},
    };
    for (const Case& test : kCases)
        EXPECT_EQ(TavlenUtilities::getPathFromFileName(test.fileName).ToUtf8(), test.directory);
}

TEST(RegistryHive, IsTheMachinesInThePrintSystemOnly)
{
    struct Case
    {
        const WCHAR* executable;
        bool machine;
    };
    constexpr Case kCases[] = {
        {W("C:\\Windows\\System32\\spoolsv.exe"), true},
        {W("C:\\WINDOWS\\SYSTEM32\\SPOOLSV.EXE"), true},
        {W("C:\\Windows\\System32\\PrintFilterPipelineSvc.exe"), true},
        {W("PrintIsolationHost.exe"), true},
        {W("C:\\Windows\\spoolsv.exe\\notepad.exe"), false},
        {W("C:\\Tools\\myspoolsv.exe"), false},
        {W("spoolsv"), false},
        {W(""), false},
    };
    for (const Case& test : kCases)
        EXPECT_EQ(TavlenUtilities::GetRegistryHiveOfExecutable(test.executable),
                  test.machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER)
            << CXString(test.executable).ToUtf8();
    EXPECT_EQ(TavlenUtilities::GetRegistryHiveByContext(), HKEY_CURRENT_USER);
    EXPECT_FALSE(DriverLoadedContext::IsSpoolerOrFilterPipelineExeContext());
}

TEST(PortNames, BecomeKeysThatAreValidAndApart)
{
    const auto key = [](WStringView port)
    {
        return TavlenUtilities::ConvertPortNameToRegistryKey(port);
    };
    EXPECT_EQ(key(W("LPT1:")), W("LPT1:"));
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

TEST(OperatingSystem, TellsAVersionThatDriversSupport)
{
    EXPECT_GE(OperatingSystem::GetVersion().major, 6u);
}

} // namespace
