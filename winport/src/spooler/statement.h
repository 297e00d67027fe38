// Statement: one prepared SQL statement, over SQLite, finalised by its destructor.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include <windef.h>

struct sqlite3;
struct sqlite3_stmt;

namespace winport::spooler
{

using Blob = std::vector<BYTE>;

// Binding and reading is in order, each call takes the next parameter or column. Texts are kept in UTF-8: one that is
// not well-formed is refused (ERROR_INVALID_PARAMETER), so that no two names can become one.
class Statement
{
public:
    Statement(sqlite3& database, const char* sql);

    Statement& Bind(std::int64_t value);
    Statement& Bind(std::u16string_view value);
    Statement& Bind(std::span<const BYTE> value);

    template <typename Number>
    requires std::is_integral_v<Number> Statement& Bind(Number value)
    {
        return Bind(static_cast<std::int64_t>(value));
    }

    // True while there is a row; false at the end, after which nothing may be read.
    bool Step();
    // For statements without rows.
    void Execute();

    std::int64_t Integer();
    DWORD Number(); // values beyond 32 bits, of a damaged store, are cut
    std::u16string Text();
    Blob Bytes();

private:
    struct Finalise
    {
        void operator()(sqlite3_stmt* statement) const noexcept;
    };

    std::unique_ptr<sqlite3_stmt, Finalise> m_statement;
    int m_parameter = 0;
    int m_column = 0;
};

} // namespace winport::spooler
