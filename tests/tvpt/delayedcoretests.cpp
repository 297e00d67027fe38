// The core library of an installed driver, in a process that starts elsewhere. Windows: other platforms do not delay.
#include <windows.h>

#include <cctype>
#include <cstdlib>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "hostrun.h"

namespace
{

namespace fs = std::filesystem;

// What the probe tells, in small letters: step to result and file.
class DelayedCore : public HostTest
{
protected:
    std::map<std::string, std::string> Probe(const std::string& printer)
    {
        const fs::path start = fs::current_path();
        const std::string probe = (start / "bind_probe.exe").make_preferred().string();
        fs::current_path(Folder());
        const int status = std::system((probe + " \"" + printer + "\" >probe.txt").c_str());
        fs::current_path(start);
        EXPECT_EQ(0, status);
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

    // A printer whose driver has no workflow module.
    std::string InstallWithoutWorkflow()
    {
        auto model = nlohmann::json::parse(ReadBytes(fs::path(TVPT_MODELS_FOLDER) / "tavlen-b4400-uni.json"));
        model["name"] = "Tavlen Alone";
        model.erase("workflowModule");
        WriteBytes(Folder() / "tavlen-alone.json", model.dump());
        const std::string name = "Test alone " + std::to_string(GetCurrentProcessId());
        EXPECT_EQ(0, RunHost({"printer", "add", name, "--model", File("tavlen-alone.json")}).status);
        RemoveAtEnd(name);
        return name;
    }
};

bool IsDriverFile(const std::string& told)
{
    return told.starts_with("0 ") && told.ends_with("\\spool\\drivers\\x64\\3\\tvcore_b.dll");
}

TEST_F(DelayedCore, IsLoadedAtItsFirstUseFromTheDriversFolder)
{
    auto steps = Probe(InstallTestPrinter());
    EXPECT_EQ("0", steps["created"]);
    EXPECT_PRED1(IsDriverFile, steps["bound"]); // the workflow module and the provider read the product data
    EXPECT_PRED1(IsDriverFile, steps["converted"]);
    EXPECT_EQ("0", steps["unloaded"]);
}

// Nobody else is there who could have loaded it: the module's own hook has, and its end frees it.
TEST_F(DelayedCore, IsLoadedByTheModuleItselfWithoutAWorkflowModule)
{
    auto steps = Probe(InstallWithoutWorkflow());
    EXPECT_EQ("0", steps["bound"]);
    EXPECT_PRED1(IsDriverFile, steps["asked"]);
    EXPECT_EQ("0", steps["unloaded"]);
}

// The copy beside the probe is not taken in its place.
TEST_F(DelayedCore, ThatIsMissingIsAFailureAndNoCrash)
{
    const std::string with = InstallTestPrinter();
    const std::string without = InstallWithoutWorkflow();
    const auto driver = nlohmann::json::parse(RunHost({"printer", "show", with, "--json"}).out)["driver"];
    const fs::path core = fs::path(driver["configFile"].get<std::string>()).replace_filename("tvcore_B.dll");
    fs::rename(core, core.string() + ".aside");
    auto steps = Probe(with);
    auto alone = Probe(without);
    fs::rename(core.string() + ".aside", core);
    EXPECT_EQ("80004005", steps["bound"]);
    EXPECT_EQ("0", alone["bound"]);
    EXPECT_EQ("80004005", alone["asked"]);
    EXPECT_EQ("0", alone["unloaded"]);
}

} // namespace
