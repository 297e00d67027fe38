// The store below the spooler and the registry (Linux): shared by processes and threads, refused when it cannot be
// trusted, unharmed by faults.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <new>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "tests/platform/spoolerfixture.h"
#include "tests/platform/spoolersample.h"
#include "winport/faultinjection.h"

using namespace spoolertests;

namespace
{

namespace fs = std::filesystem;

WideString Numbered(const char* text, int number)
{
    const std::string narrow = text + std::to_string(number);
    return {narrow.begin(), narrow.end()};
}

DWORD SetNumber(HANDLE printer, const WideString& name, DWORD number)
{
    return SetPrinterDataExW(printer, W("Numbers"), name.c_str(), REG_DWORD, reinterpret_cast<BYTE*>(&number),
                             sizeof(number));
}

std::optional<DWORD> GetNumber(HANDLE printer, const WideString& name)
{
    DWORD number = 0;
    DWORD needed = 0;
    if (GetPrinterDataExW(printer, W("Numbers"), name.c_str(), nullptr, reinterpret_cast<BYTE*>(&number),
                          sizeof(number), &needed) != ERROR_SUCCESS)
        return std::nullopt;
    return number;
}

// Runs in a child of this process; true when the work returns true there.
class Child
{
public:
    explicit Child(const std::function<bool()>& work) : m_process(fork())
    {
        if (m_process == 0)
            _exit(work() ? 0 : 1);
    }
    Child(Child&& other) noexcept : m_process(std::exchange(other.m_process, -1))
    {
    }
    ~Child()
    {
        if (m_process > 0)
            Succeeded();
    }

    bool Succeeded()
    {
        int status = 0;
        return waitpid(std::exchange(m_process, -1), &status, 0) > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

private:
    pid_t m_process;
};

// One process's share: printers added, some deleted again, and numbers in a printer that all share.
bool DoShare(int process, int rounds)
{
    const PrinterOwner shared = PrinterOwner::Open(kPrinter, PRINTER_ALL_ACCESS);
    for (int round = 0; round < rounds; ++round)
    {
        const int number = process * 100 + round;
        PRINTER_INFO_2W info = PrinterInfo();
        const WideString name = Numbered("Printer ", number);
        info.pPrinterName = Mutable(name.c_str());
        const PrinterOwner printer(AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&info)));
        if (printer.Get() == nullptr ||
            SetNumber(printer.Get(), W("own"), static_cast<DWORD>(number)) != ERROR_SUCCESS ||
            SetNumber(shared.Get(), Numbered("n", number), static_cast<DWORD>(number)) != ERROR_SUCCESS)
            return false;
        if (round % 2 == 0 && !DeletePrinter(printer.Get()))
            return false;
    }
    return true;
}

// The operations of the tests allocate, too: a fault that they meet themselves is a failure like the callee's.
bool RunsDespiteFault(const std::function<bool()>& operation)
{
    try
    {
        return operation();
    }
    catch (const std::bad_alloc&)
    {
        return false;
    }
}

} // namespace

class SpoolerStore : public SpoolerTest
{
protected:
    void TearDown() override
    {
        SetEnvironmentVariableW(W("TVPT_STORE"), Store().u16string().c_str());
        SpoolerTest::TearDown();
    }

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
            SetEnvironmentVariableW(W("TVPT_STORE"), (Scratch() / std::to_string(other)).u16string().c_str());
            EXPECT_TRUE(PrinterNames().empty());
        }
        SetEnvironmentVariableW(W("TVPT_STORE"), Store().u16string().c_str());
        EXPECT_FALSE(fs::exists(Store() / "spooler.db-wal"));
        std::ifstream stream(Store() / "spooler.db", std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
};

