// What the tests of the core drivers' settings share.
#pragma once

#include <windows.h>

#include <algorithm>
#include <span>
#include <string>
#include <vector>

#include <tvutil/bytewriter.h>

#include "complugins/msdriverkind.h"
#include "complugins/oemdevmode.h"
#include "tests/common/testdevmode.h"
#include "tests/common/thrownby.h"

namespace MsDevmodeSamples
{

inline std::string NameOf(const MsDriverKind& driver)
{
    return "kind " + std::to_string(driver.kind) + ", platform " + std::to_string(driver.platform) + ", flags " +
           std::to_string(driver.coreFlags);
}

// A public part, then a private part without a note of its size and, if wanted, the maker's part.
inline TestDevmode MakeDevmode(std::size_t privateSize, std::uint8_t fill, bool hasMakersPart = false)
{
    namespace Format = OemDevmodeFormat;
    std::vector<std::byte> bytes(sizeof(DEVMODEW) + privateSize + (hasMakersPart ? Format::kSize : 0));
    std::fill_n(bytes.begin() + sizeof(DEVMODEW), privateSize, std::byte{fill});
    if (hasMakersPart)
    {
        ByteWriter part{std::span<std::byte>(bytes).subspan(sizeof(DEVMODEW) + privateSize)};
        part.U32(Format::kSize);
        part.U32(Format::kSignature);
    }
    return TestDevmode(std::span<const std::byte>(bytes));
}

// A devmode whose private part, all zeros but for the note of its size, is recognised as the driver's.
inline TestDevmode MakeDevmodeOf(const MsDriverKind& driver)
{
    namespace Format = OemDevmodeFormat;
    const bool isPostScript = driver.HasPostScriptLayout();
    const std::uint16_t size = isPostScript ? 708 : 564;
    TestDevmode devmode = MakeDevmode(size, 0);
    const std::span part(reinterpret_cast<std::byte*>(devmode.Get() + 1), size);
    ByteWriter(part.subspan(isPostScript ? Format::kPostScriptSizeOffset : Format::kUnidrvSizeOffset)).U16(size);
    return devmode;
}

} // namespace MsDevmodeSamples
