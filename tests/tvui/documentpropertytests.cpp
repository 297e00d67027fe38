// DocumentPropertiesW: the driver's devmode, and what it takes over from an application's.
#include <algorithm>
#include <functional>

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
protected:
    // What the printer's driver makes of these fields of an application.
    DEVMODEW Merged(DWORD fields, const std::function<void(DEVMODEW&)>& fill) const
    {
        DEVMODEW input{};
        input.dmSize = sizeof input;
        input.dmFields = fields;
        fill(input);
        return PublicPart(Properties(&input));
    }
};

void SetFormName(DEVMODEW& devmode, WStringView name)
{
    std::copy(name.begin(), name.end(), devmode.dmFormName);
}

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
    struct Case
    {
        const char* name;
        DWORD fields;
        void (*fill)(DEVMODEW& input);
        bool (*isRight)(const DEVMODEW& result);
    };
    constexpr DWORD kCustom = DM_PAPERWIDTH | DM_PAPERLENGTH;
    const Case cases[] = {
        {"an unclaimed field", 0, [](DEVMODEW& in) { in.dmCopies = 7; },
         [](const DEVMODEW& out)
         {
             return out.dmCopies == 1;
         }},
        {"copies", DM_COPIES, [](DEVMODEW& in) { in.dmCopies = 7; },
         [](const DEVMODEW& out)
         {
             return out.dmCopies == 7;
         }},
        {"too many copies", DM_COPIES, [](DEVMODEW& in) { in.dmCopies = 32767; },
         [](const DEVMODEW& out)
         {
             return out.dmCopies == 999;
         }},
        {"no copies", DM_COPIES, [](DEVMODEW& in) { in.dmCopies = -3; },
         [](const DEVMODEW& out)
         {
             return out.dmCopies == 1;
         }},
        {"landscape", DM_ORIENTATION, [](DEVMODEW& in) { in.dmOrientation = 2; },
         [](const DEVMODEW& out)
         {
             return out.dmOrientation == 2;
         }},
        {"no orientation", DM_ORIENTATION, [](DEVMODEW& in) { in.dmOrientation = 3; },
         [](const DEVMODEW& out)
         {
             return out.dmOrientation == 1;
         }},
        {"a known paper", DM_PAPERSIZE, [](DEVMODEW& in) { in.dmPaperSize = 11; },
         [](const DEVMODEW& out)
         {
             return out.dmPaperSize == 11 && out.dmPaperWidth == 1480 && out.dmPaperLength == 2100 &&
                    CXString(out.dmFormName) == W("A5");
         }},
        {"an unknown paper", DM_PAPERSIZE, [](DEVMODEW& in) { in.dmPaperSize = 8; },
         [](const DEVMODEW& out)
         {
             return out.dmPaperSize == 9 && CXString(out.dmFormName) == W("A4");
         }},
        {"a form by name", DM_FORMNAME, [](DEVMODEW& in) { SetFormName(in, W("letter")); },
         [](const DEVMODEW& out)
         {
             return out.dmPaperSize == 1 && CXString(out.dmFormName) == W("Letter");
         }},
        {"the number before the name", DM_PAPERSIZE | DM_FORMNAME,
         [](DEVMODEW& in)
         {
             in.dmPaperSize = 11;
             SetFormName(in, W("Letter"));
         },
         [](const DEVMODEW& out)
         {
             return out.dmPaperSize == 11 && CXString(out.dmFormName) == W("A5");
         }},
        {"a name without its end", DM_FORMNAME, [](DEVMODEW& in) { std::fill_n(in.dmFormName, 32, W('x')); },
         [](const DEVMODEW& out)
         {
             return out.dmPaperSize == 9;
         }},
        {"a custom size", kCustom,
         [](DEVMODEW& in)
         {
             in.dmPaperWidth = 1000;
             in.dmPaperLength = 2000;
         },
         [](const DEVMODEW& out)
         {
             return out.dmPaperSize == DMPAPER_USER && out.dmPaperWidth == 1000 && out.dmPaperLength == 2000 &&
                    (out.dmFields & kCustom) == kCustom;
         }},
        {"a custom size that is too wide", kCustom | DM_PAPERSIZE,
         [](DEVMODEW& in)
         {
             in.dmPaperSize = DMPAPER_USER;
             in.dmPaperWidth = 3000;
             in.dmPaperLength = 2000;
         },
         [](const DEVMODEW& out)
         {
             return out.dmPaperWidth == 2100 && (out.dmFields & kCustom) == 0;
         }},
        {"a resolution", DM_PRINTQUALITY, [](DEVMODEW& in) { in.dmPrintQuality = 1200; },
         [](const DEVMODEW& out)
         {
             return out.dmPrintQuality == 1200 && out.dmYResolution == 1200;
         }},
        {"half a resolution", DM_PRINTQUALITY | DM_YRESOLUTION,
         [](DEVMODEW& in)
         {
             in.dmPrintQuality = 1200;
             in.dmYResolution = 600;
         },
         [](const DEVMODEW& out)
         {
             return out.dmPrintQuality == 600 && out.dmYResolution == 600;
         }},
        {"a bin", DM_DEFAULTSOURCE, [](DEVMODEW& in) { in.dmDefaultSource = 3; },
         [](const DEVMODEW& out)
         {
             return out.dmDefaultSource == 3;
         }},
        {"an unknown bin", DM_DEFAULTSOURCE, [](DEVMODEW& in) { in.dmDefaultSource = 260; },
         [](const DEVMODEW& out)
         {
             return out.dmDefaultSource == 7;
         }},
        {"a media type", DM_MEDIATYPE, [](DEVMODEW& in) { in.dmMediaType = 6800; },
         [](const DEVMODEW& out)
         {
             return out.dmMediaType == 6800;
         }},
        {"an unknown media type", DM_MEDIATYPE, [](DEVMODEW& in) { in.dmMediaType = 3; },
         [](const DEVMODEW& out)
         {
             return out.dmMediaType == 5001;
         }},
        {"colour on a monochrome printer", DM_COLOR, [](DEVMODEW& in) { in.dmColor = DMCOLOR_COLOR; },
         [](const DEVMODEW& out)
         {
             return out.dmColor == DMCOLOR_MONOCHROME;
         }},
        {"duplex and collation", DM_DUPLEX | DM_COLLATE,
         [](DEVMODEW& in)
         {
             in.dmDuplex = DMDUP_HORIZONTAL;
             in.dmCollate = DMCOLLATE_FALSE;
         },
         [](const DEVMODEW& out)
         {
             return out.dmDuplex == DMDUP_HORIZONTAL && out.dmCollate == DMCOLLATE_FALSE;
         }},
    };
    Install(kUnidrvModel);
    for (const Case& test : cases)
        EXPECT_TRUE(test.isRight(Merged(test.fields, test.fill))) << test.name;
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
        AttributeBytesRawList list;
        list.ImportFromIndexedList(features);
        AttributeBytesNameSpaces nameSpaces;
        nameSpaces.SetAttributeBytesList(PersistentAttributes::GetDataModelDocPropNameSpaceId(), list);
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
    ByteBuffer own = Settings::Store(fresh, Settings::TwelveCopies(Settings(fresh).state), 9);
    own.data()[sizeof(DEVMODEW) + 136] = 3; // a core setting
    EXPECT_EQ(Properties(reinterpret_cast<const DEVMODEW*>(own.data())), own);

    struct Change
    {
        const char* name;
        std::size_t offset;
    };
    constexpr Change kChanges[] = {
        {"core size", sizeof(DEVMODEW) + Format::kPostScriptSizeOffset},
        {"maker's size", sizeof(DEVMODEW) + 708 + Format::kSizeOffset},
        {"signature", sizeof(DEVMODEW) + 708 + Format::kSignatureOffset},
        {"extra size", offsetof(DEVMODEW, dmDriverExtra)},
    };
    for (const Change& change : kChanges)
    {
        SCOPED_TRACE(change.name);
        ByteBuffer foreign = own;
        foreign.data()[change.offset] ^= 4;
        foreign.resize(foreign.size() + 4); // the extra size has become greater by this
        EXPECT_EQ(Properties(reinterpret_cast<const DEVMODEW*>(foreign.data())), Properties());
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
    // Another printer of that name is not asked until the cache is cleared.
    Install(kUnidrvModel);
    const Printer printer(Name());
    EXPECT_EQ(printer.GetUserDefaultDevmode(), first);
    printer.ClearDevmode1stLevelCache();
    EXPECT_EQ(printer.GetUserDefaultDevmode(), Properties());
    EXPECT_NE(Properties(), first);
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
