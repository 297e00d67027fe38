#include "spooler/ports.h"

#include <algorithm>

#include "spooler/names.h"

namespace winport::spooler
{

namespace
{

// Those that the local monitor always has.
constexpr std::u16string_view kPorts[] = {
    u"COM1:", u"COM2:", u"COM3:", u"COM4:", u"FILE:", u"LPT1:", u"LPT2:", u"LPT3:",
};

} // namespace

bool IsPort(std::u16string_view name)
{
    return std::any_of(std::begin(kPorts), std::end(kPorts),
                       [&](std::u16string_view port) { return EqualIgnoringCase(name, port); });
}

} // namespace winport::spooler
