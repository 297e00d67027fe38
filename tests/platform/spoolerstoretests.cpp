// The store below the spooler (Linux): shared by processes and threads, refused when damaged, unharmed by faults.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <set>
#include <thread>

#include "tests/platform/eachfault.h"
#include "tests/platform/spoolerfixture.h"

namespace
{

namespace fs = std::filesystem;

WideString Numbered(const char* text, int number)
{
    return fs::path(text + std::to_string(number)).u16string();
}

bool SetNumber(HANDLE printer, const WideString& name, int number)
{
    return SetPrinterDataExW(printer, W("Numbers"), name.c_str(), REG_DWORD, reinterpret_cast<BYTE*>(&number),
                             sizeof(number)) == ERROR_SUCCESS;
}

// -1 for none.
int GetNumber(HANDLE printer, const WideString& name)
{
    int number = -1;
    DWORD needed = 0;
    GetPrinterDataExW(printer, W("Numbers"), name.c_str(), nullptr, reinterpret_cast<BYTE*>(&number), sizeof(number),
                      &needed);
    return number;
}

bool Delete(const WCHAR* printer)
{
    return DeletePrinter(Open(printer, PRINTER_ALL_ACCESS).get()) != FALSE;
}

DWORD ErrorOfListing()
{
    DWORD needed = 0;
    DWORD count = 0;
    return ErrorOf(EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, nullptr, 0, &needed, &count));
}

// Runs the work, with its number, in as many children of this process; true when it returns true in all of them.
bool SucceedsInChildren(int count, const std::function<bool(int)>& work)
{
    std::vector<pid_t> children;
    for (int child = 0; child < count; ++child)
    {
        children.push_back(fork());
        if (children.back() == 0)
            _exit(work(child) ? 0 : 1);
    }
    const auto succeeded = [status = 0](pid_t child) mutable
    {
        return waitpid(child, &status, 0) > 0 && status == 0;
    };
    return std::count_if(children.begin(), children.end(), succeeded) == count;
}

} // namespace

class SpoolerStore : public SpoolerTest
{
protected:
    // The store's file as another process left it: a new file under the same name, without a log beside it.
    void ReplaceFile(const std::string& content) const
    {
        const fs::path replacement = Scratch() / "replacement";
        std::ofstream(replacement, std::ios::binary) << content;
        fs::rename(replacement, Store() / "spooler.db");
        fs::remove(Store() / "spooler.db-wal");
        fs::remove(Store() / "spooler.db-shm");
    }

    // All that the calls of these tests can change.
    static std::set<WideString> State()
    {
        const PrinterOwner printer = Open(kPrinter);
        std::set<WideString> state = {PrinterAnswer<PRINTER_INFO_2W>(printer.get(), 2)->pComment};
        for (const WideString& name : PrinterNames())
            state.insert(W("printer ") + name);
        for (const auto& entry : fs::directory_iterator(Store() / "drivers/x64/3"))
            state.insert(W("file ") + entry.path().filename().u16string());
        for (const WCHAR* const name : {W("n"), W("m")})
            state.insert(name + Numbered(" ", GetNumber(printer.get(), name)));
        return state;
    }

    // What failed has changed nothing, and the operation succeeds right after. A question has nothing to undo.
    static void ExpectUnharmed(
        const char* what, const std::function<bool()>& run, const std::function<bool()>& undo = [] { return true; })
    {
        SCOPED_TRACE(what);
        const auto before = State();
        ExpectEachFaultHarmless(run,
                                [&](bool succeeded) { return (succeeded || (State() == before && run())) && undo(); });
    }
};

