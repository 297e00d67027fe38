#include "spooler/bufferwriter.h"

#include <limits>

#include "spooler/win32error.h"

namespace winport::spooler
{

void RequireUsable(const CallerBuffer& buffer)
{
    Require(buffer.needed != nullptr, ERROR_INVALID_PARAMETER);
    *buffer.needed = 0;
    Require(buffer.bytes != nullptr || buffer.size == 0, ERROR_INVALID_PARAMETER);
}

void RequireUsable(const CallerBuffer& buffer, LPDWORD returned)
{
    Require(returned != nullptr, ERROR_INVALID_PARAMETER);
    *returned = 0;
    RequireUsable(buffer);
}

void RequireRoom(const CallerBuffer& buffer, std::size_t size, DWORD tooSmall)
{
    Require(size <= std::numeric_limits<DWORD>::max(), ERROR_NOT_ENOUGH_MEMORY);
    *buffer.needed = static_cast<DWORD>(size);
    Require(size == 0 || (buffer.bytes != nullptr && size <= buffer.size), tooSmall);
}

} // namespace winport::spooler
