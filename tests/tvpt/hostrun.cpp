#include "hostrun.h"

#include <windows.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <system_error>

#include <tvutil/cxstring.h>

#include "commandline.h"

namespace
{

namespace fs = std::filesystem;

constexpr char kStoreFolder[] = "store";

void ChooseStore(const fs::path& folder)
{
    const std::u8string name = folder.u8string();
    SetEnvironmentVariableW(W("TVPT_STORE"), CXString::FromUtf8(std::string(name.begin(), name.end())).c_str());
}

} // namespace

RunResult RunHost(const std::vector<std::string>& arguments, const std::string& input)
{
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream errors;
    const ExitStatus status = RunTvpt(arguments, {in, out}, errors);
    return {static_cast<int>(status), out.str(), errors.str()};
}

std::string ReadBytes(const fs::path& path)
{
    std::ifstream stream(path, std::ios::binary);
    EXPECT_TRUE(stream.is_open()) << path;
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return bytes.str();
}

void WriteBytes(const fs::path& path, const std::string& bytes)
{
    std::ofstream stream(path, std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    EXPECT_TRUE(stream.good()) << path;
}

testing::AssertionResult IsOneErrorLine(const std::string& errors, const std::string& text)
{
    if (std::count(errors.begin(), errors.end(), '\n') != 1 || errors.back() != '\n')
        return testing::AssertionFailure() << "not one line: " << errors;
    if (!errors.starts_with("tvpt: "))
        return testing::AssertionFailure() << "not the program's line: " << errors;
    if (errors.find(text) == std::string::npos)
        return testing::AssertionFailure() << "no \"" << text << "\" in: " << errors;
    return testing::AssertionSuccess();
}

HostTest::HostTest()
    : m_folder(fs::temp_directory_path() / ("tvpt-tests-" + std::to_string(GetCurrentProcessId()) + "-" +
                                            testing::UnitTest::GetInstance()->current_test_info()->name()))
{
    fs::remove_all(m_folder);
    fs::create_directories(m_folder / kStoreFolder);
    ChooseStore(m_folder / kStoreFolder);
}

HostTest::~HostTest()
{
    for (const std::string& printer : m_printers)
        RunHost({"printer", "remove", printer});
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
}

std::string HostTest::File(const std::string& name) const
{
    const std::u8string path = (m_folder / name).u8string();
    return std::string(path.begin(), path.end());
}

const fs::path& HostTest::Folder() const
{
    return m_folder;
}

std::vector<std::string> HostTest::FilesLeft() const
{
    std::vector<std::string> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(m_folder))
        if (entry.path().filename() != kStoreFolder)
            files.push_back(entry.path().filename().string());
    std::sort(files.begin(), files.end());
    return files;
}

std::string HostTest::InstallTestPrinter(const std::string& model)
{
    // A name of this process's own: what an earlier run left in the machine's spooler is not in the way.
    const std::string name =
        "Test " + model + " " + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(m_printers.size());
    const RunResult result = RunHost({"printer", "add", name, "--model", model});
    EXPECT_EQ(result.status, 0) << result.errors;
    RemoveAtEnd(name);
    return name;
}

void HostTest::RemoveAtEnd(const std::string& printer)
{
    m_printers.push_back(printer);
}
