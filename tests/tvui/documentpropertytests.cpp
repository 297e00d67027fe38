// DocumentPropertiesW: the driver's devmode, and what it takes over from an application's.
#include <algorithm>

#include "complugins/devicepaperlist.h"
#include "complugins/oemdevmodelocation.h"
#include "complugins/xdevmode.h"
#include "printerhandle.h"
#include "tests/tvui/installedprinter.h"

#include <tvcore/datamodelids.h>
#include <tvcore/productdata.h>
#include <tvui/defaultdevmode.h>
#include <tvutil/exceptions.h>
#include <tvutil/persistentattributes.h>
#include <tvutil/printdriver.h>

namespace
{

namespace Format = OemDevmodeFormat;

class DocumentProperties : public InstalledPrinter
{
};

DOCUMENTPROPERTYHEADER Header(LPWSTR name, DEVMODEW* input, std::vector<BYTE>& output, DWORD mode)
{
    DOCUMENTPROPERTYHEADER header{};
    header.cbSize = sizeof header;
    header.pszPrinterName = name;
    header.pdmIn = input;
    header.pdmOut = reinterpret_cast<DEVMODEW*>(output.data());
    header.cbOut = static_cast<DWORD>(output.size());
    header.fMode = mode;
    return header;
}

TEST_F(DocumentProperties, AreTheModelsDefaultsWithBothPrivateParts)
{
    struct Case
    {
        const char* model;
        std::size_t coreSize;
        CoreDriverLayout layout;
        short color;
    };
    constexpr Case kCases[] = {
        {kPostScriptModel, 708, CoreDriverLayout::PostScript, DMCOLOR_COLOR},
        {kUnidrvModel, 564, CoreDriverLayout::Unidrv, DMCOLOR_MONOCHROME},
    };
    for (const Case& test : kCases)
    {
        SCOPED_TRACE(test.model);
        Install(test.model);
        const ByteBuffer devmode = Properties();
        const DEVMODEW fields = PublicPart(devmode);
        ASSERT_EQ(devmode.size(), std::size_t{fields.dmSize} + fields.dmDriverExtra);
        EXPECT_EQ(devmode.size(), static_cast<std::size_t>(Ask(DC_SIZE) + Ask(DC_EXTRA)));
        EXPECT_EQ(CXString(fields.dmDeviceName), Name().Mid(0, CCHDEVICENAME - 1));
        EXPECT_EQ(fields.dmPaperSize, 9);
        EXPECT_EQ(CXString(fields.dmFormName), W("A4"));
        EXPECT_EQ(fields.dmPrintQuality, 600);
        EXPECT_EQ(fields.dmDefaultSource, 7);
        EXPECT_EQ(fields.dmMediaType, 5001u);
        EXPECT_EQ(fields.dmColor, test.color);
        EXPECT_EQ(fields.dmFields & ~static_cast<DWORD>(Ask(DC_FIELDS)), 0u);

        const auto location = LocateOemDevmode(devmode.bytes().subspan(fields.dmSize));
        ASSERT_TRUE(location.has_value());
        EXPECT_EQ(location->layout, test.layout);
        EXPECT_EQ(location->offset, test.coreSize);
        EXPECT_EQ(devmode, MakeDefaultDevmode(ProductData(Model()), Name()));
    }
}

TEST_F(DocumentProperties, TakeOverWhatThePrinterCanDo)
{
    constexpr std::size_t kOrientation = offsetof(DEVMODEW, dmOrientation);
    constexpr std::size_t kPaper = offsetof(DEVMODEW, dmPaperSize);
    constexpr std::size_t kLength = offsetof(DEVMODEW, dmPaperLength);
    constexpr std::size_t kWidth = offsetof(DEVMODEW, dmPaperWidth);
    constexpr std::size_t kCopies = offsetof(DEVMODEW, dmCopies);
    constexpr std::size_t kBin = offsetof(DEVMODEW, dmDefaultSource);
    constexpr std::size_t kXResolution = offsetof(DEVMODEW, dmPrintQuality);
    constexpr std::size_t kColor = offsetof(DEVMODEW, dmColor);
    constexpr std::size_t kDuplex = offsetof(DEVMODEW, dmDuplex);
    constexpr std::size_t kYResolution = offsetof(DEVMODEW, dmYResolution);
    constexpr std::size_t kCollate = offsetof(DEVMODEW, dmCollate);
    constexpr std::size_t kMedia = offsetof(DEVMODEW, dmMediaType);
    constexpr DWORD kCustom = DM_PAPERWIDTH | DM_PAPERLENGTH;
    struct Word
    {
        std::size_t place = 0; // of the devmode; 0 for none
        WORD value = 0;
    };
    struct Case
    {
        const char* name = "";
        DWORD fields = 0;
        Word input[3];
        Word result[3];
        const WCHAR* form = W("");
        const WCHAR* formOfResult = W("A4");
    };
    const Case cases[] = {
        {"an unclaimed field", 0, {{kCopies, 7}}, {{kCopies, 1}}},
        {"copies", DM_COPIES, {{kCopies, 7}}, {{kCopies, 7}}},
        {"too many copies", DM_COPIES, {{kCopies, 32767}}, {{kCopies, 999}}},
        {"no copies", DM_COPIES, {{kCopies, 0xFFFD}}, {{kCopies, 1}}},
        {"landscape", DM_ORIENTATION, {{kOrientation, 2}}, {{kOrientation, 2}}},
        {"no orientation", DM_ORIENTATION, {{kOrientation, 3}}, {{kOrientation, 1}}},
        {"a known paper",
         DM_PAPERSIZE,
         {{kPaper, 11}},
         {{kPaper, 11}, {kWidth, 1480}, {kLength, 2100}},
         W(""),
         W("A5")},
        {"an unknown paper", DM_PAPERSIZE, {{kPaper, 8}}, {{kPaper, 9}}},
        {"a form by name", DM_FORMNAME, {}, {{kPaper, 1}}, W("letter"), W("Letter")},
        {"the number before the name",
         DM_PAPERSIZE | DM_FORMNAME,
         {{kPaper, 11}},
         {{kPaper, 11}},
         W("Letter"),
         W("A5")},
        {"a name without its end", DM_FORMNAME, {}, {{kPaper, 9}}, W("xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx")},
        {"a custom size",
         kCustom,
         {{kWidth, 1000}, {kLength, 2000}},
         {{kPaper, DMPAPER_USER}, {kWidth, 1000}, {kLength, 2000}},
         W(""),
         W("Custom")},
        {"a custom size that is too wide",
         kCustom | DM_PAPERSIZE,
         {{kPaper, DMPAPER_USER}, {kWidth, 3000}, {kLength, 2000}},
         {{kWidth, 2100}},
         W(""),
         W("Custom")},
        {"a resolution", DM_PRINTQUALITY, {{kXResolution, 1200}}, {{kXResolution, 1200}, {kYResolution, 1200}}},
        {"half a resolution",
         DM_PRINTQUALITY | DM_YRESOLUTION,
         {{kXResolution, 1200}, {kYResolution, 600}},
         {{kXResolution, 600}, {kYResolution, 600}}},
        {"a bin", DM_DEFAULTSOURCE, {{kBin, 3}}, {{kBin, 3}}},
        {"an unknown bin", DM_DEFAULTSOURCE, {{kBin, 260}}, {{kBin, 7}}},
        {"a media type", DM_MEDIATYPE, {{kMedia, 6800}}, {{kMedia, 6800}}},
        {"an unknown media type", DM_MEDIATYPE, {{kMedia, 3}}, {{kMedia, 5001}}},
        {"colour on a monochrome printer", DM_COLOR, {{kColor, DMCOLOR_COLOR}}, {{kColor, DMCOLOR_MONOCHROME}}},
        {"duplex and collation",
         DM_DUPLEX | DM_COLLATE,
         {{kDuplex, DMDUP_HORIZONTAL}, {kCollate, DMCOLLATE_FALSE}},
         {{kDuplex, DMDUP_HORIZONTAL}, {kCollate, DMCOLLATE_FALSE}}},
    };
    Install(kUnidrvModel);
    for (const Case& test : cases)
    {
        SCOPED_TRACE(test.name);
        DEVMODEW input{};
        for (const Word& word : test.input)
            if (word.place != 0)
                memcpy(reinterpret_cast<BYTE*>(&input) + word.place, &word.value, sizeof word.value);
        const WStringView form = test.form;
        std::copy(form.begin(), form.end(), input.dmFormName);
        input.dmSize = sizeof input;
        input.dmFields = test.fields;
        const ByteBuffer result = Properties(&input);
        for (const Word& word : test.result)
            if (word.place != 0)
            {
                WORD value = 0;
                memcpy(&value, result.data() + word.place, sizeof value);
                EXPECT_EQ(value, word.value) << "at " << word.place;
            }
        const DEVMODEW fields = PublicPart(result);
        EXPECT_EQ(CXString(fields.dmFormName), test.formOfResult);
        EXPECT_EQ(fields.dmFields & kCustom, test.fields == kCustom ? kCustom : 0u);
    }
}

// What an application's devmode holds in its maker's part: the features, the paper list, and an entry that only the
// application knows.
struct Settings
{
    explicit Settings(const ByteBuffer& devmode)
    {
        ByteBuffer copy = devmode;
        XDevmode wrapper(reinterpret_cast<DEVMODEW*>(copy.data()));
        if (const ByteBuffer* const entry = wrapper.GetPropertyBagEntry(kUnknownKey))
            unknown = *entry;
        if (const ByteBuffer* const entry = wrapper.GetPropertyBagEntry(Format::kPersistentAttributesKey))
            state = *entry;
        copies = wrapper.GetIntegerValueFromAttributeBytes(DataModelIds::Feature::JobCopies);
        auto& capabilities =
            *wrapper.GetAttributeBytesIndexedListOf(PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId());
        if (const auto* const list = capabilities.GetAttributeBytes(DataModelIds::Feature::DevicePaperList))
            papers = DevicePaperList::Read(list->data.bytes()).value_or(std::vector<FormsInfoRecord>());
    }

