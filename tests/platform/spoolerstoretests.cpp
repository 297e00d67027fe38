// The store below the spooler and the registry (Linux): shared by processes and threads, refused when it cannot be
// trusted, unharmed by faults.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <fstream>
#include <functional>
#include <new>
#include <optional>
#include <set>
#include <thread>

#include "tests/platform/spoolerfixture.h"
#include "tests/platform/spoolersample.h"
#include "winport/faultinjection.h"

using namespace spoolertests;

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

std::optional<int> GetNumber(HANDLE printer, const WideString& name)
{
    int number = 0;
    DWORD needed = 0;
    if (GetPrinterDataExW(printer, W("Numbers"), name.c_str(), nullptr, reinterpret_cast<BYTE*>(&number),
                          sizeof(number), &needed) != ERROR_SUCCESS)
        return std::nullopt;
    return number;
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
    bool succeeded = true;
    for (const pid_t child : children)
    {
        int status = 0;
        succeeded &= waitpid(child, &status, 0) > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }
    return succeeded;
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

    // The store's whole content: the connection that closes last brings in the log, and this process's closes when it
    // has used some other stores.
    std::string FileContent() const
    {
        for (int other = 0; other < 4; ++other)
        {
            UseStore(Scratch() / std::to_string(other));
            EXPECT_TRUE(PrinterNames().empty());
        }
        UseStore(Store());
        EXPECT_FALSE(fs::exists(Store() / "spooler.db-wal"));
        return Content(Store() / "spooler.db");
    }

    // All that the calls of these tests can change.
    std::set<WideString> State(HANDLE printer) const
    {
        std::set<WideString> state;
        for (const WideString& name : PrinterNames())
            state.insert(W("printer ") + name);
        state.insert(W("comment ") + WideString(PrinterAnswer<PRINTER_INFO_2W>(printer, 2)->pComment));
        for (const auto& entry : fs::directory_iterator(Store() / "drivers/x64/3"))
            state.insert(W("file ") + entry.path().filename().u16string());
        for (const WCHAR* const name : {W("n"), W("m")})
            state.insert(name + Numbered(" ", GetNumber(printer, name).value_or(-1)));
        DWORD needed = 0;
        GetFormW(printer, Mutable(W("Card")), 1, nullptr, 0, &needed);
        HKEY key = nullptr;
        const LSTATUS opened = RegOpenKeyExW(HKEY_CURRENT_USER, W("A"), 0, KEY_READ, &key);
        RegCloseKey(key);
        state.insert(Numbered("size of the form ", static_cast<int>(needed)) + Numbered(", key ", opened));
        return state;
    }
};

TEST_F(SpoolerStore, LosesNothingBetweenProcesses)
{
    constexpr int kProcesses = 6;
    constexpr int kRounds = 10;
    const PrinterOwner shared = InstallPrinter();
    // Each adds printers, deletes every second one, and sets numbers in a printer that all share.
    const auto doShare = [](int process)
    {
        const PrinterOwner common = Open(kPrinter, PRINTER_ALL_ACCESS);
        for (int number = process * 100; number < process * 100 + kRounds; ++number)
        {
            const PrinterOwner printer = Add(PrinterInfo(Numbered("Printer ", number).c_str()));
            if (!SetNumber(printer.get(), W("own"), number) ||
                !SetNumber(common.get(), Numbered("n", number), number) ||
                (number % 2 == 0 && !DeletePrinter(printer.get())))
                return false;
        }
        return true;
    };
    EXPECT_TRUE(SucceedsInChildren(kProcesses, doShare));
    EXPECT_EQ(PrinterNames().size(), std::size_t{1 + kProcesses * kRounds / 2});
    for (int number = 0; number < kProcesses * 100; number += number % 100 == kRounds - 1 ? 101 - kRounds : 1)
    {
        SCOPED_TRACE(number);
        EXPECT_EQ(GetNumber(shared.get(), Numbered("n", number)), number);
        const PrinterOwner own = Open(Numbered("Printer ", number).c_str());
        ASSERT_EQ(own != nullptr, number % 2 == 1);
        EXPECT_TRUE(own == nullptr || GetNumber(own.get(), W("own")) == number);
    }
}