TEST_F(SpoolerStore, LosesNothingBetweenProcesses)
{
    constexpr int kProcesses = 6;
    constexpr int kRounds = 50;
    const PrinterOwner shared = InstallPrinter();
    // Each adds printers, deletes every second one, and sets numbers in a printer that all share.
    const auto doShare = [](int process)
    {
        const PrinterOwner common = Open(kPrinter, PRINTER_ALL_ACCESS);
        bool succeeded = true;
        for (int number = process * kRounds; number < (process + 1) * kRounds; ++number)
        {
            const PrinterOwner printer = Add(PrinterInfo(Numbered("Printer ", number).c_str()));
            succeeded &= SetNumber(printer.get(), W("own"), number) &&
                         SetNumber(common.get(), Numbered("n", number), number) &&
                         (number % 2 != 0 || DeletePrinter(printer.get()));
        }
        return succeeded;
    };
    EXPECT_TRUE(SucceedsInChildren(kProcesses, doShare));
    EXPECT_EQ(PrinterNames().size(), std::size_t{1 + kProcesses * kRounds / 2});
    for (int number = 0; number < kProcesses * kRounds; ++number)
        EXPECT_EQ(GetNumber(shared.get(), Numbered("n", number)), number);
}

TEST_F(SpoolerStore, IsMadeByManyProcessesAtOnce)
{
    UseStore(Scratch() / "fresh");
    EXPECT_TRUE(SucceedsInChildren(6, [](int) { return ErrorOfListing() == ERROR_SUCCESS; }));
}

TEST_F(SpoolerStore, IsTheOneInWhichAPrinterWasOpened)
{
    const PrinterOwner printer = InstallPrinter();
    UseStore(Scratch() / "other");
    EXPECT_TRUE(PrinterNames().empty());
    EXPECT_TRUE(SetNumber(printer.get(), W("n"), 7));
    EXPECT_EQ(GetNumber(printer.get(), W("n")), 7);

    // Handles of a deleted printer do not reach the next one of its name.
    UseStore(Store());
    ASSERT_TRUE(DeletePrinter(printer.get()));
    const PrinterOwner second = InstallPrinter();
    EXPECT_EQ(ErrorOf(DeletePrinter(printer.get())), ERROR_PRINTER_DELETED);
    EXPECT_EQ(DeletePrinterDataExW(printer.get(), W("Numbers"), W("n")), ERROR_PRINTER_DELETED);

    // A folder that is made anew is a new store.
    fs::remove_all(Store());
    EXPECT_TRUE(PrinterNames().empty());
    EXPECT_FALSE(SetNumber(second.get(), W("n"), 8));
}

// A disk that is full, as a limit on the size of files: what does not fit is refused, what was there stays.
TEST_F(SpoolerStore, IsUnchangedByAWriteThatFails)
{
    const PrinterOwner printer = InstallPrinter();
    ASSERT_TRUE(SetNumber(printer.get(), W("n"), 1));
    const auto before = State();
    const auto isRefused = [&](int)
    {
        std::vector<BYTE> large(4'000'000, 1);
        const WideString source = SourceFile("tvlarge.json", std::string(3'000'000, 'x').c_str());
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {2'000'000, 2'000'000};
        setrlimit(RLIMIT_FSIZE, &limit);
        return SetPrinterDataExW(printer.get(), W("Numbers"), W("n"), REG_BINARY, large.data(),
                                 static_cast<DWORD>(large.size())) != ERROR_SUCCESS &&
               !InstallDriver(W("Large"), source.c_str()) && GetNumber(printer.get(), W("n")) == 1;
    };
    EXPECT_TRUE(SucceedsInChildren(1, isRefused));
    EXPECT_EQ(State(), before);
}

// A package whose last file finds a folder in its place: the files before it go back to what they were.
TEST_F(SpoolerStore, KeepsADriversFilesWholeWhenOneCannotBeReplaced)
{
    const fs::path folder = Store() / "drivers/x64/3";
    fs::remove(folder / "tvtwo.txt");
    fs::create_directories(folder / "tvtwo.txt" / "below");
    fs::remove(folder / "tvone.txt");
    EXPECT_FALSE(InstallDriver(kDriver, SourceFile("newer/tvplatform.json", "a newer model").c_str()));
    std::set<std::string> files;
    for (const auto& entry : fs::directory_iterator(folder))
        files.insert(entry.path().filename());
    EXPECT_EQ(files, (std::set<std::string>{"spooler_sample.so", "tvplatform.drv", "tvplatform.json", "tvtwo.txt"}));
    EXPECT_EQ(Content(folder / "tvplatform.json"), "the model");
}

