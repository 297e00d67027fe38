// DocumentPropertiesW: the driver's devmode, and what it takes over from an application's.
#include <algorithm>
#include <sstream>
#include <tuple>

#include "complugins/customforms.h"
#include "complugins/oemdevmode.h"
#include "complugins/xdevmode.h"
#include "devmode.h"
#include "devmodefields.h"
#include "devmodereport.h"
#include "devmodesettings.h"
#include "tests/tvui/installedprinter.h"

#include <tvcore/customsizenumber.h>

namespace
{

namespace Format = OemDevmodeFormat;

using DocumentProperties = InstalledPrinter;

// "dmCopies=7 dmFormName=A5"
std::vector<std::pair<std::string, std::string>> FieldsOf(const char* text)
{
    std::vector<std::pair<std::string, std::string>> fields;
    std::istringstream words(text);
    for (std::string name, value; std::getline(words, name, '=') && words >> value; words >> std::ws)
        fields.emplace_back(name, value);
    return fields;
}

// Claims these fields; the host would refuse some of the values.
DEVMODEW Claims(const char* text)
{
    DEVMODEW devmode{};
    devmode.dmSize = sizeof devmode;
    for (const auto& [name, value] : FieldsOf(text))
    {
        const DevmodeField& field = *FindDevmodeField(name);
        const bool isNumber = field.type != DevmodeField::Type::Text;
        const auto number = static_cast<WORD>(isNumber ? std::stoi(value) : 0);
        if (isNumber)
            memcpy(reinterpret_cast<BYTE*>(&devmode) + field.offset, &number, sizeof number);
        else
            std::copy(value.begin(), value.end(), devmode.dmFormName); // ASCII
        devmode.dmFields |= field.flag;
    }
    return devmode;
}

TEST_F(DocumentProperties, TakeOverWhatThePrinterCanDo)
{
    constexpr DWORD kCustom = DM_PAPERWIDTH | DM_PAPERLENGTH;
    constexpr std::pair<const char*, const char*> kRows[] = {
        {"dmCopies=7", "dmCopies=7"},
        {"dmCopies=7 dmFields=0", "dmCopies=1"}, // not claimed
        {"dmCopies=32767", "dmCopies=999"},
        {"dmCopies=65533", "dmCopies=1"},
        {"dmOrientation=2", "dmOrientation=2"},
        {"dmOrientation=3", "dmOrientation=1"},
        {"dmPaperSize=11", "dmPaperSize=11 dmPaperWidth=1480 dmPaperLength=2100 dmFormName=A5"},
        {"dmPaperSize=8", "dmPaperSize=9 dmFormName=A4"},
        {"dmFormName=letter", "dmPaperSize=1 dmFormName=Letter"},
        {"dmPaperSize=11 dmFormName=Letter", "dmPaperSize=11 dmFormName=A5"},
        {"dmFormName=32-characters-without-their-end.", "dmPaperSize=9 dmFormName=A4"},
        {"dmPaperWidth=1000 dmPaperLength=2000", "dmPaperWidth=1000 dmPaperLength=2000 dmFormName=Custom"},
        {"dmPaperSize=256 dmPaperWidth=3000 dmPaperLength=2000", "dmPaperWidth=2100 dmFormName=Custom"}, // too wide
        {"dmPaperSize=11 dmPaperWidth=1000 dmPaperLength=2000", "dmPaperWidth=1480 dmFormName=A5"},
        {"dmPrintQuality=1200", "dmPrintQuality=1200 dmYResolution=1200"},
        {"dmPrintQuality=1200 dmYResolution=600", "dmPrintQuality=600 dmYResolution=600"},
        {"dmDefaultSource=3", "dmDefaultSource=3"},
        {"dmDefaultSource=260", "dmDefaultSource=7"},
        {"dmMediaType=6800", "dmMediaType=6800"},
        {"dmMediaType=3", "dmMediaType=5001"},
        {"dmColor=2", "dmColor=1"}, // a monochrome printer
        {"dmDuplex=3 dmCollate=0", "dmDuplex=3 dmCollate=0"},
    };
    Install(kUnidrvModel);
    const DEVMODEW fresh = PublicPart(Properties());
    EXPECT_EQ(CXString(fresh.dmDeviceName), m_name.Mid(0, CCHDEVICENAME - 1));
    EXPECT_EQ(fresh.dmFields & ~static_cast<DWORD>(Ask(DC_FIELDS)), 0u);
    for (const auto& [given, expected] : kRows)
    {
        SCOPED_TRACE(given);
        const DEVMODEW input = Claims(given);
        const DEVMODEW result = PublicPart(Properties(&input));
        const auto fields = DevmodeFieldsToJson(result, sizeof result);
        for (const auto& [name, value] : FieldsOf(expected))
            EXPECT_EQ(fields[name].is_string() ? fields[name].get<std::string>() : fields[name].dump(), value) << name;
        EXPECT_EQ(result.dmFields & kCustom, input.dmFields == kCustom ? kCustom : 0u);
    }
}

constexpr std::uint16_t kUnknownKey = 77; // of an entry that only an application knows

// An entry of the maker's part; empty when there is none.
ByteBuffer EntryOf(ByteBuffer devmode, std::uint16_t key)
{
    XDevmode wrapper(reinterpret_cast<DEVMODEW*>(devmode.data()));
    const ByteBuffer* const entry = wrapper.GetPropertyBagEntry(key);
    return entry != nullptr ? *entry : ByteBuffer();
}

ByteBuffer SettingsOf(const ByteBuffer& devmode)
{
    return EntryOf(devmode, Format::kPersistentAttributesKey);
}

// The devmode with other settings and the unknown entry.
ByteBuffer Store(ByteBuffer devmode, const ByteBuffer& settings, std::size_t unknownSize)
{
    XDevmode wrapper(reinterpret_cast<DEVMODEW*>(devmode.data()));
    wrapper.SetPropertyBagEntry(Format::kPersistentAttributesKey, settings);
    wrapper.SetPropertyBagEntry(kUnknownKey, ByteBuffer(unknownSize));
    EXPECT_TRUE(wrapper.CommitToDevmode());
    return devmode;
}

Devmode HostDevmode(const ByteBuffer& devmode)
{
    return Devmode::FromBytes({reinterpret_cast<const char*>(devmode.data()), devmode.size()}, "a test's");
}

ByteBuffer WithTwelveCopies(const ByteBuffer& devmode)
{
    Devmode changed = HostDevmode(devmode);
    ApplySettings({"feature.43=12"}, changed, nullptr);
    return ByteBuffer(changed.Bytes().data(), changed.Bytes().size());
}

bool HasPaper(const nlohmann::ordered_json& papers, int paperId)
{
    return std::any_of(papers.begin(), papers.end(),
                       [paperId](const auto& form) { return form["paperId"] == paperId; });
}

TEST_F(DocumentProperties, TakeAndCarryACustomSizeOfTheUser)
{
    Install(kPostScriptModel);
    const CXString name = CXString(W("Strip of ")) + m_name;
    ASSERT_TRUE(CustomForms::Add({name, 100000, 139700, false}));
    const int number = CustomSizeNumber(name);
    DEVMODEW input{};
    input.dmSize = sizeof input;
    input.dmFields = DM_PAPERSIZE;
    input.dmPaperSize = static_cast<short>(number);
    const ByteBuffer merged = Properties(&input);
    ASSERT_TRUE(CustomForms::Remove(name));
    EXPECT_EQ(PublicPart(merged).dmPaperSize, input.dmPaperSize);
    EXPECT_EQ(PublicPart(merged).dmPaperWidth, 1000);
    EXPECT_EQ(PublicPart(merged).dmPaperLength, 1397);
    EXPECT_TRUE(HasPaper(DescribeDevmode(HostDevmode(merged), nullptr)["papers"], number));
    EXPECT_EQ(PublicPart(Properties(&input)).dmPaperSize, PublicPart(Properties()).dmPaperSize) << "it is gone";
}

// The list of papers is longer than a devmode carries: the merged paper is on it all the same.
TEST_F(DocumentProperties, KeepTheSettingsWhenThePaperChanges)
{
    constexpr int kLastPaper = 1099;
    const auto addForms = [](nlohmann::json& model)
    {
        auto form =
            nlohmann::json::parse(R"({"width": 1000, "length": 999, "units": 7491, "type": 25003, "valueId": 0})");
        for (int paper = 1000; paper <= kLastPaper; ++paper)
        {
            form["paperId"] = paper;
            form["name"] = "A form with a name of some length " + std::to_string(paper);
            model["forms"].push_back(form);
        }
    };
    Install(kPostScriptModel, addForms);
    const ByteBuffer fresh = Properties();
    const ByteBuffer settings = SettingsOf(fresh);
    const nlohmann::ordered_json papers = DescribeDevmode(HostDevmode(fresh), nullptr)["papers"];
    ASSERT_FALSE(HasPaper(papers, kLastPaper));
    ByteBuffer later(settings.bytes());
    later.data()[5] = 2;
    ByteBuffer contradiction(settings.bytes());
    contradiction.data()[2] = 1; // 65,536 bytes more than there are
    ByteBuffer spoilt = WithTwelveCopies(Store(fresh, {}, 9));
    spoilt.data()[spoilt.size() - 1] = 1;
    const std::tuple<const char*, ByteBuffer, int, std::size_t, std::size_t> cases[] = {
        {"sound settings", WithTwelveCopies(Store(fresh, settings, 9)), 12, 9, papers.size()},
        {"no list yet", WithTwelveCopies(Store(fresh, {}, 9)), 12, 9, papers.size()},
        {"room for a list of one form", WithTwelveCopies(Store(fresh, {}, 5700)), 12, 5700, 1},
        {"no room", WithTwelveCopies(Store(fresh, {}, 5800)), 12, 5800, 0},
        {"unreadable settings", Store(fresh, contradiction, 9), 0, 9, papers.size()},
        {"settings of a later format", Store(fresh, later, 9), 0, 9, 0},
        {"a wrong CRC", spoilt, 0, 0, papers.size()},
    };
    for (const auto& [name, given, copies, unknownSize, paperCount] : cases)
    {
        SCOPED_TRACE(name);
        ByteBuffer input = given;
        input.data()[sizeof(DEVMODEW) + 136] = 3; // a core setting
        auto* const devmode = reinterpret_cast<DEVMODEW*>(input.data());
        devmode->dmPaperSize = kLastPaper;
        const ByteBuffer merged = Properties(devmode);
        EXPECT_EQ(PublicPart(merged).dmPaperSize, kLastPaper);
        EXPECT_EQ(merged.data()[sizeof(DEVMODEW) + 136], 3);
        const nlohmann::ordered_json after = DescribeDevmode(HostDevmode(merged), nullptr);
        EXPECT_EQ(after["features"].value("43", 0), copies);
        EXPECT_EQ(EntryOf(merged, kUnknownKey).size(), unknownSize);
        EXPECT_EQ(after["papers"].size(), paperCount);
        EXPECT_EQ(HasPaper(after["papers"], kLastPaper), paperCount != 0);
        EXPECT_EQ(paperCount == 0, SettingsOf(merged) == SettingsOf(given));
    }
}

TEST_F(DocumentProperties, KeepThePrivatePartsOfTheSameDriverOnly)
{
    Install(kPostScriptModel);
    const ByteBuffer fresh = Properties();
    constexpr std::size_t kCore = sizeof(DEVMODEW);
    constexpr std::size_t kOem = kCore + 708;
    constexpr std::size_t kCoreSetting = kCore + 136;
    ByteBuffer own = WithTwelveCopies(Store(fresh, SettingsOf(fresh), 9));
    own.data()[kCoreSetting] = 3;
    ByteBuffer ownWithoutCore = own;
    ownWithoutCore.data()[kCoreSetting] = 0;
    // A byte is changed by 8; bytes are added before the maker's part and behind it.
    const std::tuple<const char*, std::size_t, std::size_t, std::size_t, const ByteBuffer&> cases[] = {
        {"the same", 0, 0, 0, own},
        {"more behind it", 0, 0, 4, own},
        {"a longer core part", kCore + Format::kPostScriptSizeOffset, 8, 0, ownWithoutCore},
        {"a core part of another size than it says", kCore + Format::kPostScriptSizeOffset, 0, 8, fresh},
        {"another size of the maker's part", kOem + Format::kSizeOffset, 0, 0, fresh},
        {"another maker's", kOem + Format::kSignatureOffset, 0, 0, fresh},
    };
    for (const auto& [name, changedAt, added, behind, expected] : cases)
    {
        std::vector<std::byte> input(own.bytes().begin(), own.bytes().end());
        if (changedAt != 0)
            input[changedAt] ^= std::byte{8};
        input.insert(input.begin() + kOem, added, std::byte{});
        input.resize(input.size() + behind);
        const auto extra = static_cast<WORD>(input.size() - sizeof(DEVMODEW));
        std::memcpy(input.data() + offsetof(DEVMODEW, dmDriverExtra), &extra, sizeof extra);
        EXPECT_EQ(Properties(reinterpret_cast<const DEVMODEW*>(input.data())), expected) << name;
    }
}

TEST_F(DocumentProperties, OfATruncatedDevmodeAreReadToItsEnd)
{
    Install(kUnidrvModel);
    const ConfigurationModule module;
    WideString name = MutableName();
    for (const WORD size : {WORD{0}, WORD{1}, WORD{75}, WORD{76}, WORD{87}, WORD{88}, WORD{219}})
    {
        SCOPED_TRACE(size);
        std::vector<BYTE> input(std::max<std::size_t>(size, offsetof(DEVMODEW, dmFields)) + sizeof(DWORD));
        input.shrink_to_fit(); // a read beyond it is seen by the address sanitizer
        DEVMODEW claims{};
        claims.dmSize = size;
        claims.dmFields = ~DWORD{0};
        claims.dmCopies = 5;
        claims.dmMediaType = 6800;
        memcpy(input.data(), &claims, std::min(input.size(), sizeof claims));

        std::vector<BYTE> output(sizeof(DEVMODEW) + 564 + Format::kSize, BYTE{0xA5});
        const std::vector<BYTE> untouched = output;
        auto* const devmode = reinterpret_cast<DEVMODEW*>(input.data());
        DOCUMENTPROPERTYHEADER header =
            ConfigurationModule::Header(name.data(), devmode, output, DM_IN_BUFFER | DM_OUT_BUFFER);
        const bool isTaken = size >= 76;
        EXPECT_EQ(module.PropertySheets(nullptr, &header), isTaken ? IDOK : -1);
        EXPECT_TRUE(isTaken || (GetLastError() == ERROR_INVALID_PARAMETER && output == untouched));
        if (!isTaken)
            continue;
        const DEVMODEW fields = PublicPart(ByteBuffer(output.data(), output.size()));
        EXPECT_EQ(fields.dmCopies, size >= 88 ? 5 : 1);
        EXPECT_EQ(fields.dmMediaType, size >= 204 ? 6800u : 5001u);
    }
}

TEST_F(DocumentProperties, AreWrittenWhole)
{
    Install(kUnidrvModel);
    const ConfigurationModule module;
    WideString name = MutableName();
    constexpr LONG kSize = sizeof(DEVMODEW) + 564 + Format::kSize;
    using Header = DOCUMENTPROPERTYHEADER;
    constexpr struct
    {
        const char* name;
        void (*change)(Header& header); // which has just enough room
        LONG answer;
        bool writes;
    } kCases[] = {
        {"the size", [](Header& header) { header.fMode = header.cbOut = 0; }, kSize, false},
        {"nowhere to write", [](Header& header) { header.pdmOut = nullptr; }, kSize, false},
        {"just enough", [](Header&) {}, IDOK, true},
        {"room to spare", [](Header& header) { header.cbOut += 5; }, IDOK, true},
        {"a spooler that does not say", [](Header& header) { header.cbOut = 0; }, IDOK, true},
        {"one byte short", [](Header& header) { --header.cbOut; }, -1, false},
        {"no output asked for", [](Header& header) { header.fMode = DM_IN_BUFFER; }, IDOK, false},
        {"a dialogue", [](Header& header) { header.fMode |= DM_IN_PROMPT; }, -1, false},
        {"a shorter header", [](Header& header) { --header.cbSize; }, -1, false},
        {"no printer", [](Header& header) { header.pszPrinterName = nullptr; }, -1, false},
    };
    std::vector<BYTE> output;
    for (const auto& test : kCases)
    {
        SCOPED_TRACE(test.name);
        output.assign(kSize, BYTE{0xA5});
        const std::vector<BYTE> untouched = output;
        Header header = ConfigurationModule::Header(name.data(), nullptr, output, DM_OUT_BUFFER);
        test.change(header);
        EXPECT_EQ(module.PropertySheets(nullptr, &header), test.answer);
        EXPECT_EQ(output != untouched, test.writes);
        EXPECT_TRUE(test.answer != kSize || header.cbOut == DWORD{kSize}) << header.cbOut;
    }
    Header header = ConfigurationModule::Header(name.data(), nullptr, output, DM_OUT_BUFFER | DM_IN_BUFFER);
    EXPECT_EQ(module.PropertySheets(&output, &header), -1); // property sheets
    EXPECT_EQ(module.PropertySheets(nullptr, nullptr), -1);

    // In place: the application's devmode is the output.
    header.pdmIn = header.pdmOut;
    header.pdmIn->dmSize = sizeof(DEVMODEW);
    header.pdmIn->dmDriverExtra = 0;
    header.pdmIn->dmFields = DM_COPIES;
    header.pdmIn->dmCopies = 12;
    EXPECT_EQ(module.PropertySheets(nullptr, &header), IDOK);
    EXPECT_EQ(PublicPart(ByteBuffer(output.data(), output.size())).dmCopies, 12);
}

TEST_F(DocumentProperties, AreKeptByThePrinterAndTheProcess)
{
    Install(kPostScriptModel);
    const ByteBuffer first = Properties();
    EXPECT_EQ(Printer(m_name).GetUserDefaultDevmode(), first);
    // Another printer of that name has caches of its own, and their filling clears this one.
    Install(kUnidrvModel);
    const Printer printer(m_name);
    const ByteBuffer second = Properties();
    EXPECT_EQ(printer.GetUserDefaultDevmode(), second);
    EXPECT_NE(second, first);
    // The driver is not asked again until the cache is cleared.
    ChangeInstalledModel([](nlohmann::json& model) { std::swap(model["resolutions"][0], model["resolutions"][1]); });
    EXPECT_EQ(printer.GetUserDefaultDevmode(), second);
    printer.ClearDevmode1stLevelCache();
    EXPECT_EQ(printer.GetUserDefaultDevmode(), Properties());
    EXPECT_NE(Properties(), second);
}

} // namespace