TEST_F(SpoolerStore, IsMadeByManyProcessesAtOnce)
{
    UseStore(Scratch() / "fresh");
    const auto makeKey = [](int process)
    {
        HKEY key = nullptr;
        return RegCreateKeyExW(HKEY_CURRENT_USER, (W("Shared") + Numbered("\\", process)).c_str(), 0, nullptr, 0,
                               KEY_ALL_ACCESS, nullptr, &key, nullptr) == 0;
    };
    EXPECT_TRUE(SucceedsInChildren(6, makeKey));
    for (int process = 0; process < 6; ++process)
        EXPECT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, (W("Shared") + Numbered("\\", process)).c_str()), 0) << process;
}

TEST_F(SpoolerStore, IsSharedByThreads)
{
    const PrinterOwner printer = InstallPrinter();
    const auto work = [&](int first)
    {
        for (int number = first; number < first + 50; ++number)
        {
            EXPECT_TRUE(SetNumber(printer.get(), Numbered("n", number), number));
            EXPECT_EQ(GetNumber(Open(kPrinter).get(), Numbered("n", number)), number);
            EXPECT_EQ(DeviceCapabilitiesW(kPrinter, nullptr, DC_COPIES, nullptr, nullptr), spoolersample::kCopies);
        }
    };
    std::thread other(work, 0);
    work(100);
    other.join();
}

TEST_F(SpoolerStore, IsTheOneInWhichAPrinterWasOpened)
{
    const PrinterOwner printer = InstallPrinter();
    UseStore(Scratch() / "other");
    EXPECT_TRUE(PrinterNames().empty());
    EXPECT_EQ(Open(kPrinter), nullptr);
    EXPECT_TRUE(SetNumber(printer.get(), W("n"), 7));
    EXPECT_EQ(GetNumber(printer.get(), W("n")), 7);

    // Handles of a deleted printer do not reach the next one of its name.
    UseStore(Store());
    const PrinterOwner reader = Open(kPrinter);
    ASSERT_TRUE(DeletePrinter(printer.get()));
    const PrinterOwner second = InstallPrinter();
    DWORD needed = 0;
    EXPECT_EQ(ErrorOf(GetPrinterW(reader.get(), 2, nullptr, 0, &needed)), ERROR_PRINTER_DELETED);
    EXPECT_EQ(ErrorOf(DeletePrinter(printer.get())), ERROR_PRINTER_DELETED);

    // A folder that is made anew is a new store.
    fs::remove_all(Store());
    EXPECT_TRUE(PrinterNames().empty());
    EXPECT_FALSE(SetNumber(second.get(), W("n"), 8));
}

TEST_F(SpoolerStore, ThatCannotBeMadeIsRefusedWithTheReason)
{
    std::ofstream(Scratch() / "file") << "not a folder";
    fs::create_directories(Scratch() / "taken" / "spooler.db");
    const std::pair<fs::path, DWORD> places[] = {
        {Scratch() / "file" / "below", ERROR_PATH_NOT_FOUND},
        {Scratch() / "taken", ERROR_ACCESS_DENIED},
        {"/proc/nowhere", ERROR_PATH_NOT_FOUND},
        {Scratch() / std::string(300, 'x'), ERROR_BAD_PATHNAME},
    };
    for (const auto& [folder, error] : places)
    {
        SCOPED_TRACE(folder);
        UseStore(folder);
        EXPECT_EQ(Add(PrinterInfo(W("Other"))), nullptr);
        EXPECT_EQ(GetLastError(), error);
        EXPECT_EQ(ErrorOf(InstallDriver()), error);
        HKEY key = nullptr;
        EXPECT_EQ(static_cast<DWORD>(RegOpenKeyExW(HKEY_CURRENT_USER, W("Software"), 0, KEY_READ, &key)), error);
    }
    EXPECT_EQ(fs::file_size(Scratch() / "file"), std::strlen("not a folder"));
}