TEST_F(SpoolerStore, ThatIsDamagedIsRefusedOrReadAndNeverWorse)
{
    ASSERT_TRUE(SetNumber(InstallPrinter().get(), W("n"), 1));
    // The connection that closes last brings in the log, and this process's closes when it has used some other stores.
    for (int other = 0; other < 4; ++other)
    {
        UseStore(Scratch() / std::to_string(other));
        EXPECT_TRUE(PrinterNames().empty());
    }
    UseStore(Store());
    const std::string whole = Content(Store() / "spooler.db");
    std::string later = whole;
    later[63] = 99; // the schema's version, big-endian at 60
    const std::pair<std::string, DWORD> files[] = {
        {whole, ERROR_INSUFFICIENT_BUFFER},
        {"no database, and longer than the header of one would be: " + std::string(100, '.'), ERROR_INVALID_DATA},
        {whole.substr(0, 5000), ERROR_INVALID_DATA},
        {later, ERROR_NOT_SUPPORTED},
    };
    for (const auto& [content, error] : files)
    {
        ReplaceFile(content);
        EXPECT_EQ(ErrorOfListing(), error);
    }

    // Any byte may be wrong: each call answers something, and reads and writes only its own memory.
    for (std::size_t at = 16; at < whole.size(); at += whole.size() / 60)
    {
        std::string damaged = whole;
        damaged[at] = static_cast<char>(~damaged[at]);
        ReplaceFile(damaged);
        const PrinterOwner printer = Open(kPrinter, PRINTER_ALL_ACCESS);
        PrinterAnswer<PRINTER_INFO_2W>(printer.get(), 2);
        DriverAnswer<DRIVER_INFO_6W>(printer.get(), 6);
        GetNumber(printer.get(), W("n"));
        SetNumber(printer.get(), W("m"), 2);
    }
    ReplaceFile(whole);
    EXPECT_EQ(PrinterNames(), std::vector<WideString>{kPrinter});
}

TEST_F(SpoolerStore, IsUnharmedByFaults)
{
    const PrinterOwner printer = InstallPrinter();
    ASSERT_TRUE(SetNumber(printer.get(), W("n"), 1));
    InstallPrinter(W("Doomed"));
    const WideString sourceFile = SourceFile("tvfault.json", "x");
    BYTE room[16'384] = {};
    DWORD needed = 0;
    PRINTER_INFO_2W changed = PrinterInfo();
    changed.pComment = Mutable(W("changed"));
    ExpectUnharmed("GetPrinterDriverW",
                   [&] { return GetPrinterDriverW(printer.get(), nullptr, 6, room, sizeof(room), &needed); });
    ExpectUnharmed("GetPrinterDataExW", [] { return GetNumber(Open(kPrinter).get(), W("n")) == 1; });
    ExpectUnharmed("DeviceCapabilitiesW",
                   [] { return DeviceCapabilitiesW(kPrinter, nullptr, DC_COPIES, nullptr, nullptr) > 0; });
    ExpectUnharmed(
        "SetPrinterDataExW", [&] { return SetNumber(printer.get(), W("m"), 2); },
        [&] { return DeletePrinterDataExW(printer.get(), W("Numbers"), W("m")) == ERROR_SUCCESS; });
    ExpectUnharmed(
        "AddPrinterW", [] { return Add(PrinterInfo(W("Second"))) != nullptr; }, [] { return Delete(W("Second")); });
    ExpectUnharmed(
        "DeletePrinter", [] { return Delete(W("Doomed")); }, [] { return Add(PrinterInfo(W("Doomed"))) != nullptr; });
    ExpectUnharmed(
        "SetPrinterW", [&] { return SetInfo(printer.get(), changed); },
        [&] { return SetInfo(printer.get(), PrinterInfo()); });
    ExpectUnharmed(
        "AddPrinterDriverExW", [&] { return InstallDriver(W("Third"), sourceFile.c_str()); },
        [] { return DeletePrinterDriverExW(nullptr, nullptr, Mutable(W("Third")), DPD_DELETE_UNUSED_FILES, 0); });
}
