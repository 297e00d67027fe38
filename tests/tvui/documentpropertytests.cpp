// DocumentPropertiesW: the driver's devmode, and what it takes over from an application's.
#include <algorithm>

#include "complugins/oemdevmode.h"
#include "complugins/xdevmode.h"
#include "devmode.h"
#include "devmodefields.h"
#include "devmodereport.h"
#include "devmodesettings.h"
#include "printerhandle.h"
#include "tests/tvui/installedprinter.h"

#include <tvcore/productdata.h>
#include <tvui/defaultdevmode.h>
#include <tvutil/exceptions.h>
#include <tvutil/printdriver.h>

namespace
{

namespace Format = OemDevmodeFormat;

using DocumentProperties = InstalledPrinter;

TEST_F(DocumentProperties, AreTheModelsDefaults)
{
    for (const char* const model : {kPostScriptModel, kUnidrvModel})
    {
        SCOPED_TRACE(model);
        Install(model);
        const ByteBuffer devmode = Properties();
        EXPECT_EQ(devmode, MakeDefaultDevmode(ProductData(ParsePrinterModel(m_model.dump(), "")), m_name));
        EXPECT_EQ(devmode.size(), static_cast<std::size_t>(Ask(DC_SIZE) + Ask(DC_EXTRA)));
        const DEVMODEW fields = PublicPart(devmode);
        EXPECT_EQ(CXString(fields.dmDeviceName), m_name.Mid(0, CCHDEVICENAME - 1));
        EXPECT_EQ(fields.dmPaperSize, 9);
        EXPECT_EQ(fields.dmPrintQuality, 600);
        EXPECT_EQ(fields.dmDefaultSource, 7);
        EXPECT_EQ(fields.dmMediaType, 5001u);
        EXPECT_EQ(fields.dmFields & ~static_cast<DWORD>(Ask(DC_FIELDS)), 0u);
    }
}

TEST_F(DocumentProperties, TakeOverWhatThePrinterCanDo)
{
    constexpr DWORD kCustom = DM_PAPERWIDTH | DM_PAPERLENGTH;
    struct Word
    {
        const char* field = nullptr;
        WORD value = 0;
    };
    struct Case
    {
        const char* name = "";
        DWORD fields = 0;
        const WCHAR* form = W("");
        Word input[3];
        const WCHAR* formOfResult = W("A4");
        Word result[3];
    };
    const WCHAR* const none = W("");
    const WCHAR* const own = W("A4");
    const WCHAR* const custom = W("Custom");
    const Case cases[] = {
        // clang-format off
        {"an unclaimed field", 0, none, {{"dmCopies", 7}}, own, {{"dmCopies", 1}}},
        {"copies", DM_COPIES, none, {{"dmCopies", 7}}, own, {{"dmCopies", 7}}},
        {"too many copies", DM_COPIES, none, {{"dmCopies", 32767}}, own, {{"dmCopies", 999}}},
        {"no copies", DM_COPIES, none, {{"dmCopies", 0xFFFD}}, own, {{"dmCopies", 1}}},
        {"landscape", DM_ORIENTATION, none, {{"dmOrientation", 2}}, own, {{"dmOrientation", 2}}},
        {"no orientation", DM_ORIENTATION, none, {{"dmOrientation", 3}}, own, {{"dmOrientation", 1}}},
        {"a paper", DM_PAPERSIZE, none, {{"dmPaperSize", 11}}, W("A5"), {{"dmPaperSize", 11}, {"dmPaperWidth", 1480}, {"dmPaperLength", 2100}}},
        {"an unknown paper", DM_PAPERSIZE, none, {{"dmPaperSize", 8}}, own, {{"dmPaperSize", 9}}},
        {"a form by name", DM_FORMNAME, W("letter"), {}, W("Letter"), {{"dmPaperSize", 1}}},
        {"number before name", DM_PAPERSIZE | DM_FORMNAME, W("Letter"), {{"dmPaperSize", 11}}, W("A5"), {{"dmPaperSize", 11}}},
        {"a name without its end", DM_FORMNAME, W("xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx"), {}, own, {{"dmPaperSize", 9}}},
        {"a size", kCustom, none, {{"dmPaperWidth", 1000}, {"dmPaperLength", 2000}}, custom, {{"dmPaperWidth", 1000}, {"dmPaperLength", 2000}}},
        {"number before size", kCustom | DM_PAPERSIZE, none, {{"dmPaperSize", 11}, {"dmPaperWidth", 1000}, {"dmPaperLength", 2000}}, W("A5"), {{"dmPaperWidth", 1480}}},
        {"too wide", kCustom | DM_PAPERSIZE, none, {{"dmPaperSize", DMPAPER_USER}, {"dmPaperWidth", 3000}, {"dmPaperLength", 2000}}, custom, {{"dmPaperWidth", 2100}}},
        {"a resolution", DM_PRINTQUALITY, none, {{"dmPrintQuality", 1200}}, own, {{"dmPrintQuality", 1200}, {"dmYResolution", 1200}}},
        {"half a resolution", DM_PRINTQUALITY | DM_YRESOLUTION, none, {{"dmPrintQuality", 1200}, {"dmYResolution", 600}}, own, {{"dmPrintQuality", 600}}},
        {"a bin", DM_DEFAULTSOURCE, none, {{"dmDefaultSource", 3}}, own, {{"dmDefaultSource", 3}}},
        {"an unknown bin", DM_DEFAULTSOURCE, none, {{"dmDefaultSource", 260}}, own, {{"dmDefaultSource", 7}}},
        {"a media type", DM_MEDIATYPE, none, {{"dmMediaType", 6800}}, own, {{"dmMediaType", 6800}}},
        {"an unknown media type", DM_MEDIATYPE, none, {{"dmMediaType", 3}}, own, {{"dmMediaType", 5001}}},
        {"colour where there is none", DM_COLOR, none, {{"dmColor", DMCOLOR_COLOR}}, own, {{"dmColor", DMCOLOR_MONOCHROME}}},
        {"duplex", DM_DUPLEX, none, {{"dmDuplex", DMDUP_HORIZONTAL}}, own, {{"dmDuplex", DMDUP_HORIZONTAL}}},
        {"collation", DM_COLLATE, none, {{"dmCollate", DMCOLLATE_FALSE}}, own, {{"dmCollate", DMCOLLATE_FALSE}}},
        // clang-format on
    };
    Install(kUnidrvModel);
    for (const Case& test : cases)
    {
        SCOPED_TRACE(test.name);
        DEVMODEW input{};
        for (const Word& word : test.input)
            if (word.field != nullptr)
                memcpy(reinterpret_cast<BYTE*>(&input) + FindDevmodeField(word.field)->offset, &word.value,
                       sizeof(WORD));
        const WStringView form = test.form;
        std::copy(form.begin(), form.end(), input.dmFormName);
        input.dmSize = sizeof input;
        input.dmFields = test.fields;
        const DEVMODEW result = PublicPart(Properties(&input));
        const auto fields = DevmodeFieldsToJson(result, sizeof result);
        for (const Word& word : test.result)
            EXPECT_TRUE(word.field == nullptr || fields[word.field] == word.value)
                << word.field << ": " << fields[word.field];
        EXPECT_EQ(fields["dmFormName"], CXString(test.formOfResult).ToUtf8());
        EXPECT_EQ(result.dmFields & kCustom, test.fields == kCustom ? kCustom : 0u);
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
    ApplySettings({"feature.43=12"}, changed);
    return ByteBuffer(changed.Bytes().data(), changed.Bytes().size());
}

bool HasPaper(const nlohmann::ordered_json& papers, int paperId)
{
    return std::any_of(papers.begin(), papers.end(),
                       [paperId](const auto& form) { return form["paperId"] == paperId; });
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
    const nlohmann::ordered_json papers = DescribeDevmode(HostDevmode(fresh))["papers"];
    ASSERT_FALSE(HasPaper(papers, kLastPaper));
    ByteBuffer later(settings.bytes());
    later.data()[5] = 2;
    ByteBuffer contradiction(settings.bytes());
    contradiction.data()[2] = 1; // 65,536 bytes more than there are
    ByteBuffer spoilt = WithTwelveCopies(Store(fresh, {}, 9));
    spoilt.data()[spoilt.size() - 1] = 1;
    struct Case
    {
        const char* name;
        ByteBuffer input;
        int copies;
        std::size_t unknownSize;
        std::size_t papers;
    };
    const Case cases[] = {
        {"sound settings", WithTwelveCopies(Store(fresh, settings, 9)), 12, 9, papers.size()},
        {"no list yet", WithTwelveCopies(Store(fresh, {}, 9)), 12, 9, papers.size()},
        {"room for a list of one form", WithTwelveCopies(Store(fresh, {}, 5700)), 12, 5700, 1},
        {"no room", WithTwelveCopies(Store(fresh, {}, 5800)), 12, 5800, 0},
        {"unreadable settings", Store(fresh, contradiction, 9), 0, 9, papers.size()},
        {"settings of a later format", Store(fresh, later, 9), 0, 9, 0},
        {"a wrong CRC", spoilt, 0, 0, papers.size()},
    };
    for (const Case& test : cases)
    {
        SCOPED_TRACE(test.name);
        ByteBuffer input = test.input;
        input.data()[sizeof(DEVMODEW) + 136] = 3; // a core setting
        auto* const devmode = reinterpret_cast<DEVMODEW*>(input.data());
        devmode->dmPaperSize = kLastPaper;
        const ByteBuffer merged = Properties(devmode);
        EXPECT_EQ(PublicPart(merged).dmPaperSize, kLastPaper);
        EXPECT_EQ(merged.data()[sizeof(DEVMODEW) + 136], 3);
        const nlohmann::ordered_json after = DescribeDevmode(HostDevmode(merged));
        EXPECT_EQ(after["features"].value("43", 0), test.copies);
        EXPECT_EQ(EntryOf(merged, kUnknownKey).size(), test.unknownSize);
        EXPECT_EQ(after["papers"].size(), test.papers);
        EXPECT_EQ(HasPaper(after["papers"], kLastPaper), test.papers != 0);
        EXPECT_EQ(test.papers == 0, SettingsOf(merged) == SettingsOf(test.input));
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
    struct Case
    {
        const char* name;
        std::size_t changedAt; // by 8
        std::size_t added;     // bytes before the maker's part
        std::size_t behind;    // bytes behind it
        const ByteBuffer& expected;
    };
    const Case cases[] = {
        {"the same", 0, 0, 0, own},
        {"more behind it", 0, 0, 4, own},
        {"a longer core part", kCore + Format::kPostScriptSizeOffset, 8, 0, ownWithoutCore},
        {"a core part of another size than it says", kCore + Format::kPostScriptSizeOffset, 0, 8, fresh},
        {"another size of the maker's part", kOem + Format::kSizeOffset, 0, 0, fresh},
        {"another maker's", kOem + Format::kSignatureOffset, 0, 0, fresh},
    };
    for (const Case& test : cases)
    {
        std::vector<std::byte> input(own.bytes().begin(), own.bytes().end());
        if (test.changedAt != 0)
            input[test.changedAt] ^= std::byte{8};
        input.insert(input.begin() + kOem, test.added, std::byte{});
        input.resize(input.size() + test.behind);
        const auto extra = static_cast<WORD>(input.size() - sizeof(DEVMODEW));
        std::memcpy(input.data() + offsetof(DEVMODEW, dmDriverExtra), &extra, sizeof extra);
        EXPECT_EQ(Properties(reinterpret_cast<const DEVMODEW*>(input.data())), test.expected) << test.name;
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
    struct Case
    {
        const char* name;
        void (*change)(Header& header); // which has just enough room
        LONG answer;
        bool writes;
    };
    constexpr Case kCases[] = {
        {"the size", [](Header& header) { header.fMode = header.cbOut = 0; }, kSize, false},
        {"nowhere to write", [](Header& header) { header.pdmOut = nullptr; }, kSize, false},
        {"just enough", [](Header&) {}, IDOK, true},
        {"room to spare", [](Header& header) { header.cbOut += 5; }, IDOK, true},
        {"a spooler that does not say", [](Header& header) { header.cbOut = 0; }, IDOK, true},
        {"one byte short", [](Header& header) { --header.cbOut; }, -1, false},
        {"a single byte", [](Header& header) { header.cbOut = 1; }, -1, false},
        {"no output asked for", [](Header& header) { header.fMode = DM_IN_BUFFER; }, IDOK, false},
        {"a dialogue", [](Header& header) { header.fMode |= DM_IN_PROMPT; }, -1, false},
        {"a shorter header", [](Header& header) { --header.cbSize; }, -1, false},
        {"no printer", [](Header& header) { header.pszPrinterName = nullptr; }, -1, false},
    };
    std::vector<BYTE> output;
    for (const Case& test : kCases)
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
    // Another printer of that name is not asked until the cache is cleared.
    Install(kUnidrvModel);
    const Printer printer(m_name);
    EXPECT_EQ(printer.GetUserDefaultDevmode(), first);
    printer.ClearDevmode1stLevelCache();
    EXPECT_EQ(printer.GetUserDefaultDevmode(), Properties());
    printer.ClearDevmode1stLevelCache();
    EXPECT_THROW(static_cast<void>(Printer().GetUserDefaultDevmode()), ExceptionPrinterFailure);
}

TEST_F(DocumentProperties, AreCompleteWhenTheSetUpSaysSo)
{
    Install(kUnidrvModel);
    const PrinterHandle printer = PrinterHandle::Open(m_name.ToUtf8(), PrinterHandle::Access::Administer);
    EXPECT_EQ(PrintDriver().GetInstallationStateFromHandle(printer.Get()), 4u);
    Printer(printer.Get()).SetPrinterDataW(PrintDriver::kInstallationStateValueName, REG_SZ, W("444"), 8);
    EXPECT_EQ(PrintDriver().GetInstallationStateFromHandle(printer.Get()), 0u);
}

} // namespace
