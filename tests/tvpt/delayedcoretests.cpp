// The core library of an installed driver, in a process that starts elsewhere. Windows: other platforms do not delay.
#include <cctype>
#include <cstdlib>

#include "hostrun.h"

namespace
{

class DelayedCore : public HostTest
{
};

std::string InSmallLetters(std::string text)
{
    for (char& character : text)
        character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    return text;
}

TEST_F(DelayedCore, IsLoadedAtItsFirstUseFromTheDriversFolder)
{
    const std::string printer = InstallTestPrinter();
    const std::filesystem::path start = std::filesystem::current_path();
    const std::string probe = (start / "bind_probe.exe").make_preferred().string();
    std::filesystem::current_path(Folder());
    const int status = std::system((probe + " \"" + printer + "\" >probe.txt").c_str());
    std::filesystem::current_path(start);
    ASSERT_EQ(0, status);

    const std::string told = InSmallLetters(ReadBytes(Folder() / "probe.txt"));
    EXPECT_NE(std::string::npos, told.find("bound: 0")) << told;
    const std::size_t before = told.find("before: ");
    EXPECT_EQ(told.find_first_of("\r\n", before), before + 8) << told; // nothing
    EXPECT_NE(std::string::npos, told.find("\\spool\\drivers\\x64\\3\\tvcore_b.dll", before)) << told;
}

} // namespace