// A disk that is full, as a limit on the size of files: what does not fit is refused, what was there stays.
TEST_F(SpoolerStore, IsUnchangedByAWriteThatFails)
{
    const PrinterOwner printer = InstallPrinter();
    ASSERT_TRUE(SetNumber(printer.get(), W("n"), 1));
    const auto before = State(printer.get());
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
    EXPECT_EQ(State(printer.get()), before);
    EXPECT_TRUE(SetNumber(printer.get(), W("n"), 2));
}

// A package whose last file finds a folder in its place: the files before it go back to what they were.
TEST_F(SpoolerStore, KeepsADriversFilesWholeWhenOneCannotBeReplaced)
{
    const fs::path folder = Store() / "drivers/x64/3";
    fs::remove(folder / "tvtwo.txt");
    fs::create_directories(folder / "tvtwo.txt" / "below");
    fs::remove(folder / "tvone.txt");
    const WideString newer = SourceFile("newer/tvplatform.json", "a newer model");
    EXPECT_FALSE(InstallDriver(kDriver, newer.c_str()));
    std::set<std::string> files;
    for (const auto& entry : fs::directory_iterator(folder))
        files.insert(entry.path().filename());
    EXPECT_EQ(files, (std::set<std::string>{"spooler_sample.so", "tvplatform.drv", "tvplatform.json", "tvtwo.txt"}));
    EXPECT_EQ(Content(folder / "tvplatform.json"), "the model");
}

TEST_F(SpoolerStore, ThatIsDamagedIsRefusedOrReadAndNeverWorse)
{
    ASSERT_TRUE(SetNumber(InstallPrinter().get(), W("n"), 1));
    const std::string whole = FileContent();
    ASSERT_GT(whole.size(), 8192u);
    const auto errorOfListing = []
    {
        DWORD needed = 0;
        DWORD count = 0;
        return ErrorOf(EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, nullptr, 0, &needed, &count));
    };
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
        EXPECT_EQ(errorOfListing(), error);
    }

    // Any byte may be wrong: each call answers something, and reads and writes only its own memory.
    for (std::size_t at = 16; at < whole.size(); at += whole.size() / 60)
    {
        std::string damaged = whole;
        damaged[at] = static_cast<char>(~damaged[at]);
        ReplaceFile(damaged);
        errorOfListing();
        const PrinterOwner printer = Open(kPrinter, PRINTER_ALL_ACCESS);
        PrinterAnswer<PRINTER_INFO_2W>(printer.get(), 2);
        DriverAnswer<DRIVER_INFO_6W>(printer.get(), 6);
        GetNumber(printer.get(), W("n"));
        SetNumber(printer.get(), W("m"), 2);
    }
    ReplaceFile(whole);
    EXPECT_EQ(PrinterNames(), std::vector<WideString>{kPrinter});
}

