// Store: the SQLite file that holds printers, drivers, forms and the registry.
//
// A process keeps its connections open and shares them between its threads; whoever wants to read or write takes a
// Store, which holds the connection's lock for as long as it lives. Nothing that calls back into the spooler, as a
// driver's module does, may be called meanwhile.
//
// A connection is opened anew when the file was replaced, and in a child after fork.
#pragma once

#include <filesystem>
#include <memory>
#include <mutex>

#include "spooler/statement.h"

namespace winport::spooler
{

class Connection;

// TVPT_STORE, else $XDG_DATA_HOME/tavlen-print-ticket, else ~/.local/share/tavlen-print-ticket.
std::filesystem::path StoreFolder();

class Store
{
public:
    // Makes the folder and the file when they are missing.
    explicit Store(const std::filesystem::path& folder);
    ~Store();
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    [[nodiscard]] Statement Prepare(const char* sql) const;
    // The key of the row that the last INSERT made.
    [[nodiscard]] std::int64_t LastRow() const;
    // How many rows the last statement changed.
    [[nodiscard]] int Changes() const;

private:
    friend class Transaction;

    std::shared_ptr<Connection> m_connection;
    std::unique_lock<std::mutex> m_lock;
};

// One transaction on a store, rolled back unless committed. A writing one takes the file's write lock at its begin:
// one that upgraded from reading could not wait for another process, only fail.
class Transaction
{
public:
    enum class Kind
    {
        Read,
        Write,
    };

    Transaction(Store& store, Kind kind);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void Commit();

private:
    Store& m_store;
    bool m_open = true;
};

} // namespace winport::spooler
