#include "hostrun.h"

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <sstream>
#include <system_error>

#include <tvutil/cxstring.h>

#include "commandline.h"
#include "filebytes.h"
#include "printschemadocument.h"
#include "tests/common/testfolders.h"

namespace
{

namespace fs = std::filesystem;

constexpr char kStoreFolder[] = "store";

} // namespace

RunResult RunHost(const std::vector<std::string>& arguments, const std::string& input)
{
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream errors;
    const ExitStatus status = RunTvpt(arguments, {in, out, errors});
    return {static_cast<int>(status), out.str(), errors.str()};
}

int RunChild(const std::string& arguments)
{
    return std::system((std::string(TVPT_CHILD_COMMAND) + " " + arguments).c_str());
}

std::string ReadBytes(const fs::path& path)
{
    return ReadFileBytes(path, std::numeric_limits<std::size_t>::max());
}

void WriteBytes(const fs::path& path, const std::string& bytes)
{
    std::ofstream stream(path, std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    EXPECT_TRUE(stream.good()) << path;
}

testing::AssertionResult IsOneErrorLine(const std::string& errors, const std::string& text)
{
    const bool isOneLine = !errors.empty() && errors.find('\n') == errors.size() - 1;
    if (isOneLine && errors.starts_with("tvpt: ") && errors.find(text) != std::string::npos)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "not one line of the program's with \"" << text << "\": " << errors;
}

testing::AssertionResult IsRefused(const RunResult& result, const std::string& text, int status)
{
    if (result.status != status || !result.out.empty())
        return testing::AssertionFailure() << "status " << result.status << ", output: " << result.out;
    return IsOneErrorLine(result.errors, text);
}

std::string OutputOf(const std::vector<std::string>& arguments, const std::string& input)
{
    const RunResult result = RunHost(arguments, input);
    EXPECT_EQ(result.status, 0) << result.errors;
    return result.out;
}

nlohmann::json JsonOf(std::vector<std::string> arguments, const std::string& input)
{
    arguments.emplace_back("--json");
    return nlohmann::json::parse(OutputOf(arguments, input));
}

std::string Ticket(const std::string& declarations, const std::string& content)
{
    return "<?xml version='1.0'?>\n<!-- xmlns:psk='urn:x' -->\n<psf:PrintTicket xmlns:psf='" +
           std::string(kFramework.uri) + "'" + declarations + " version='1'>\n" + content + "</psf:PrintTicket>";
}

std::string Binding(const std::string& prefix, std::string_view uri)
{
    return " xmlns:" + prefix + "='" + std::string(uri) + "'";
}

SchemaElement ReadTree(const std::string& bytes)
{
    return LoadDocumentTree(bytes, "test");
}

HostTest::HostTest()
    : m_folder(fs::temp_directory_path() / ("tvpt-tests-" + std::to_string(GetCurrentProcessId()) + "-" +
                                            testing::UnitTest::GetInstance()->current_test_info()->name()))
{
    fs::remove_all(m_folder);
    fs::create_directories(m_folder / kStoreFolder);
    SetEnvironmentVariableW(W("TVPT_STORE"), CXString::FromUtf8(File(kStoreFolder)).c_str());
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
    return Utf8FromPath(m_folder / PathFromUtf8(name));
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
    (void)OutputOf({"printer", "add", name, "--model", model});
    RemoveAtEnd(name);
    return m_printer = name;
}

std::string HostTest::InstallChanged(const nlohmann::json& changes)
{
    const std::string driver = changes["name"];
    const std::string name = "Test " + driver + " " + std::to_string(GetCurrentProcessId());
    (void)OutputOf({"printer", "add", name, "--model", ChangedModel(driver + ".json", changes)});
    RemoveAtEnd(name);
    return m_printer = name;
}

void HostTest::RemoveAtEnd(const std::string& printer)
{
    m_printers.push_back(printer);
}

std::string HostTest::ChangedModel(const std::string& fileName, const nlohmann::json& changes) const
{
    nlohmann::json model = nlohmann::json::parse(ReadBytes(ModelsFolder() / "tavlen-b4400-uni.json"));
    model.merge_patch(changes);
    WriteBytes(m_folder / fileName, model.dump());
    return File(fileName);
}

nlohmann::json HostTest::Shown(const std::string& printer)
{
    return JsonOf({"printer", "show", printer});
}

std::vector<std::string> HostTest::With(std::vector<std::string> arguments, const std::vector<std::string>& settings)
{
    for (const std::string& setting : settings)
        arguments.insert(arguments.end(), {"--set", setting});
    return arguments;
}

std::string HostTest::NewDevmode(const std::string& printer, const std::vector<std::string>& settings)
{
    return OutputOf(With({"devmode", "new", "--printer", printer, "-o", "-"}, settings));
}

nlohmann::json HostTest::ShownDevmode(const std::string& bytes, const std::string& printer)
{
    std::vector<std::string> arguments = {"devmode", "show", "-"};
    if (!printer.empty())
        arguments.insert(arguments.end(), {"--printer", printer});
    return JsonOf(arguments, bytes);
}

void HostTest::WriteDevmode(const std::string& file, const std::vector<std::string>& settings) const
{
    WriteBytes(m_folder / file, NewDevmode(m_printer, settings));
}

RunResult HostTest::FromDevmode(const std::string& devmode, const std::string& ticket, const std::string& base) const
{
    std::vector<std::string> arguments = {"ticket",      "from-devmode", "--printer", m_printer,
                                          File(devmode), "-o",           File(ticket)};
    if (!base.empty())
        arguments.insert(arguments.end(), {"--base", File(base)});
    return RunHost(arguments);
}

RunResult HostTest::ToDevmode(const std::string& ticket, const std::string& devmode, const std::string& result) const
{
    return RunHost(
        {"ticket", "to-devmode", "--printer", m_printer, "--devmode", File(devmode), File(ticket), "-o", File(result)});
}
