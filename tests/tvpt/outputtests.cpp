// Files in and out, error lines, and the program itself as a child process.
#include <cstdlib>

#include "commandline.h"
#include "errornames.h"
#include "failure.h"
#include "filebytes.h"
#include "hostrun.h"

#include <sstream>

namespace
{

namespace fs = std::filesystem;

class Outputs : public HostTest
{
protected:
    StandardStreams m_streams{m_in, m_out, m_errors};

private:
    std::istringstream m_in;
    std::ostringstream m_out;
    std::ostringstream m_errors;
};

TEST_F(Outputs, AFileIsReplacedAsAWholeAndALinkStaysALink)
{
    WriteBytes(Folder() / "f", "before, and longer");
    WriteOutput(File("f"), "after", m_streams);
    EXPECT_EQ(ReadBytes(Folder() / "f"), "after");
    EXPECT_EQ(FilesLeft(), std::vector<std::string>{"f"});

    std::error_code error;
    fs::create_symlink("f", Folder() / "link", error);
    if (error)
        GTEST_SKIP() << "no links here";
    fs::create_symlink("later", Folder() / "dangling");
    WriteOutput(File("link"), "again", m_streams);
    WriteOutput(File("dangling"), "made", m_streams);
    EXPECT_TRUE(fs::is_symlink(Folder() / "link") && fs::is_symlink(Folder() / "dangling"));
    EXPECT_EQ(ReadBytes(Folder() / "f"), "again");
    EXPECT_EQ(ReadBytes(Folder() / "later"), "made");
}

TEST_F(Outputs, WhatCannotBeWrittenIsAnErrorAndLeavesNothing)
{
    fs::create_directory(Folder() / "folder");
    WriteBytes(Folder() / "f", "x");
    for (const std::string& name : {File("folder"), File("nowhere/f"), File("f/g")})
        EXPECT_THROW(WriteOutput(name, "bytes", m_streams), Failure) << name;
    EXPECT_EQ(FilesLeft(), (std::vector<std::string>{"f", "folder"}));
    EXPECT_TRUE(fs::is_empty(Folder() / "folder"));
}

TEST_F(Outputs, WhatCannotBeReadIsAnErrorOfOneLine)
{
    const std::pair<std::string, std::string> rows[] = {
        {File("nothing"), "reading: " + File("nothing") + ": ERROR_FILE_NOT_FOUND (2)"},
        {File("."), ": is a folder"},
        {"a\nb", "reading: a b: ERROR_FILE_NOT_FOUND (2)"},
    };
    for (const auto& [file, error] : rows)
        EXPECT_TRUE(IsRefused(RunHost({"devmode", "show", file}), error));
}

TEST(CommandLine, SaysWhatIsWrongWithIt)
{
    const std::pair<std::vector<std::string>, const char*> rows[] = {
        {{"frob"}, "\"frob\" is no command; known are printer, devmode, ticket"},
        {{"printer", "frob"}, "\"frob\" is no command; known are add"},
        {{"printer", "--frob"}, "\"--frob\" is no option"},
        {{"--", "frob"}, "\"frob\" is no command"},
        {{"ticket", "show", ""}, "TICKET: no file is named"},
        {{"--store", "", "printer", "list"}, "--store: no file is named"},
        {{}, ""},
        {{"printer", "add", "X"}, ""},
        {{"printer", "add", "--model", "tavlen-b4400-uni"}, ""},
        {{"devmode", "new", "--printer", "X"}, ""},
        {{"devmode", "set", "X"}, ""},
        {{"ticket", "to-devmode", "--printer", "X", "T", "-o", "Y"}, ""},
        {{"ticket", "from-devmode", "--printer", "X", "-", "--base", "-"}, ""},
        {{"ticket", "to-devmode", "--printer", "X", "--devmode", "-", "-", "-o", "Y"}, ""},
        {{"printer"}, "A subcommand is required"},
        {{"ticket", "expand", "t.xml", "--printer", "p", "-o", ""}, "-o: no file is named"},
        {{"ticket", "from-devmode", "d.dm", "--printer", "p", "--base", ""}, "--base: no file is named"},
        {{"capabilities"}, "--printer is required"},
        {{"capabilities", "--printer", "p", "--ticket", ""}, "--ticket: no file is named"},
        {{"capabilities", "--printer", "p", "--ticket", "-", "--base", "-"}, "cannot both be standard input"},
        {{"capabilities", "--printer", "p", "--base-only", "--base", "b.xml"}, "--base excludes --base-only"},
    };
    for (const auto& [arguments, error] : rows)
    {
        const RunResult result = RunHost(arguments);
        EXPECT_EQ(result.status, 2) << testing::PrintToString(arguments);
        EXPECT_EQ(result.out, "");
        EXPECT_TRUE(IsOneErrorLine(result.errors, error));
    }
    EXPECT_EQ(RunHost({"ticket", "--help"}).status, 0);
}

TEST(CommandLine, FailsWhereStandardOutputTakesNothing)
{
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream errors;
    out.setstate(std::ios::badbit);
    EXPECT_EQ(RunTvpt({"--help"}, {in, out, errors}), ExitStatus::Failed);
    EXPECT_TRUE(IsOneErrorLine(errors.str(), "standard output"));
}

TEST(ErrorNames, GiveNameAndNumber)
{
    EXPECT_EQ(HresultName(HRESULT_FROM_WIN32(ERROR_NOT_FOUND)), "ERROR_NOT_FOUND (0x80070490)");
    EXPECT_EQ(HresultName(static_cast<HRESULT>(0x8ABCDEF0)), "HRESULT (0x8ABCDEF0)");
    EXPECT_EQ(Win32ErrorName(54321), "error (54321)");
}

// The command processor of either platform runs it: double quotes are common to them.
int RunChild(const std::string& arguments)
{
    return std::system((std::string(TVPT_CHILD_COMMAND) + " " + arguments).c_str());
}

TEST_F(Outputs, TheProgramItselfPassesBytesAndStatus)
{
    MakePlainDevmode(InstallTestPrinter());
    const std::string devmode = ReadBytes(Folder() / "d.dm");
    // 10 is a line feed, which a text stream would not leave alone.
    EXPECT_EQ(RunChild("devmode set \"" + File("d.dm") + "\" --set dmCopies=10 > \"" + File("out.dm") + "\""), 0);
    const std::string changed = ReadBytes(Folder() / "out.dm");
    ASSERT_EQ(changed.size(), devmode.size());
    EXPECT_NE(changed, devmode);
    EXPECT_EQ(OutputOf({"devmode", "set", File("d.dm"), "--set", "dmCopies=10"}), changed);

    EXPECT_NE(RunChild("devmode show \"" + File("missing") + "\" 2> \"" + File("errors") + "\""), 0);
    EXPECT_TRUE(IsOneErrorLine(ReadBytes(Folder() / "errors"), "ERROR_FILE_NOT_FOUND (2)"));
}

} // namespace