    // The devmode with another state and the unknown entry.
    static ByteBuffer Store(ByteBuffer devmode, const ByteBuffer& state, std::size_t unknownSize)
    {
        XDevmode wrapper(reinterpret_cast<DEVMODEW*>(devmode.data()));
        wrapper.SetPropertyBagEntry(Format::kPersistentAttributesKey, state);
        wrapper.SetPropertyBagEntry(kUnknownKey, ByteBuffer(unknownSize));
        EXPECT_TRUE(wrapper.CommitToDevmode());
        return devmode;
    }

    // The state with twelve copies as its only feature.
    static ByteBuffer TwelveCopies(const ByteBuffer& state = ByteBuffer())
    {
        AttributeBytesIndexedList features;
        features.SetAttributeBytes(DataModelIds::Feature::JobCopies, MakeIntegerAttributeBytes(12));
        AttributeBytesNameSpaces nameSpaces;
        nameSpaces.SetAttributeBytesList(PersistentAttributes::GetDataModelDocPropNameSpaceId(),
                                         AttributeBytesRawList(features));
        PersistentAttributes settings(state);
        settings.SetAttributeBytesNameSpaces(nameSpaces);
        return settings.GetPersistentAttributesState();
    }

    [[nodiscard]] bool HasPaper(int paperId) const
    {
        return std::any_of(papers.begin(), papers.end(),
                           [paperId](const FormsInfoRecord& form) { return form.paperId == paperId; });
    }

