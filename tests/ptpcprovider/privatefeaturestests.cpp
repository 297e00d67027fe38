// The driver data's way through a ticket, and what of it is ignored.
#include <gtest/gtest.h>

#include <tvutil/crc32.h>
#include <tvutil/tavlenutilities.h>

#include <algorithm>
#include <span>
#include <string>

#include "complugins/ptpcprovider/printticketxmldocument.h"
#include "complugins/xdevmode.h"
#include "tests/common/oemdevmodebytes.h"
#include "tests/common/testdevmode.h"
#include "tests/common/testdocuments.h"
#include "tests/ptpcprovider/provideraccess.h"

namespace
{

using namespace OemDevmodeBytes;
using Access = TavlenPtProviderTestAccess;
namespace Format = OemDevmodeFormat;

constexpr const char* kPrivateUri =
    "http://schemas.tavlen.example/enterprise/print/driver/native/printSchemaPrivateKeywords/2006/11";
constexpr const char* kDriverData = "//psf:ParameterInit[contains(@name,'JobTavlenDriverData')]";

Bytes DevmodeWith(std::size_t usedBytes)
{
    ByteBuffer value(usedBytes - std::min(usedBytes, Format::kEntriesOffset + Format::kEntryHeaderSize));
    for (std::size_t at = 0; at < value.size(); ++at)
        value.data()[at] = static_cast<BYTE>(at * 31 + 1);
    return Make(CoreDriverLayout::PostScript,
                usedBytes == Format::kEntriesOffset ? Entries() : Entries{{7, std::move(value)}});
}

std::string TicketOf(const std::string& prefix, const std::string& content)
{
    return TicketAround(content, "xmlns:" + prefix + "='" + kPrivateUri + "'");
}

// A record with the CRC that it should have, or any other.
std::string Record(std::span<const std::byte> data, DWORD crcError = 0)
{
    const DWORD crc = Crc32::GetCrc(data.data(), data.size()) ^ crcError;
    ByteBuffer record(&crc, sizeof(crc));
    record.append(data);
    const auto size = static_cast<int>(record.size());
    int length = TavlenUtilities::Base64EncodeGetRequiredLength(size, 2);
    WideString text(static_cast<std::size_t>(length), W(' '));
    EXPECT_TRUE(TavlenUtilities::Base64Encode(record.data(), size, text.data(), &length, 2));
    return Utf8(text);
}

class PrivateFeatures : public testing::Test, protected ProviderBinding
{
protected:
    ComPtr<IXMLDOMDocument2> TicketFrom(const TestDevmode& devmode, const std::string& base)
    {
        ComPtr<IXMLDOMDocument2> document = LoadDocument(base);
        PrintTicketXmlDocument ticket(document.Get());
        XDevmode wrapper(devmode.Get());
        EXPECT_EQ(S_OK, Access::SetDriverData(*object, ticket, wrapper));
        return document;
    }

    // The devmode with what the ticket restores in it.
    Bytes Restore(IXMLDOMDocument2* document, const Bytes& into)
    {
        const TestDevmode devmode{std::span(into)};
        PrintTicketXmlDocument ticket(document);
        XDevmode wrapper(devmode.Get());
        EXPECT_EQ(S_OK, Access::GetDriverData(*object, ticket, wrapper));
        return devmode.Bytes();
    }

    // Whether the text, as the ticket's driver data, changes anything.
    bool Restores(const std::string& text)
    {
        const TestDevmode wrapped{std::span(m_target)}; // terminates its names
        XDevmode wrapper(wrapped.Get());
        const auto document =
            LoadDocument(TicketOf("tk", "<psf:ParameterInit name='tk:JobTavlenDriverData'><psf:Value>" + text +
                                            "</psf:Value></psf:ParameterInit>"));
        return Restore(document.Get(), m_target) != wrapped.Bytes();
    }

    const Bytes m_target = DevmodeWith(100);
};

TEST_F(PrivateFeatures, AnyPartComesThroughATicket)
{
    for (const std::size_t used : {Format::kEntriesOffset, Format::kEntriesOffset + 4, std::size_t(300), Format::kSize})
    {
        SCOPED_TRACE(used);
        Bytes source = DevmodeWith(used);
        const TestDevmode devmode{std::span(source)};
        auto document = TicketFrom(devmode, TicketOf("my", ""));
        document = TicketFrom(devmode, TextOf(document.Get())); // the old one is replaced
        EXPECT_EQ(1u, Select(document.Get(), kDriverData).size());
        Bytes target = Restore(Reparse(document.Get()).Get(), m_target);
        EXPECT_TRUE(std::ranges::equal(PartOf(target), PartOf(source)));
    }
}

TEST_F(PrivateFeatures, ADevmodeWithoutAPartTakesAndGivesNoDriverData)
{
    const TestDevmode bare;
    const std::string text = TextOf(TicketFrom(TestDevmode(std::span(m_target)), TicketOf("tk", "")).Get());
    const auto document = LoadDocument(text);
    PrintTicketXmlDocument ticket(document.Get());
    XDevmode wrapper(bare.Get());
    const auto before = bare.Bytes();
    EXPECT_EQ(S_OK, Access::GetDriverData(*object, ticket, wrapper));
    EXPECT_EQ(before, bare.Bytes());
    EXPECT_EQ(S_FALSE, Access::SetDriverData(*object, ticket, wrapper));
    EXPECT_EQ(text, TextOf(document.Get()));
}

TEST_F(PrivateFeatures, DamagedAndForeignDriverDataIsIgnored)
{
    Bytes source = DevmodeWith(200);
    const auto part = PartOf(source);
    const std::span<const std::byte> used = part.first(200);
    const std::string good = Record(used);
    ASSERT_TRUE(Restores(good));
    for (std::size_t at = 0; at < good.size(); ++at)
    {
        std::string changed = good;
        changed[at] = changed[at] == 'A' ? 'B' : 'A';
        EXPECT_FALSE(Restores(changed)) << "character " << at;
        EXPECT_FALSE(Restores(good.substr(0, at))) << "first " << at;
    }

    Bytes foreign(used.begin(), used.end());
    foreign[Format::kSignatureOffset] ^= std::byte{1};
    Bytes resized(used.begin(), used.end());
    resized[Format::kSizeOffset] ^= std::byte{1};
    Bytes longer(part.begin(), part.end());
    longer.resize(Format::kSize + 1);
    struct Row
    {
        const char* name;
        std::string text;
        bool restores;
    };
    const Row rows[] = {
        {"three bytes", "AAAA", false},
        {"a CRC of nothing", Record({}), false},
        {"a wrong CRC", Record(used, 1), false},
        {"another signature", Record(foreign), false},
        {"another size", Record(resized), false},
        {"no entries' begin", Record(part.first(Format::kEntriesOffset - 1)), false},
        {"the least", Record(part.first(Format::kEntriesOffset)), true},
        {"the most", Record(part), true},
        {"one byte more", Record(longer), false},
        {"no Base64", "%%%", false},
        {"a megabyte", std::string(1 << 20, 'A'), false},
        {"lines and blanks", good.substr(0, 40) + "\r\n \t" + good.substr(40) + "\n", true},
        {"nothing", "", false},
        {"blanks beyond measure", good.substr(0, 40) + std::string(80000, '\n') + good.substr(40), false},
        {"a second one",
         "x</psf:Value></psf:ParameterInit><psf:ParameterInit name='tk:JobTavlenDriverData'><psf:Value>" + good, false},
    };
    for (const Row& row : rows)
        EXPECT_EQ(row.restores, Restores(row.text)) << row.name;
}

} // namespace