// Every platform call and every allocation of an operation fails in turn. What failed has changed nothing, and the
// operation succeeds right after.
TEST_F(SpoolerStore, IsUnharmedByFaults)
{
    const PrinterOwner owner = InstallPrinter();
    HANDLE const printer = owner.get();
    ASSERT_TRUE(SetNumber(printer, W("n"), 1));
    InstallPrinter(W("Doomed"));
    const WideString sourceFile = SourceFile("tvfault.json", "x");
    std::vector<BYTE> buffer(16'384);
    BYTE* const room = buffer.data();
    constexpr DWORD kRoom = 16'384;
    DWORD needed = 0;
    DWORD count = 0;
    FORM_INFO_1W form = {FORM_USER, Mutable(W("Card")), {1000, 2000}, {0, 0, 1000, 2000}};
    PRINTER_INFO_2W changed = PrinterInfo();
    changed.pComment = Mutable(W("changed"));
    const auto remove = [](const WCHAR* name)
    {
        return DeletePrinter(Open(name, PRINTER_ALL_ACCESS).get()) != FALSE;
    };
    const auto makeKey = []
    {
        HKEY key = nullptr;
        const bool made =
            RegCreateKeyExW(HKEY_CURRENT_USER, W("A\\B"), 0, nullptr, 0, KEY_READ, nullptr, &key, nullptr) == 0;
        RegCloseKey(key);
        return made;
    };

    struct Operation
    {
        const char* what;
        std::function<bool()> run;
        std::function<bool()> undo; // null for a question
    };
    const Operation operations[] = {
        {"GetPrinterDriverW",
         [&] { return GetPrinterDriverW(printer, nullptr, 6, room, kRoom, &needed) != FALSE; },
         {}},
        {"EnumPrintersW",
         [&] { return EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, room, kRoom, &needed, &count) != FALSE; },
         {}},
        {"EnumFormsW", [&] { return EnumFormsW(printer, 1, room, kRoom, &needed, &count) != FALSE; }, {}},
        {"OpenPrinterW", [&] { return Open(kPrinter) != nullptr; }, {}},
        {"GetPrinterDataExW", [&] { return GetNumber(printer, W("n")) == 1; }, {}},
        {"DeviceCapabilitiesW",
         [&] { return DeviceCapabilitiesW(kPrinter, nullptr, DC_COPIES, nullptr, nullptr) > 0; },
         {}},
        {"SetPrinterDataExW", [&] { return SetNumber(printer, W("m"), 2); },
         [&]
         {
             return DeletePrinterDataExW(printer, W("Numbers"), W("m")) == ERROR_SUCCESS;
         }},
        {"AddPrinterW", [&] { return Add(PrinterInfo(W("Second"))) != nullptr; },
         [&]
         {
             return remove(W("Second"));
         }},
        {"DeletePrinter", [&] { return remove(W("Doomed")); },
         [&]
         {
             return Add(PrinterInfo(W("Doomed"))) != nullptr;
         }},
        {"SetPrinterW", [&] { return SetInfo(printer, changed); },
         [&]
         {
             return SetInfo(printer, PrinterInfo());
         }},
        {"AddFormW", [&] { return AddFormW(printer, 1, reinterpret_cast<BYTE*>(&form)) != FALSE; },
         [&]
         {
             return DeleteFormW(printer, form.pName) != FALSE;
         }},
        {"AddPrinterDriverExW", [&] { return InstallDriver(W("Third"), sourceFile.c_str()) != FALSE; },
         [&]
         {
             return DeletePrinterDriverExW(nullptr, nullptr, Mutable(W("Third")), DPD_DELETE_UNUSED_FILES, 0) != FALSE;
         }},
        {"RegCreateKeyExW", makeKey,
         []
         {
             return RegDeleteTreeW(HKEY_CURRENT_USER, W("A")) == 0;
         }},
    };
    // The operations of the tests allocate, too: a fault that they meet themselves is a failure like the callee's.
    const auto runsDespiteFault = [](const Operation& operation)
    {
        try
        {
            return operation.run();
        }
        catch (const std::bad_alloc&)
        {
            return false;
        }
    };
    const auto before = State(printer);
    for (const Operation& operation : operations)
        for (const auto kind : {winport::FaultKind::PlatformCall, winport::FaultKind::Allocation})
        {
            SCOPED_TRACE(operation.what);
            bool fired = kind == winport::FaultKind::PlatformCall || TVPT_ALLOCATION_FAULTS != 0;
            for (unsigned nth = 1; fired; ++nth)
            {
                winport::ArmFault(kind, nth);
                const bool succeeded = runsDespiteFault(operation);
                fired = winport::DisarmFault(kind);
                ASSERT_TRUE(succeeded || fired) << nth;
                if (!succeeded)
                {
                    ASSERT_EQ(State(printer), before) << nth;
                    ASSERT_TRUE(operation.run()) << nth;
                }
                ASSERT_TRUE(!operation.undo || operation.undo()) << nth;
                ASSERT_LT(nth, 5000u);
            }
        }
}
