#include "spooler/statement.h"

#include <sqlite3.h>

#include "core/utf.h"
#include "spooler/sqliteerror.h"
#include "spooler/win32error.h"

namespace winport::spooler
{

void Statement::Finalise::operator()(sqlite3_stmt* statement) const noexcept
{
    sqlite3_finalize(statement);
}

Statement::Statement(sqlite3& database, const char* sql)
{
    sqlite3_stmt* statement = nullptr;
    const int result = sqlite3_prepare_v2(&database, sql, -1, &statement, nullptr);
    m_statement.reset(statement);
    RequireSqlite(result);
}

Statement& Statement::Bind(std::int64_t value)
{
    RequireSqlite(sqlite3_bind_int64(m_statement.get(), ++m_parameter, value));
    return *this;
}

Statement& Statement::Bind(std::u16string_view value)
{
    std::string text;
    Require(ToUtf8Strict(value, text), ERROR_INVALID_PARAMETER);
    RequireSqlite(
        sqlite3_bind_text64(m_statement.get(), ++m_parameter, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
    return *this;
}

Statement& Statement::Bind(std::span<const BYTE> value)
{
    // A blob without bytes is still a blob, not NULL.
    const int result = value.empty() ? sqlite3_bind_zeroblob(m_statement.get(), ++m_parameter, 0)
                                     : sqlite3_bind_blob64(m_statement.get(), ++m_parameter, value.data(), value.size(),
                                                           SQLITE_TRANSIENT);
    RequireSqlite(result);
    return *this;
}

bool Statement::Step()
{
    m_column = 0;
    const int result = sqlite3_step(m_statement.get());
    if (result == SQLITE_ROW)
        return true;
    if (result != SQLITE_DONE)
        RequireSqlite(result);
    return false;
}

void Statement::Execute()
{
    while (Step())
    {
    }
}

std::int64_t Statement::Integer()
{
    return sqlite3_column_int64(m_statement.get(), m_column++);
}

DWORD Statement::Number()
{
    return static_cast<DWORD>(Integer());
}

std::u16string Statement::Text()
{
    const int column = m_column++;
    const unsigned char* text = sqlite3_column_text(m_statement.get(), column);
    const int size = sqlite3_column_bytes(m_statement.get(), column);
    if (text == nullptr)
        return {};
    return ToUtf16(std::string_view(reinterpret_cast<const char*>(text), static_cast<std::size_t>(size)));
}

Blob Statement::Bytes()
{
    const int column = m_column++;
    const auto* bytes = static_cast<const BYTE*>(sqlite3_column_blob(m_statement.get(), column));
    const int size = sqlite3_column_bytes(m_statement.get(), column);
    return bytes == nullptr ? Blob() : Blob(bytes, bytes + size);
}

} // namespace winport::spooler
