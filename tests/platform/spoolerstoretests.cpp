// The store below the spooler (Linux): shared by processes and threads, refused when damaged, unharmed by faults.
#include <windows.h>
#include <winspool.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "tests/platform/eachfault.h"
#include "utilitiesstaticlib/wideliteral.h"

namespace
{

namespace fs = std::filesystem;

const WCHAR* const kDriver = W("Tavlen Platform Driver");
const WCHAR* const kPrinter = W("Tavlen Platform Printer");

struct PrinterCloser
{
    void operator()(HANDLE printer) const
    {
        ClosePrinter(printer);
    }
};
using PrinterOwner = std::unique_ptr<std::remove_pointer_t<HANDLE>, PrinterCloser>;

// Texts go into structures whose fields are not const.
LPWSTR Mutable(const WCHAR* text)
{
    return const_cast<LPWSTR>(text);
}

// Null when it does not open.
PrinterOwner Open(const WCHAR* name, ACCESS_MASK access = 0)
{
    PRINTER_DEFAULTSW defaults = {nullptr, nullptr, access};
    HANDLE printer = nullptr;
    return PrinterOwner(OpenPrinterW(Mutable(name), &printer, &defaults) ? printer : nullptr);
}

PRINTER_INFO_2W PrinterInfo(const WCHAR* name, const WCHAR* comment = W("a comment"))
{
    PRINTER_INFO_2W info = {};
    info.pPrinterName = Mutable(name);
    info.pPortName = Mutable(W("FILE:"));
    info.pDriverName = Mutable(kDriver);
    info.pPrintProcessor = Mutable(W("winprint"));
    info.pDatatype = Mutable(W("RAW"));
    info.pComment = Mutable(comment);
    return info;
}

// Null when it is refused.
PrinterOwner Add(const WCHAR* name = kPrinter)
{
    PRINTER_INFO_2W info = PrinterInfo(name);
    return PrinterOwner(AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&info)));
}

bool SetComment(HANDLE printer, const WCHAR* comment)
{
    PRINTER_INFO_2W info = PrinterInfo(kPrinter, comment);
    return SetPrinterW(printer, 2, reinterpret_cast<BYTE*>(&info), 0) != FALSE;
}

// Asked for with the size that a first call reports; empty after a failure.
template <class Call>
std::vector<BYTE> Answer(Call call)
{
    DWORD needed = 0;
    call(nullptr, 0, &needed);
    std::vector<BYTE> bytes(needed);
    if (!call(bytes.data(), needed, &needed))
        bytes.clear();
    return bytes;
}

std::vector<BYTE> PrinterAnswer(HANDLE printer)
{
    return Answer([&](LPBYTE bytes, DWORD size, LPDWORD needed)
                  { return GetPrinterW(printer, 2, bytes, size, needed); });
}

// Of all printers of the store.
std::set<WideString> PrinterNames()
{
    DWORD count = 0;
    const std::vector<BYTE> bytes =
        Answer([&](LPBYTE room, DWORD size, LPDWORD needed)
               { return EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 4, room, size, needed, &count); });
    std::set<WideString> names;
    for (DWORD at = 0; !bytes.empty() && at < count; ++at)
        names.insert(reinterpret_cast<const PRINTER_INFO_4W*>(bytes.data())[at].pPrinterName);
    return names;
}

// Empty for a file that is not there.
std::string Content(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

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
    const BOOL done = EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, nullptr, 0, &needed, &count);
    return done ? ERROR_SUCCESS : GetLastError();
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

// Has a scratch folder that goes with the test, in which the store lies, and a driver whose configuration module is the
// sample.
class SpoolerStore : public testing::Test
{
protected:
    void SetUp() override
    {
        fs::remove_all(Scratch());
        UseStore(Store());
        ASSERT_TRUE(InstallDriver()) << GetLastError();
    }

    void TearDown() override
    {
        SetEnvironmentVariableW(W("TVPT_STORE"), nullptr);
        fs::remove_all(Scratch());
    }

    static fs::path Scratch()
    {
        return fs::temp_directory_path() / ("tavlen-spooler-" + std::to_string(GetCurrentProcessId()));
    }

    static fs::path Store()
    {
        return Scratch() / "store";
    }

    static void UseStore(const fs::path& folder)
    {
        SetEnvironmentVariableW(W("TVPT_STORE"), folder.string<WCHAR>().c_str());
    }

    // Writes a source file of a driver and gives its name to the spooler.
    static WideString SourceFile(const char* name, const char* content)
    {
        const fs::path path = Scratch() / name;
        fs::create_directories(path.parent_path());
        std::ofstream(path) << content;
        return path.string<WCHAR>();
    }