TEST_F(SpoolerStore, LosesNothingBetweenProcesses)
{
    constexpr int kProcesses = 6;
    constexpr int kRounds = 10;
    const PrinterOwner shared = InstallPrinter();
    std::vector<Child> children;
    for (int process = 0; process < kProcesses; ++process)
        children.emplace_back([process] { return DoShare(process, kRounds); });
    for (Child& child : children)
        EXPECT_TRUE(child.Succeeded());

    EXPECT_EQ(PrinterNames().size(), std::size_t{1 + kProcesses * kRounds / 2});
    for (int process = 0; process < kProcesses; ++process)
    {
        for (int round = 0; round < kRounds; ++round)
        {
            const int number = process * 100 + round;
            SCOPED_TRACE(number);
            EXPECT_EQ(GetNumber(shared.Get(), Numbered("n", number)), static_cast<DWORD>(number));
            const PrinterOwner own = PrinterOwner::Open(Numbered("Printer ", number).c_str());
            EXPECT_EQ(own.Get() != nullptr, round % 2 == 1);
            if (own.Get() != nullptr)
            {
                EXPECT_EQ(GetNumber(own.Get(), W("own")), static_cast<DWORD>(number));
            }
        }
    }
}

TEST_F(SpoolerStore, IsMadeByManyProcessesAtOnce)
{
    const fs::path fresh = Scratch() / "fresh";
    SetEnvironmentVariableW(W("TVPT_STORE"), fresh.u16string().c_str());
    std::vector<Child> children;
    for (int process = 0; process < 6; ++process)
    {
        children.emplace_back(
            [&, process]
            {
                const WCHAR* const path = W("Software\\Shared");
                HKEY key = nullptr;
                const auto number = static_cast<DWORD>(process);
                return RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                                       nullptr) == 0 &&
                       RegSetValueExW(key, Numbered("v", process).c_str(), 0, REG_DWORD,
                                      reinterpret_cast<const BYTE*>(&number), sizeof(number)) == 0;
            });
    }
    for (Child& child : children)
        EXPECT_TRUE(child.Succeeded());
    HKEY key = nullptr;
    DWORD values = 0;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, W("Software\\Shared"), 0, KEY_READ, &key), 0);
    EXPECT_EQ(RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &values, nullptr, nullptr,
                               nullptr, nullptr),
              0);
    EXPECT_EQ(values, 6u);
    RegCloseKey(key);
}

TEST_F(SpoolerStore, IsSharedByThreads)
{
    const PrinterOwner printer = InstallPrinter();
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
    {
        threads.emplace_back(
            [&, thread]
            {
                for (int round = 0; round < 25; ++round)
                {
                    const int number = thread * 100 + round;
                    EXPECT_EQ(SetNumber(printer.Get(), Numbered("n", number), static_cast<DWORD>(number)),
                              ERROR_SUCCESS);
                    const PrinterOwner reader = PrinterOwner::Open(kPrinter);
                    EXPECT_EQ(GetNumber(reader.Get(), Numbered("n", number)), static_cast<DWORD>(number));
                    EXPECT_EQ(DeviceCapabilitiesW(kPrinter, nullptr, DC_COPIES, nullptr, nullptr),
                              spoolersample::kCopies);
                }
            });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (int number : {0, 24, 124, 324})
        EXPECT_EQ(GetNumber(printer.Get(), Numbered("n", number)), static_cast<DWORD>(number));
}

TEST_F(SpoolerStore, IsTheOneInWhichAPrinterWasOpened)
{
    const PrinterOwner printer = InstallPrinter();
    const fs::path other = Scratch() / "other";
    SetEnvironmentVariableW(W("TVPT_STORE"), other.u16string().c_str());
    EXPECT_TRUE(PrinterNames().empty());
    EXPECT_EQ(PrinterOwner::Open(kPrinter).Get(), nullptr);
    EXPECT_EQ(SetNumber(printer.Get(), W("n"), 7), ERROR_SUCCESS);
    EXPECT_EQ(GetNumber(printer.Get(), W("n")), 7u);

    // A folder that is made anew is a new store.
    fs::remove_all(Store());
    SetEnvironmentVariableW(W("TVPT_STORE"), Store().u16string().c_str());
    EXPECT_TRUE(PrinterNames().empty());
    EXPECT_EQ(SetNumber(printer.Get(), W("n"), 8), ERROR_PRINTER_DELETED);
}

TEST_F(SpoolerStore, TellsHandlesOfADeletedPrinterSo)
{
    const PrinterOwner printer = InstallPrinter();
    const PrinterOwner reader = PrinterOwner::Open(kPrinter);
    ASSERT_TRUE(DeletePrinter(printer.Get()));
    const PrinterOwner second = InstallPrinter();
    DWORD needed = 0;
    EXPECT_FALSE(GetPrinterW(reader.Get(), 2, nullptr, 0, &needed));
    EXPECT_EQ(GetLastError(), ERROR_PRINTER_DELETED);
    EXPECT_FALSE(DeletePrinter(printer.Get()));
    EXPECT_EQ(GetLastError(), ERROR_PRINTER_DELETED);
    EXPECT_EQ(SetNumber(printer.Get(), W("n"), 1), ERROR_PRINTER_DELETED);
}

TEST_F(SpoolerStore, ThatCannotBeMadeIsRefusedWithTheReason)
{
    std::ofstream(Scratch() / "file") << "not a folder";
    fs::create_directories(Scratch() / "taken" / "spooler.db");
    const struct
    {
        fs::path folder;
        DWORD error;
    } places[] = {
        {Scratch() / "file" / "below", ERROR_PATH_NOT_FOUND},
        {Scratch() / "taken", ERROR_ACCESS_DENIED},
        {"/proc/nowhere", ERROR_PATH_NOT_FOUND},
        {Scratch() / std::string(300, 'x'), ERROR_BAD_PATHNAME},
    };
    for (const auto& place : places)
    {
        SCOPED_TRACE(place.folder);
        SetEnvironmentVariableW(W("TVPT_STORE"), place.folder.u16string().c_str());
        PRINTER_INFO_2W info = PrinterInfo();
        EXPECT_EQ(AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&info)), nullptr);
        EXPECT_EQ(GetLastError(), place.error);
        EXPECT_FALSE(InstallDriver());
        EXPECT_EQ(GetLastError(), place.error);
        HKEY key = nullptr;
        EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, W("Software"), 0, KEY_READ, &key),
                  static_cast<LSTATUS>(place.error));
    }
    EXPECT_EQ(fs::file_size(Scratch() / "file"), std::strlen("not a folder"));
}

