// Connection: one open SQLite file, its schema in place. Shared by the threads of a process under its mutex.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <memory>
#include <mutex>

struct sqlite3;

namespace winport::spooler
{

class Connection
{
public:
    explicit Connection(const std::filesystem::path& folder);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // False when the file was replaced or removed, or when this is a child of the process that opened it: SQLite's
    // connections do not survive fork.
    [[nodiscard]] bool IsCurrent() const noexcept;

    [[nodiscard]] sqlite3& Database() const noexcept
    {
        return *m_database;
    }

    std::mutex mutex;

private:
    void OpenFile();
    void BringSchemaUpToDate();

    std::filesystem::path m_file;
    pid_t m_process;
    dev_t m_device = 0;
    ino_t m_inode = 0;
    sqlite3* m_database = nullptr;
};

} // namespace winport::spooler