    static BOOL InstallDriver(const WCHAR* name = kDriver, const WCHAR* dataFile = nullptr)
    {
        WCHAR program[4096] = {};
        GetModuleFileNameW(nullptr, program, 4096);
        const auto folder = fs::path(program).parent_path(); // replacing the name does not survive faults
        const WideString configFile = (folder / "spooler_sample.dll").string<WCHAR>();
        const WideString driverFile = SourceFile("tvplatform.drv", "the driver");
        const WideString model = SourceFile("tvplatform.json", "the model");
        const WideString more = SourceFile("tvone.txt", "one") + WCHAR() + SourceFile("tvtwo.txt", "two") + WCHAR();
        DRIVER_INFO_3W info = {};
        info.cVersion = 3;
        info.pName = Mutable(name);
        info.pEnvironment = Mutable(W("Windows x64"));
        info.pDriverPath = Mutable(driverFile.c_str());
        info.pDataFile = Mutable(dataFile != nullptr ? dataFile : model.c_str());
        info.pConfigFile = Mutable(configFile.c_str());
        info.pDependentFiles = Mutable(more.c_str());
        info.pDefaultDataType = Mutable(W("RAW"));
        return AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&info),
                                   APD_COPY_ALL_FILES | APD_COPY_FROM_DIRECTORY);
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

    // All that the calls of these tests can change.
    static std::set<WideString> State()
    {
        const PrinterOwner printer = Open(kPrinter);
        const std::vector<BYTE> answer = PrinterAnswer(printer.get());
        std::set<WideString> state = {reinterpret_cast<const PRINTER_INFO_2W*>(answer.data())->pComment};
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
    const PrinterOwner shared = Add();
    // Each adds printers, deletes every second one, and sets numbers in a printer that all share.
    const auto doShare = [](int process)
    {
        const PrinterOwner common = Open(kPrinter, PRINTER_ALL_ACCESS);
        bool succeeded = true;
        for (int number = process * kRounds; number < (process + 1) * kRounds; ++number)
        {
            const PrinterOwner printer = Add(Numbered("Printer ", number).c_str());
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

// A mutex by name has its place in the store.
TEST_F(SpoolerStore, HasMutexesThatBelongToOneAtATime)
{
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    std::vector<std::thread> threads;
    for (int at = 0; at < 4; ++at)
        threads.emplace_back(
            [&]
            {
                HANDLE const mutex =
                    CreateMutexExW(nullptr, W("Local\\Tavlen platform tests"), 0, SYNCHRONIZE | MUTEX_MODIFY_STATE);
                for (int round = 0; round < 50; ++round)
                {
                    EXPECT_EQ(WaitForSingleObject(mutex, 30'000), DWORD{WAIT_OBJECT_0});
                    most = std::max<int>(most, ++inside);
                    std::this_thread::yield();
                    --inside;
                    EXPECT_TRUE(ReleaseMutex(mutex));
                }
                EXPECT_TRUE(CloseHandle(mutex));
            });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(most, 1);
}

TEST_F(SpoolerStore, IsMadeByManyProcessesAtOnce)
{
    UseStore(Scratch() / "fresh");
    EXPECT_TRUE(SucceedsInChildren(6, [](int) { return ErrorOfListing() == ERROR_SUCCESS; }));
}

// A disk that is full, as a limit on the size of files: what does not fit is refused, what was there stays.
TEST_F(SpoolerStore, IsUnchangedByAWriteThatFails)
{
    const PrinterOwner printer = Add();
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
    ASSERT_TRUE(SetNumber(Add().get(), W("n"), 1));
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
        PrinterAnswer(printer.get());
        Answer([&](LPBYTE room, DWORD size, LPDWORD needed)
               { return GetPrinterDriverW(printer.get(), nullptr, 6, room, size, needed); });
        GetNumber(printer.get(), W("n"));
        SetNumber(printer.get(), W("m"), 2);
    }
    ReplaceFile(whole);
    EXPECT_EQ(PrinterNames(), std::set<WideString>{kPrinter});
}

TEST_F(SpoolerStore, IsUnharmedByFaults)
{
    const PrinterOwner printer = Add();
    ASSERT_TRUE(SetNumber(printer.get(), W("n"), 1));
    Add(W("Doomed"));
    const WideString sourceFile = SourceFile("tvfault.json", "x");
    BYTE room[16'384] = {};
    DWORD needed = 0;
    ExpectUnharmed("GetPrinterDriverW",
                   [&] { return GetPrinterDriverW(printer.get(), nullptr, 6, room, sizeof(room), &needed); });
    ExpectUnharmed("GetPrinterDataExW", [] { return GetNumber(Open(kPrinter).get(), W("n")) == 1; });
    ExpectUnharmed("DeviceCapabilitiesW",
                   [] { return DeviceCapabilitiesW(kPrinter, nullptr, DC_COPIES, nullptr, nullptr) > 0; });
    ExpectUnharmed(
        "SetPrinterDataExW", [&] { return SetNumber(printer.get(), W("m"), 2); },
        [&] { return DeletePrinterDataExW(printer.get(), W("Numbers"), W("m")) == ERROR_SUCCESS; });
    ExpectUnharmed(
        "AddPrinterW", [] { return Add(W("Second")) != nullptr; }, [] { return Delete(W("Second")); });
    ExpectUnharmed(
        "DeletePrinter", [] { return Delete(W("Doomed")); }, [] { return Add(W("Doomed")) != nullptr; });
    ExpectUnharmed(
        "SetPrinterW", [&] { return SetComment(printer.get(), W("changed")); },
        [&] { return SetComment(printer.get(), W("a comment")); });
    ExpectUnharmed(
        "AddPrinterDriverExW", [&] { return InstallDriver(W("Third"), sourceFile.c_str()); },
        [] { return DeletePrinterDriverExW(nullptr, nullptr, Mutable(W("Third")), DPD_DELETE_UNUSED_FILES, 0); });
}