// A disk that is full, as a limit on the size of files: what does not fit is refused, what was there stays.
TEST_F(SpoolerStore, IsUnchangedByAWriteThatFails)
{
    const PrinterOwner printer = InstallPrinter();
    ASSERT_EQ(SetNumber(printer.Get(), W("n"), 1), ERROR_SUCCESS);
    Child child(
        [&]
        {
            std::vector<BYTE> large(4'000'000, 1);
            const WideString source = SourceFile("tvlarge.json", std::string(3'000'000, 'x').c_str());
            signal(SIGXFSZ, SIG_IGN);
            const rlimit limit = {2'000'000, 2'000'000};
            setrlimit(RLIMIT_FSIZE, &limit);
            const bool valueRefused = SetPrinterDataExW(printer.Get(), W("Numbers"), W("n"), REG_BINARY, large.data(),
                                                        static_cast<DWORD>(large.size())) != ERROR_SUCCESS;
            const bool driverRefused = !InstallDriver(W("Large"), source.c_str());
            return valueRefused && driverRefused && GetNumber(printer.Get(), W("n")) == 1u;
        });
    EXPECT_TRUE(child.Succeeded());
    EXPECT_EQ(GetNumber(printer.Get(), W("n")), 1u);
    EXPECT_EQ(SetNumber(printer.Get(), W("n"), 2), ERROR_SUCCESS);
    for (const auto& entry : fs::directory_iterator(Store() / "drivers/x64/3"))
    {
        EXPECT_NE(entry.path().extension(), ".tmp");
        EXPECT_NE(entry.path().filename(), "tvlarge.json");
    }
}

