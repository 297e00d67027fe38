#include "spooler/ports.h"

#include <winspool.h>

#include <algorithm>

#include "spooler/bufferwriter.h"
#include "spooler/names.h"
#include "spooler/win32error.h"

namespace winport::spooler
{

namespace
{

// Those that the local monitor always has.
constexpr std::u16string_view kPorts[] = {
    u"COM1:", u"COM2:", u"COM3:", u"COM4:", u"FILE:", u"LPT1:", u"LPT2:", u"LPT3:",
};

PORT_INFO_1W Info1(std::u16string_view port, BufferWriter& writer)
{
    return {.pName = writer.Text(port)};
}

PORT_INFO_2W Info2(std::u16string_view port, BufferWriter& writer)
{
    return {
        .pPortName = writer.Text(port),
        .pMonitorName = writer.Text(u"Local Monitor"),
        .pDescription = writer.Text(u"Local Port"),
        .fPortType = PORT_TYPE_WRITE,
        .Reserved = 0,
    };
}

} // namespace

bool IsPort(std::u16string_view name)
{
    return std::any_of(std::begin(kPorts), std::end(kPorts),
                       [&](std::u16string_view port) { return EqualIgnoringCase(name, port); });
}

} // namespace winport::spooler

using namespace winport::spooler;

BOOL WINAPI EnumPortsW(LPWSTR server, DWORD level, LPBYTE ports, DWORD size, LPDWORD needed, LPDWORD returned)
{
    return Succeeds(
        [&]
        {
            const CallerBuffer buffer{ports, size, needed};
            RequireUsable(buffer, returned);
            RequireLocalServer(server);
            Require(level == 1 || level == 2, ERROR_INVALID_LEVEL);
            const std::span<const std::u16string_view> all(kPorts);
            if (level == 1)
                AnswerRecords<PORT_INFO_1W>(buffer, returned, ERROR_INSUFFICIENT_BUFFER, all, Info1);
            else
                AnswerRecords<PORT_INFO_2W>(buffer, returned, ERROR_INSUFFICIENT_BUFFER, all, Info2);
        });
}
