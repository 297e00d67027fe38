#include "spooler/connection.h"

#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include "spooler/fileerror.h"
#include "spooler/filelock.h"
#include "spooler/schema.h"
#include "spooler/sqliteerror.h"
#include "spooler/statement.h"
#include "spooler/win32error.h"

namespace winport::spooler
{

namespace
{

// How long a call waits for another process that writes.
constexpr int kBusyMilliseconds = 60'000;

void Run(sqlite3& database, const char* sql)
{
    RequireSqlite(sqlite3_exec(&database, sql, nullptr, nullptr, nullptr));
}

} // namespace

Connection::Connection(const std::filesystem::path& folder) : m_file(folder / "spooler.db"), m_process(getpid())
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    Require(!error, Win32ErrorOfFolder(error.value()));

    // Held while a file is opened and its schema made: turning a new file into a write-ahead-logged one is the one step
    // in which SQLite does not wait for other processes.
    const FileLock opening(folder / "spooler.lock");
    opening.Lock();
    try
    {
        OpenFile();
        BringSchemaUpToDate();
    }
    catch (...)
    {
        sqlite3_close(m_database);
        throw;
    }
}

Connection::~Connection()
{
    if (m_process == getpid())
        sqlite3_close(m_database);
}

bool Connection::IsCurrent() const noexcept
{
    struct stat status = {};
    return m_process == getpid() && stat(m_file.c_str(), &status) == 0 && status.st_dev == m_device &&
           status.st_ino == m_inode;
}

void Connection::OpenFile()
{
    // The lock above the connection serialises its use, so SQLite needs none of its own.
    RequireSqlite(sqlite3_open_v2(m_file.c_str(), &m_database,
                                  SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr));
    RequireSqlite(sqlite3_busy_timeout(m_database, kBusyMilliseconds));
    // Room for the largest registry values of ours, a few megabytes: one that does not fit is read page by page each
    // time.
    Run(*m_database, "PRAGMA cache_size = -16384");
    Run(*m_database, "PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL; PRAGMA foreign_keys = ON;"
                     "PRAGMA trusted_schema = OFF;");
    struct stat status = {};
    Require(stat(m_file.c_str(), &status) == 0, ERROR_ACCESS_DENIED);
    m_device = status.st_dev;
    m_inode = status.st_ino;
}

void Connection::BringSchemaUpToDate()
{
    Statement version(*m_database, "PRAGMA user_version");
    const std::int64_t found = version.Step() ? version.Integer() : 0;
    if (found == kSchemaVersion)
        return;
    Require(found == 0, ERROR_NOT_SUPPORTED); // made by a later version

    version.Step(); // to its end: an open statement would keep the transaction from ending
    try
    {
        Run(*m_database, "BEGIN IMMEDIATE");
        Run(*m_database, kSchema);
        Run(*m_database, ("PRAGMA user_version = " + std::to_string(kSchemaVersion)).c_str());
        Run(*m_database, "COMMIT");
    }
    catch (...)
    {
        sqlite3_exec(m_database, "ROLLBACK", nullptr, nullptr, nullptr);
        throw;
    }
}

} // namespace winport::spooler
