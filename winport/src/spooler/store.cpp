#include "spooler/store.h"

#include <sqlite3.h>

#include <algorithm>
#include <list>
#include <utility>

#include "core/utf.h"
#include "spooler/connection.h"
#include "spooler/win32error.h"

namespace winport::spooler
{

namespace
{

// The connections of this process, the last used first.
class Connections
{
public:
    static Connections& Instance()
    {
        static Connections instance;
        return instance;
    }

    std::shared_ptr<Connection> Of(const std::filesystem::path& folder)
    {
        const std::lock_guard lock(m_mutex);
        const auto known = std::find_if(m_entries.begin(), m_entries.end(),
                                        [&](const Entry& entry) { return entry.folder == folder; });
        if (known != m_entries.end() && known->connection->IsCurrent())
        {
            m_entries.splice(m_entries.begin(), m_entries, known);
            return known->connection;
        }
        if (known != m_entries.end())
            m_entries.erase(known);
        m_entries.push_front({folder, std::make_shared<Connection>(folder)});
        if (m_entries.size() > kKept)
            m_entries.pop_back();
        return m_entries.front().connection;
    }

private:
    static constexpr std::size_t kKept = 4; // a process uses one store; tests use some

    struct Entry
    {
        std::filesystem::path folder;
        std::shared_ptr<Connection> connection;
    };

    std::mutex m_mutex;
    std::list<Entry> m_entries;
};

// The absolute path that an environment variable holds; empty when it holds none.
std::filesystem::path FolderIn(LPCWSTR variable)
{
    const auto read = [variable](LPWSTR room, DWORD size)
    {
        const DWORD length = GetEnvironmentVariableW(variable, room, size);
        // A variable that cannot be read is not an absent one: the call would go to another store.
        Require(length != 0 || GetLastError() != ERROR_NOT_ENOUGH_MEMORY, ERROR_NOT_ENOUGH_MEMORY);
        return length;
    };
    std::u16string value(read(nullptr, 0), u'\0');
    value.resize(read(value.data(), static_cast<DWORD>(value.size())));
    return value.empty() ? std::filesystem::path() : std::filesystem::absolute(ToUtf8(value));
}

} // namespace

std::filesystem::path StoreFolder()
{
    if (auto chosen = FolderIn(u"TVPT_STORE"); !chosen.empty())
        return chosen;
    if (const auto data = FolderIn(u"XDG_DATA_HOME"); !data.empty())
        return data / "tavlen-print-ticket";
    const auto home = FolderIn(u"HOME");
    Require(!home.empty(), ERROR_PATH_NOT_FOUND);
    return home / ".local/share/tavlen-print-ticket";
}

Store::Store(const std::filesystem::path& folder)
    : m_connection(Connections::Instance().Of(folder)), m_lock(m_connection->mutex)
{
}

Store::~Store() = default;

Statement Store::Prepare(const char* sql) const
{
    return Statement(m_connection->Database(), sql);
}

std::int64_t Store::LastRow() const
{
    return sqlite3_last_insert_rowid(&m_connection->Database());
}

int Store::Changes() const
{
    return sqlite3_changes(&m_connection->Database());
}

Transaction::Transaction(Store& store, Kind kind) : m_store(store)
{
    m_store.Prepare(kind == Kind::Write ? "BEGIN IMMEDIATE" : "BEGIN").Execute();
}

Transaction::~Transaction()
{
    // A rollback that fails has nothing left to undo: SQLite has rolled back by itself.
    if (m_open)
        sqlite3_exec(&m_store.m_connection->Database(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::Commit()
{
    m_store.Prepare("COMMIT").Execute();
    m_open = false;
}

} // namespace winport::spooler