TEST_F(SpoolerStore, ThatIsDamagedIsRefusedOrReadAndNeverWorse)
{
    {
        const PrinterOwner printer = InstallPrinter();
        ASSERT_EQ(SetNumber(printer.Get(), W("n"), 1), ERROR_SUCCESS);
    }
    const std::string whole = FileContent();
    ASSERT_GT(whole.size(), 8192u);
    const auto errorOfListing = []
    {
        DWORD needed = 0;
        DWORD count = 0;
        SetLastError(ERROR_SUCCESS);
        const bool done = EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, nullptr, 0, &needed, &count);
        return done ? ERROR_SUCCESS : GetLastError();
    };

    std::string later = whole;
    later[63] = 99; // the schema's version, big-endian at 60
    const struct
    {
        const char* what;
        std::string content;
        DWORD error;
    } files[] = {
        {"no database", "this is a text, and longer than the header of a database would be: " + std::string(100, '.'),
         ERROR_INVALID_DATA},
        {"cut short", whole.substr(0, 5000), ERROR_INVALID_DATA},
        {"of a later version", later, ERROR_NOT_SUPPORTED},
        {"whole again", whole, ERROR_INSUFFICIENT_BUFFER},
    };
    for (const auto& file : files)
    {
        SCOPED_TRACE(file.what);
        ReplaceFile(file.content);
        EXPECT_EQ(errorOfListing(), file.error);
    }

    // Any byte may be wrong: each call answers something, and reads and writes only its own memory.
    for (std::size_t at = 16; at < whole.size(); at += whole.size() / 60)
    {
        std::string damaged = whole;
        damaged[at] = static_cast<char>(~damaged[at]);
        ReplaceFile(damaged);
        errorOfListing();
        const PrinterOwner printer = PrinterOwner::Open(kPrinter, PRINTER_ALL_ACCESS);
        if (printer.Get() != nullptr)
        {
            PrinterAnswer<PRINTER_INFO_2W>(printer.Get(), 2);
            DriverAnswer<DRIVER_INFO_6W>(printer.Get(), 6);
            GetNumber(printer.Get(), W("n"));
            SetNumber(printer.Get(), W("m"), 2);
        }
    }
    ReplaceFile(whole);
    EXPECT_EQ(PrinterNames(), std::vector<WideString>{kPrinter});
}