    static constexpr std::uint16_t kUnknownKey = 77;

    ByteBuffer unknown;
    ByteBuffer state;
    std::optional<std::int32_t> copies;
    std::vector<FormsInfoRecord> papers;
};

// The list of papers is longer than a devmode carries: the merged paper is on it all the same.
TEST_F(DocumentProperties, KeepTheSettingsWhenThePaperChanges)
{
    constexpr int kLastPaper = 1099;
    const auto addForms = [](nlohmann::json& model)
    {
        for (int paper = 1000; paper <= kLastPaper; ++paper)
            model["forms"].push_back({{"paperId", paper},
                                      {"name", "A form with a name of some length " + std::to_string(paper)},
                                      {"width", 1000},
                                      {"length", paper},
                                      {"units", 7491},
                                      {"type", 25003},
                                      {"valueId", 0}});
    };
    Install(kPostScriptModel, addForms);
    const ByteBuffer fresh = Properties();
    const Settings before(fresh);
    ASSERT_FALSE(before.HasPaper(kLastPaper));
    ByteBuffer later(before.state.bytes());
    later.data()[5] = 2;
    ByteBuffer contradiction(before.state.bytes());
    contradiction.data()[2] = 1; // 65,536 bytes more than there are
    const ByteBuffer twelve = Settings::TwelveCopies();
    ByteBuffer spoilt = Settings::Store(fresh, twelve, 9);
    spoilt.data()[spoilt.size() - 1] = 1;
    struct Case
    {
        const char* name;
        ByteBuffer input;
        std::optional<std::int32_t> copies;
        std::size_t unknownSize;
        std::size_t papers;
    };
    const std::size_t all = before.papers.size();
    const Case cases[] = {
        {"sound settings", Settings::Store(fresh, Settings::TwelveCopies(before.state), 9), 12, 9, all},
        {"no list yet", Settings::Store(fresh, twelve, 9), 12, 9, all},
        {"room for a list of one form", Settings::Store(fresh, twelve, 5700), 12, 5700, 1},
        {"no room", Settings::Store(fresh, twelve, 5800), 12, 5800, 0},
        {"unreadable settings", Settings::Store(fresh, contradiction, 9), std::nullopt, 9, all},
        {"settings of a later format", Settings::Store(fresh, later, 9), std::nullopt, 9, 0},
        {"a wrong CRC", spoilt, std::nullopt, 0, all},
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
        const Settings after(merged);
        EXPECT_EQ(after.copies, test.copies);
        EXPECT_EQ(after.unknown.size(), test.unknownSize);
        EXPECT_EQ(after.papers.size(), test.papers);
        EXPECT_EQ(after.HasPaper(kLastPaper), test.papers != 0);
        EXPECT_EQ(test.papers == 0, after.state == Settings(test.input).state);
    }
}

TEST_F(DocumentProperties, KeepThePrivatePartsOfTheSameDriverOnly)
{
    Install(kPostScriptModel);
    const ByteBuffer fresh = Properties();
    constexpr std::size_t kCore = sizeof(DEVMODEW);
    constexpr std::size_t kOem = kCore + 708;
    constexpr std::size_t kCoreSetting = kCore + 136;
    ByteBuffer own = Settings::Store(fresh, Settings::TwelveCopies(Settings(fresh).state), 9);
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
        DOCUMENTPROPERTYHEADER header =
            Header(name.data(), reinterpret_cast<DEVMODEW*>(input.data()), output, DM_IN_BUFFER | DM_OUT_BUFFER);
        if (size < 76)
        {
            EXPECT_EQ(module.PropertySheets(nullptr, &header), -1);
            EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
            EXPECT_EQ(output, untouched);
            continue;
        }
        ASSERT_EQ(module.PropertySheets(nullptr, &header), IDOK);
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
    struct Case
    {
        const char* name;
        DWORD mode;
        DWORD room; // that the spooler reports
        LONG answer;
        bool writes;
    };
    constexpr Case kCases[] = {
        {"the size", 0, 0, kSize, false},
        {"room to spare", DM_OUT_BUFFER, kSize + 5, IDOK, true},
        {"just enough", DM_OUT_BUFFER, kSize, IDOK, true},
        {"a spooler that does not say", DM_OUT_BUFFER, 0, IDOK, true},
        {"one byte short", DM_OUT_BUFFER, kSize - 1, -1, false},
        {"a single byte", DM_OUT_BUFFER, 1, -1, false},
        {"no output asked for", DM_IN_BUFFER, kSize, IDOK, false},
        {"a dialogue", DM_IN_PROMPT | DM_OUT_BUFFER, kSize, -1, false},
    };
    for (const Case& test : kCases)
    {
        SCOPED_TRACE(test.name);
        std::vector<BYTE> output(kSize, BYTE{0xA5});
        const std::vector<BYTE> untouched = output;
        DOCUMENTPROPERTYHEADER header = Header(name.data(), nullptr, output, test.mode);
        header.cbOut = test.room;
        EXPECT_EQ(module.PropertySheets(nullptr, &header), test.answer);
        EXPECT_EQ(output != untouched, test.writes);
    }

    std::vector<BYTE> output(kSize);
    DOCUMENTPROPERTYHEADER header = Header(name.data(), nullptr, output, DM_OUT_BUFFER);
    EXPECT_EQ(module.PropertySheets(&output, &header), -1); // property sheets
    EXPECT_EQ(module.PropertySheets(nullptr, nullptr), -1);
    header.cbSize = sizeof header - 1;
    EXPECT_EQ(module.PropertySheets(nullptr, &header), -1);
    header = Header(nullptr, nullptr, output, DM_OUT_BUFFER);
    EXPECT_EQ(module.PropertySheets(nullptr, &header), -1); // no printer
    header = Header(name.data(), nullptr, output, DM_OUT_BUFFER);
    header.pdmOut = nullptr;
    EXPECT_EQ(module.PropertySheets(nullptr, &header), kSize);
    EXPECT_EQ(header.cbOut, static_cast<DWORD>(kSize));

    // In place: the application's devmode is the output.
    header = Header(name.data(), reinterpret_cast<DEVMODEW*>(output.data()), output, DM_OUT_BUFFER | DM_IN_BUFFER);
    header.pdmIn->dmSize = sizeof(DEVMODEW);
    header.pdmIn->dmFields = DM_COPIES;
    header.pdmIn->dmCopies = 12;
    EXPECT_EQ(module.PropertySheets(nullptr, &header), IDOK);
    EXPECT_EQ(PublicPart(ByteBuffer(output.data(), output.size())).dmCopies, 12);
}

TEST_F(DocumentProperties, AreKeptByThePrinterAndTheProcess)
{
    Install(kPostScriptModel);
    const ByteBuffer first = Properties();
    {
        const Printer printer(Name());
        EXPECT_EQ(printer.GetUserDefaultDevmode(), first);
        EXPECT_EQ(PrintDriver().GetInstallationStateFromHandle(printer.GetPrinterHandle()), 4u);
    }
    // Another printer of that name has caches of its own, and their filling clears this one.
    Install(kUnidrvModel);
    const Printer printer(Name());
    const ByteBuffer second = Properties();
    EXPECT_EQ(printer.GetUserDefaultDevmode(), second);
    EXPECT_NE(second, first);
    // The driver is not asked again until the cache is cleared.
    ChangeInstalledModel([](nlohmann::json& model) { std::swap(model["resolutions"][0], model["resolutions"][1]); });
    EXPECT_EQ(printer.GetUserDefaultDevmode(), second);
    printer.ClearDevmode1stLevelCache();
    EXPECT_EQ(printer.GetUserDefaultDevmode(), Properties());
    EXPECT_NE(Properties(), second);
    printer.ClearDevmode1stLevelCache();
    EXPECT_THROW(static_cast<void>(Printer().GetUserDefaultDevmode()), ExceptionPrinterFailure);
}

TEST_F(DocumentProperties, OfAPrinterWithoutASetUpStateAreNotComplete)
{
    Install(kUnidrvModel);
    const PrinterHandle printer = PrinterHandle::Open(Name().ToUtf8(), PrinterHandle::Access::Administer);
    for (const DWORD state : {3u, 0u, 4u})
    {
        ASSERT_EQ(printer.StoreInstallationState(state), DWORD{ERROR_SUCCESS});
        EXPECT_EQ(PrintDriver().GetInstallationStateFromHandle(printer.Get()), state);
    }
    const Printer owner(printer.Get());
    owner.SetPrinterDataW(PrintDriver::kInstallationStateValueName, REG_SZ, W("444"), 8);
    EXPECT_EQ(PrintDriver().GetInstallationStateFromHandle(printer.Get()), 0u);
    EXPECT_THROW(static_cast<void>(PrintDriver().GetInstallationStateFromHandle(nullptr)), ExceptionPrintDriverFailure);
}

} // namespace
