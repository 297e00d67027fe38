// The core library of an installed driver, in a process that starts elsewhere. Windows: other platforms do not delay.
#include <windows.h>

#include <cctype>
#include <cstdlib>
#include <map>
#include <sstream>

#include "hostrun.h"

namespace
{

namespace fs = std::filesystem;

// What the probe tells, in small letters: step to result and file.
class DelayedCore : public HostTest
{
protected:
    static fs::path DriversFile(const std::string& printer, const char* name)
    {
        return fs::path(Shown(printer)["driver"]["configFile"].get<std::string>()).replace_filename(name);
    }

    std::map<std::string, std::string> Probe(const std::string& printer)
    {
        const fs::path start = fs::current_path();
        const std::string probe = (start / "bind_probe.exe").make_preferred().string();
        const std::string provider = DriversFile(printer, "tvptpc_B.dll").string();
        fs::current_path(Folder());
        EXPECT_EQ(std::system((probe + " \"" + printer + "\" \"" + provider + "\" >probe.txt").c_str()), 0);
        fs::current_path(start);
        std::map<std::string, std::string> steps;
        std::istringstream lines(ReadBytes(Folder() / "probe.txt"));
        for (std::string line; std::getline(lines, line);)
        {
            for (char& character : line)
                character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
            const std::size_t colon = line.find(": ");
            steps[line.substr(0, colon)] = line.substr(colon + 2, line.find_last_not_of("\r\n ") - colon - 1);
        }
        return steps;
    }

    std::string InstallWithoutWorkflow()
    {
        return InstallChanged({{"name", "Tavlen Alone"}, {"workflowModule", nullptr}});
    }
};

// With a workflow module, that and the provider read the product data when the printer is bound. Without one nobody
// else is there who could have loaded the core library: the module's own hook has, and its end frees it.
TEST_F(DelayedCore, IsLoadedAtItsFirstUseFromTheDriversFolderAndMissedWithoutACrash)
{
    const std::string loaded = "\\spool\\drivers\\x64\\3\\tvcore_b.dll";
    const std::string with = InstallTestPrinter();
    const std::string without = InstallWithoutWorkflow();
    auto bound = Probe(with);
    EXPECT_TRUE(bound["bound"].starts_with("0 ") && bound["bound"].ends_with(loaded)) << bound["bound"];
    EXPECT_EQ(bound["unloaded"], "0");
    auto alone = Probe(without);
    EXPECT_EQ(alone["bound"], "0");
    EXPECT_TRUE(alone["asked"].starts_with("0 ") && alone["asked"].ends_with(loaded)) << alone["asked"];
    EXPECT_EQ(alone["unloaded"], "0");

    // The copy beside the probe is not taken in its place.
    const fs::path core = DriversFile(with, "tvcore_B.dll");
    fs::rename(core, core.string() + ".aside");
    EXPECT_EQ(Probe(with)["bound"], "80004005");
    alone = Probe(without);
    fs::rename(core.string() + ".aside", core);
    EXPECT_EQ(alone["bound"], "0");
    EXPECT_EQ(alone["asked"], "80004005");
    EXPECT_EQ(alone["unloaded"], "0");
}

} // namespace