// Every platform call and every allocation of an operation fails in turn. What failed has changed nothing, and the
// operation succeeds right after.
TEST_F(SpoolerStore, IsUnharmedByFaults)
{
    const PrinterOwner printer = InstallPrinter();
    ASSERT_EQ(SetNumber(printer.Get(), W("n"), 1), ERROR_SUCCESS);
    const auto bytes = [](auto& info)
    {
        return reinterpret_cast<BYTE*>(&info);
    };
    std::vector<BYTE> buffer(16'384);
    DWORD needed = 0;
    DWORD count = 0;
    const auto room = static_cast<DWORD>(buffer.size());
    PRINTER_INFO_2W second = PrinterInfo(W("Second"));
    FORM_INFO_1W form = {FORM_USER, Mutable(W("Card")), {1000, 2000}, {0, 0, 1000, 2000}};
    const auto openSecond = []
    {
        return PrinterOwner::Open(W("Second"), PRINTER_ALL_ACCESS);
    };
    const WideString sourceFile = SourceFile("tvfault.json", "x");

    InstallPrinter(W("Doomed"));

    struct Operation
    {
        const char* what;
        std::function<bool()> run;
        std::function<bool()> isDone; // null for a question
        std::function<void()> undo;
    };
    const Operation operations[] = {
        {"GetPrinterW", [&] { return GetPrinterW(printer.Get(), 2, buffer.data(), room, &needed) != FALSE; }, {}, {}},
        {"GetPrinterDriverW",
         [&] { return GetPrinterDriverW(printer.Get(), nullptr, 6, buffer.data(), room, &needed) != FALSE; },
         {},
         {}},
        {"EnumPrintersW",
         [&] { return EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, buffer.data(), room, &needed, &count) != FALSE; },
         {},
         {}},
        {"EnumFormsW",
         [&] { return EnumFormsW(printer.Get(), 1, buffer.data(), room, &needed, &count) != FALSE; },
         {},
         {}},
        {"OpenPrinterW", [&] { return PrinterOwner::Open(kPrinter).Get() != nullptr; }, {}, {}},
        {"GetPrinterDataExW", [&] { return GetNumber(printer.Get(), W("n")) == 1u; }, {}, {}},
        {"DeviceCapabilitiesW",
         [&] { return DeviceCapabilitiesW(kPrinter, nullptr, DC_COPIES, nullptr, nullptr) == spoolersample::kCopies; },
         {},
         {}},
        {"SetPrinterDataExW", [&] { return SetNumber(printer.Get(), W("m"), 2) == ERROR_SUCCESS; },
         [&] { return GetNumber(printer.Get(), W("m")).has_value(); },
         [&]
         {
             DeletePrinterDataExW(printer.Get(), W("Numbers"), W("m"));
         }},
        {"AddPrinterW", [&] { return PrinterOwner(AddPrinterW(nullptr, 2, bytes(second))).Get() != nullptr; },
         [&] { return openSecond().Get() != nullptr; },
         [&]
         {
             DeletePrinter(openSecond().Get());
         }},
        {"DeletePrinter",
         []
         {
             const PrinterOwner doomed = PrinterOwner::Open(W("Doomed"), PRINTER_ALL_ACCESS);
             return DeletePrinter(doomed.Get()) != FALSE;
         },
         [] { return PrinterOwner::Open(W("Doomed")).Get() == nullptr; },
         [&]
         {
             InstallPrinter(W("Doomed"));
         }},
        {"SetPrinterW",
         [&]
         {
             PRINTER_INFO_2W changed = PrinterInfo();
             changed.pComment = Mutable(W("changed"));
             return SetPrinterW(printer.Get(), 2, bytes(changed), 0) != FALSE;
         },
         [&] { return PrinterAnswer<PRINTER_INFO_2W>(printer.Get(), 2)->pComment == WideString(W("changed")); },
         [&]
         {
             PRINTER_INFO_2W unchanged = PrinterInfo();
             EXPECT_TRUE(SetPrinterW(printer.Get(), 2, bytes(unchanged), 0));
         }},
        {"AddFormW", [&] { return AddFormW(printer.Get(), 1, bytes(form)) != FALSE; },
         [&] { return GetFormW(printer.Get(), form.pName, 1, buffer.data(), room, &needed) != FALSE; },
         [&]
         {
             DeleteFormW(printer.Get(), form.pName);
         }},
        {"AddPrinterDriverExW", [&] { return InstallDriver(W("Third"), sourceFile.c_str()) != FALSE; },
         [&] { return fs::exists(Store() / "drivers/x64/3/tvfault.json"); },
         [&]
         {
             DeletePrinterDriverExW(nullptr, nullptr, Mutable(W("Third")), DPD_DELETE_UNUSED_FILES, 0);
         }},
        {"RegCreateKeyExW",
         []
         {
             HKEY key = nullptr;
             const LSTATUS made =
                 RegCreateKeyExW(HKEY_CURRENT_USER, W("A\\B"), 0, nullptr, 0, KEY_READ, nullptr, &key, nullptr);
             RegCloseKey(key);
             return made == 0;
         },
         []
         {
             HKEY key = nullptr;
             const LSTATUS found = RegOpenKeyExW(HKEY_CURRENT_USER, W("A"), 0, KEY_READ, &key);
             RegCloseKey(key);
             return found == 0;
         },
         [&]
         {
             RegDeleteTreeW(HKEY_CURRENT_USER, W("A"));
         }},
    };
    for (const Operation& operation : operations)
    {
        for (const auto kind : {winport::FaultKind::PlatformCall, winport::FaultKind::Allocation})
        {
            SCOPED_TRACE(operation.what);
            bool fired = kind == winport::FaultKind::PlatformCall || TVPT_ALLOCATION_FAULTS != 0;
            for (unsigned nth = 1; fired; ++nth)
            {
                winport::ArmFault(kind, nth);
                const bool succeeded = RunsDespiteFault(operation.run);
                fired = winport::DisarmFault(kind);
                ASSERT_TRUE(succeeded || fired) << nth;
                if (!succeeded)
                {
                    ASSERT_FALSE(operation.isDone && operation.isDone()) << nth;
                    ASSERT_TRUE(operation.run()) << nth;
                }
                if (operation.undo)
                    operation.undo();
                ASSERT_LT(nth, 5000u);
            }
        }
    }
}
