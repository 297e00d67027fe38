// Files in and out, error lines, and the program itself as a child process.
#include "commandline.h"
#include "failure.h"
#include "hostrun.h"

#include <sstream>

namespace
{

namespace fs = std::filesystem;

using Outputs = HostTest;

void Write(const std::string& file, const std::string& bytes)
{
    std::istringstream in;
    std::ostringstream out;
    WriteOutput(file, bytes, {in, out, out});
}

TEST_F(Outputs, AFileIsReplacedAsAWholeAndALinkStaysALink)
{
    WriteBytes(Folder() / "f", "before, and longer");
    Write(File("f"), "after");
    EXPECT_EQ(ReadBytes(Folder() / "f"), "after");
    EXPECT_EQ(FilesLeft(), std::vector<std::string>{"f"});

    std::error_code error;
    fs::create_symlink("f", Folder() / "link", error);
    if (error)
        GTEST_SKIP() << "no links here";
    fs::create_symlink("later", Folder() / "dangling");
    Write(File("link"), "again");
    Write(File("dangling"), "made");
    EXPECT_TRUE(fs::is_symlink(Folder() / "link") && fs::is_symlink(Folder() / "dangling"));
    EXPECT_EQ(ReadBytes(Folder() / "f"), "again");
    EXPECT_EQ(ReadBytes(Folder() / "later"), "made");
}

TEST_F(Outputs, WhatCannotBeWrittenIsAnErrorAndLeavesNothing)
{
    fs::create_directory(Folder() / "folder");
    WriteBytes(Folder() / "f", "x");
    for (const std::string& name : {File("folder"), File("nowhere/f"), File("f/g")})
        EXPECT_THROW(Write(name, "bytes"), Failure) << name;
    EXPECT_EQ(FilesLeft(), (std::vector<std::string>{"f", "folder"}));
    EXPECT_TRUE(fs::is_empty(Folder() / "folder"));
}

TEST(CommandLine, SaysWhatIsWrongWithIt)
{
    const std::pair<std::vector<std::string>, const char*> rows[] = {
        {{"frob"}, "\"frob\" is no command; known are printer, devmode, ticket"},
        {{"printer", "frob"}, "\"frob\" is no command; known are add"},
        {{"ticket", "show", ""}, "TICKET: no file is named"},
        {{"--store", "", "printer", "list"}, "--store: no file is named"},
        {{}, ""},
        {{"devmode", "set", "X"}, ""},
        {{"ticket", "from-devmode", "--printer", "X", "-", "--base", "-"}, ""},
        {{"ticket", "to-devmode", "--printer", "X", "--devmode", "-", "-", "-o", "Y"}, ""},
        {{"ticket", "expand", "t.xml", "--printer", "p", "-o", ""}, "-o: no file is named"},
        {{"capabilities", "--printer", "p", "--ticket", "-", "--base", "-"}, "cannot both be standard input"},
        {{"capabilities", "--printer", "p", "--base-only", "--base", "b.xml"}, "--base excludes --base-only"},
    };
    for (const auto& [arguments, error] : rows)
        EXPECT_TRUE(IsRefused(RunHost(arguments), error, 2)) << testing::PrintToString(arguments);
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

TEST_F(Outputs, TheProgramItselfPassesBytesAndStatus)
{
    InstallTestPrinter();
    WriteDevmode("d.dm");
    const std::string devmode = ReadBytes(Folder() / "d.dm");
    // 10 is a line feed, which a text stream would not leave alone.
    EXPECT_EQ(RunChild("devmode set \"" + File("d.dm") + "\" --set dmCopies=10 > \"" + File("out.dm") + "\""), 0);
    const std::string changed = ReadBytes(Folder() / "out.dm");
    ASSERT_EQ(changed.size(), devmode.size());
    EXPECT_NE(changed, devmode);
    EXPECT_EQ(OutputOf({"devmode", "set", File("d.dm"), "--set", "dmCopies=10"}), changed);

    EXPECT_TRUE(IsRefused(RunHost({"devmode", "show", File(".")}), ": is a folder"));
    EXPECT_TRUE(IsRefused(RunHost({"devmode", "show", "a\nb"}), "reading: a b: ERROR_FILE_NOT_FOUND (2)"));
    EXPECT_NE(RunChild("devmode show \"" + File("missing") + "\" 2> \"" + File("errors") + "\""), 0);
    EXPECT_TRUE(IsOneErrorLine(ReadBytes(Folder() / "errors"), "ERROR_FILE_NOT_FOUND (2)"));
}

} // namespace
