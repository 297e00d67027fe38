// The translators of media type, output quality, colour and copies: documents offered and both directions; and the
// model state, by which their settings reach the devmode.
#include <gtest/gtest.h>

#include <tvcore/featurereferences.h>
#include <tvcore/featureservices.h>
#include <tvutil/persistentattributes.h>

#include <tuple>

#include "complugins/xdevmode.h"
#include "tests/common/failurecode.h"
#include "tests/common/oemdevmodebytes.h"
#include "tests/common/scriptedconfiguration.h"
#include "tests/common/testdocuments.h"
#include "tests/common/testprinter.h"
#include "tests/ptpcprovider/provideraccess.h"

namespace
{

namespace Feature = DataModelIds::Feature;
using Texts = std::vector<std::string>;
using Counts = std::vector<std::pair<std::size_t, std::size_t>>; // of numbers and names
using MediaTypes = std::vector<PrinterModel::MediaType>;

constexpr const char* kColorModel = "tavlen-c9070-ps.json";
constexpr const char* kBlue = "ns0000:CustomType_1761513194"; // by the CRC-32 of "Blue 90g" in UTF-16

// What the driver answers. Counts: when the media types are counted, fetched, fetched again.
MediaTypes g_mediaTypes;
Counts g_counts;
std::size_t g_round = 0;
int g_copies = 1;

void Tell(const MediaTypes& mediaTypes, const Counts& counts = {})
{
    g_mediaTypes = mediaTypes;
    g_counts = counts.empty() ? Counts(3, {mediaTypes.size(), mediaTypes.size()}) : counts;
}

DWORD Answer(WORD capability, LPVOID output)
{
    const bool isOfIds = capability == DC_MEDIATYPES;
    if (!isOfIds && capability != DC_MEDIATYPENAMES)
        return static_cast<DWORD>(capability == DC_COPIES ? g_copies : -1);
    g_round = output == nullptr ? 0 : g_round + (isOfIds ? 1 : 0);
    for (std::size_t at = 0; output != nullptr && at < g_mediaTypes.size(); ++at)
        if (isOfIds)
            static_cast<std::int32_t*>(output)[at] = g_mediaTypes[at].id;
        else // a name that is shorter than its 64 characters is terminated
            g_mediaTypes[at].name.View().copy(static_cast<WCHAR*>(output) + at * 64, 64);
    return static_cast<DWORD>(isOfIds ? g_counts.at(g_round).first : g_counts.at(g_round).second);
}

std::string Choice(const std::string& feature, const std::string& option)
{
    return "<psf:Feature name='psk:" + feature + "'><psf:Option name=\"" + option + "\"/></psf:Feature>";
}

// Two of every feature: any of the name goes.
std::string OldFeatures()
{
    const std::string one = Choice("PageMediaType", "psk:Old") + Choice("PageOutputQuality", "psk:Old") +
                            Choice("PageColorManagement", "psk:Old") + Choice("PageICMRenderingIntent", "psk:Old");
    return one + one;
}

std::string OptionsOf(const ComPtr<IXMLDOMDocument2>& document, const std::string& feature)
{
    std::string options;
    for (const auto& name : Select(document.Get(), "//psf:Feature[@name='psk:" + feature + "']/psf:Option/@name"))
        options += (options.empty() ? "" : "+") + name;
    return options;
}

struct BoundPrinter : private TestPrinter, ProviderBinding
{
    explicit BoundPrinter(const char* model = kColorModel)
        : TestPrinter({0xE02, model, {"tvwftu_b.dll"}, kScriptedConfigurationModule})
    {
        ScriptConfiguration(&Answer);
        EXPECT_EQ(S_OK, BindTo(Handle()));
    }
    ComPtr<IXMLDOMDocument2> Complete(HRESULT expected = S_OK)
    {
        ComPtr<IXMLDOMDocument2> document = LoadDocument(CapabilitiesAround(OldFeatures()));
        EXPECT_EQ(expected, TavlenPtProviderTestAccess::Complete(*object, document.Get()));
        return document;
    }
    ComPtr<IXMLDOMDocument2> TicketOf(const TestDevmode& devmode)
    {
        ComPtr<IXMLDOMDocument2> ticket = LoadDocument(TicketAround(OldFeatures()));
        EXPECT_EQ(S_OK, ToTicket(devmode, ticket.Get()));
        return ticket;
    }
    std::string MediaOf(const TestDevmode& devmode)
    {
        return OptionsOf(TicketOf(devmode), "PageMediaType");
    }
    HRESULT Take(const std::string& content, const TestDevmode& devmode)
    {
        return ToDevmode(LoadDocument(TicketAround(content)).Get(), devmode);
    }
    HRESULT Choose(const std::string& media, const TestDevmode& devmode)
    {
        return Take(Choice("PageMediaType", media), devmode);
    }
};

// All of a devmode but the paper, which every conversion writes.
std::vector<std::byte> WithoutPaper(const TestDevmode& devmode)
{
    const std::vector<std::byte> bytes = devmode.Bytes();
    const TestDevmode copy{std::span(bytes)};
    DEVMODEW& fields = *copy.Get();
    fields.dmFields = 0;
    fields.dmPaperSize = fields.dmPaperWidth = fields.dmPaperLength = 0;
    std::fill(std::begin(fields.dmFormName), std::end(fields.dmFormName), W('\0'));
    return copy.Bytes();
}

// Settings with odd attributes around the media type and its collections, one of which may be a number instead; the
// last one is of that many bytes.
TestDevmode DevmodeOf(std::int32_t media, std::int32_t wrongFeature = 0, std::size_t odds = 3,
                      const CXString& name = W("Blue 90g"))
{
    AttributeBytesValue odd{static_cast<AttributeBytesKind>(77), 0x82, ByteBuffer(std::size_t{3})};
    const AttributeBytesNewValueId value(media, media > 9686 ? name : CXString());
    AttributeBytesValue inside = AttributeBytesOptionValue(value, media != 5001).ToAttributeBytes();
    AttributeBytesNameSpaces nameSpaces; // the second one survives, whatever it is
    nameSpaces.SetAttributeBytesList(PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId(),
                                     AttributeBytesRawList(odd.data.bytes()));
    for (const std::int32_t feature : {Feature::MediaType, Feature::MediaCollection, Feature::PageMediaCollection})
    {
        AttributeBytesIndexedList level;
        level.SetAttributeBytes(9000 + feature, odd);
        level.SetAttributeBytes(feature, feature == wrongFeature ? MakeIntegerAttributeBytes(6801) : inside);
        odd.data.resize(feature == Feature::PageMediaCollection ? odds : 3);
        level.SetAttributeBytes(9500 + feature, odd);
        const AttributeBytesRawList raw(level);
        nameSpaces.SetAttributeBytesList(PersistentAttributes::GetDataModelDocPropNameSpaceId(), raw);
        inside = AttributeBytesListValue(raw).ToAttributeBytes();
        inside.flags = 0x40;
    }
    PersistentAttributes state;
    state.SetAttributeBytesNameSpaces(nameSpaces);
    TestDevmode devmode(
        OemDevmodeBytes::Make(CoreDriverLayout::PostScript, {{1, state.GetPersistentAttributesState()}}));
    static_cast<void>(XDevmode(devmode.Get())); // terminates its names
    return devmode;
}

TEST(ModelState, IsTheWrapperOfTheLastDevmodeAndNullKeepsIt)
{
    ProviderBinding binding;
    EXPECT_EQ(nullptr, binding.object->InitializeOrReInitializeDataModel(nullptr));
    ExpectCode(E_FAIL, {[&]
                        {
                            binding.object->GetXDevmodeRef();
                        }});
    for (const TestDevmode& devmode : {DevmodeOf(5001), TestDevmode()})
        for (DEVMODEW* const given : {devmode.Get(), static_cast<DEVMODEW*>(nullptr)})
        {
            EXPECT_EQ(nullptr, binding.object->InitializeOrReInitializeDataModel(given));
            EXPECT_EQ(devmode.Size() > 220, binding.object->GetXDevmodeRef().HasOemDevmode());
        }
}

TEST(Translators, PublishChooseStoreAndReadBackEveryMediaType)
{
    BoundPrinter printer;
    std::vector<int> ids = {1, 2, 3, 5001, 9687, 10000, 2147483647};
    for (int id = 6799; id <= 6878; ++id)
        ids.push_back(id);
    for (const int id : ids)
    {
        SCOPED_TRACE(id);
        Tell({{0, {}}, {6798, {}}, {6879, {}}, {9686, {}}, {-1, {}}, {6808, W("Bond")}, {id, W("Blue 90g")}});
        if (id >= 6811 && id <= 6819) // reserved, and without any name
        {
            EXPECT_ANY_THROW(printer.Complete());
            continue;
        }
        const ComPtr<IXMLDOMDocument2> document = printer.Complete();
        const std::string options = OptionsOf(document, "PageMediaType");
        ASSERT_EQ("psk:Bond+", options.substr(0, 9));
        const std::string option = options.substr(9);
        const int folded = id == 1 ? 6800 : id == 2 ? 6801 : id == 3 ? 6820 : id == 6799 ? 5001 : id;
        EXPECT_EQ(id > 9686, option == kBlue) << option;
        EXPECT_EQ(folded == 5001, option == "psk:AutoSelect") << option;
        EXPECT_EQ(folded == 6820, option == "ns0000:cardstock-glossy") << option;
        const Texts glossy = {"psk:Glossy", "psk:Paper", "psk:None", "psk:None", "psk:None"};
        EXPECT_TRUE(folded != 6820 || glossy == Select(document.Get(), "//psf:Option[2]/psf:ScoredProperty/psf:Value"));
        const TestDevmode devmode = DevmodeOf(6807);
        EXPECT_EQ(S_OK, printer.Choose(option, devmode));
        EXPECT_TRUE(WithoutPaper(DevmodeOf(folded)) == WithoutPaper(devmode));
        EXPECT_EQ(option, printer.MediaOf(devmode));
    }
}

TEST(Translators, TakeThePrintersFirstMediaTypeForOneItLacks)
{
    BoundPrinter printer;
    Tell({{5001, W("Auto")}, {1, W("Plain")}, {6802, W("Tabs")}, {10000, W("Blue 90g")}});
    const std::pair<const char*, int> kChoices[] = {{"ns0000:tab-stock", 6802}, {"psk:tab-stock", 5001},
                                                    {"psk:Plain", 6800},        {"ns0000:Plain", 5001},
                                                    {"tk:tab-stock", 5001},     {"psk:Pl 'a&quot;", 5001}};
    for (const auto& [option, expected] : kChoices)
    {
        const TestDevmode devmode = DevmodeOf(6800);
        EXPECT_EQ(S_OK, printer.Choose(option, devmode));
        EXPECT_TRUE(WithoutPaper(DevmodeOf(expected)) == WithoutPaper(devmode)) << option;
        EXPECT_EQ(E_FAIL, printer.Choose("Plain", devmode)); // no prefix
        EXPECT_TRUE(WithoutPaper(DevmodeOf(expected)) == WithoutPaper(devmode)) << option;
    }
    // Something else where a setting should be: nothing is chosen, and a choice takes its place.
    for (const auto feature : {Feature::MediaType, Feature::MediaCollection, Feature::PageMediaCollection})
    {
        const TestDevmode devmode = DevmodeOf(6800, feature);
        EXPECT_EQ("psk:AutoSelect", printer.MediaOf(devmode));
        EXPECT_EQ(S_OK, printer.Choose("psk:Plain", devmode));
        EXPECT_EQ("psk:Plain", printer.MediaOf(devmode));
        EXPECT_NE(nullptr, XDevmode(devmode.Get()).GetDefaultAttributeBytesIndexedList()->GetAttributeBytes(9977));
    }
    EXPECT_EQ(kBlue, printer.MediaOf(DevmodeOf(10001))); // by its name
    EXPECT_EQ("psk:AutoSelect", printer.MediaOf(DevmodeOf(6808)));
}

TEST(Translators, DropAChangeThatASettingsStateHasNoRoomFor)
{
    BoundPrinter printer;
    Tell({{5001, W("Auto")}, {10000, W("Blue 90g")}});
    for (std::size_t odds = 5200, size = 0; size <= 5402; ++odds)
    {
        const TestDevmode devmode = DevmodeOf(5001, 0, odds);
        const TestDevmode changed = DevmodeOf(10000, 0, odds);
        size = XDevmode(changed.Get()).GetPropertyBagEntry(1)->getDword();
        ASSERT_TRUE(odds != 5200 || size < 5400) << size;
        EXPECT_EQ(S_OK, printer.Choose(kBlue, devmode));
        EXPECT_TRUE(WithoutPaper(size <= 5400 ? changed : DevmodeOf(5001, 0, odds)) == WithoutPaper(devmode)) << size;
    }
    const TestDevmode empty(OemDevmodeBytes::Make(CoreDriverLayout::PostScript, {}));
    EXPECT_EQ(S_OK, printer.Choose(kBlue, empty)); // carries no settings, and gets none
    EXPECT_EQ(nullptr, XDevmode(empty.Get()).GetPropertyBagEntry(1));
}

TEST(Translators, BelieveMediaTypesWhenNumbersAndNamesComeOutEven)
{
    BoundPrinter printer;
    constexpr auto kError = static_cast<std::size_t>(-1);
    const std::pair<Counts, std::size_t> kCases[] = {{{{2, 0}, {2, 2}}, 2},
                                                     {{{2, 0}, {2, 1}, {2, 2}}, 2},
                                                     {{{2, 0}, {2, 1}, {2, 1}}, 0},
                                                     {{{2, 0}, {15, 15}}, 12},
                                                     {{{2, 0}, {2, 12}, {14, 14}}, 12},
                                                     {{{2, 0}, {1, 12}, {2, 2}}, 0},
                                                     {{{2, 0}, {kError, kError}, {2, 2}}, 0},
                                                     {{{2, 0}, {2, 0}, {2, 2}}, 0},
                                                     {{{0, 0}, {2, 2}}, 0},
                                                     {{{kError, 0}, {2, 2}}, 0}};
    for (const auto& [counts, published] : kCases)
    {
        SCOPED_TRACE(testing::PrintToString(counts));
        Tell(MediaTypes(12, {6800, CXString(WideString(70, W('x')))}), counts);
        const ComPtr<IXMLDOMDocument2> document = printer.Complete(published == 0 ? E_FAIL : S_OK);
        EXPECT_EQ(Texts(published, std::string(64, 'x')),
                  Select(document.Get(), "//psf:Option[@name='psk:Plain']/psf:Property"));
        EXPECT_EQ(published == 0, OptionsOf(document, "PageMediaType") == "psk:Old+psk:Old");
        const TestDevmode devmode = DevmodeOf(6807);
        EXPECT_EQ(published == 0 ? "psk:Old+psk:Old" : "psk:Plain", printer.MediaOf(devmode));
        EXPECT_EQ(S_OK, printer.Choose("psk:Plain", devmode));
        EXPECT_TRUE(WithoutPaper(DevmodeOf(published == 0 ? 6807 : 6800)) == WithoutPaper(devmode));
    }
}

TEST(Translators, ManageColorsAsWindowsTheDriverAndTheProductSay)
{
    constexpr auto kColor = ProductData::ControllerFamilyColor;
    using Case = std::tuple<const char*, ProductData::ValueEnum, ULONG, ULONGLONG, const char*>; // null: not for these
    const Case kCases[] = {{kColorModel, kColor, 5, 0x000, ""},
                           {kColorModel, kColor, 5, 0x600, "psk:Device"},
                           {kColorModel, kColor, 6, 0x000, "psk:None+psk:System"},
                           {kColorModel, kColor, 6, 0x200, "psk:None+psk:Device+psk:System"},
                           {kColorModel, kColor, 10, 0x400, "psk:None"},
                           {kColorModel, kColor, 10, 0x600, "psk:None+psk:Device"},
                           {kColorModel, ProductData::ControllerFamilyXps, 10, 0x600, nullptr},
                           {"tavlen-b4400-uni.json", kColor, 10, 0x600, nullptr}};
    const char* const kMethods[] = {"psk:Device", "psk:None", "psk:System", "psk:Driver", "psk:Device", "psk:Device"};
    const char* const kIntents[] = {"psk:Photographs",          "psk:BusinessGraphics",     "psk:Photographs",
                                    "psk:RelativeColorimetric", "psk:AbsoluteColorimetric", "psk:Photographs"};
    const std::pair<const char*, DWORD> kNames[] = {{"psk:None", 1},   {"psk:System", 2}, {"psk:Driver", 3},
                                                    {"psk:Device", 4}, {"psk:Odd", 4},    {"ns0000:None", 77}};
    const char* const kOffered =
        "psk:AbsoluteColorimetric+psk:RelativeColorimetric+psk:Photographs+psk:BusinessGraphics";
    const std::string kIntent = Choice("PageICMRenderingIntent", "psk:AbsoluteColorimetric");
    Tell({{6800, W("Plain")}});
    for (const auto& [model, family, version, flags, offered] : kCases)
    {
        SCOPED_TRACE(testing::Message() << model << " " << family << " " << version << " " << flags);
        BoundPrinter printer(model);
        TavlenPtProviderTestAccess::Pretend(*printer.object, version, flags, family);
        const auto expect = [&, acts = offered != nullptr](const auto& document, const char* method, const char* intent)
        {
            EXPECT_EQ(acts ? method : "psk:Old+psk:Old", OptionsOf(document, "PageColorManagement"));
            EXPECT_EQ(acts ? intent : "psk:Old+psk:Old", OptionsOf(document, "PageICMRenderingIntent"));
        };
        expect(printer.Complete(), offered, version < 6 ? "" : kOffered);
        for (DWORD number = 0; number < 6; ++number)
        {
            const TestDevmode devmode;
            devmode.Get()->dmICMMethod = devmode.Get()->dmICMIntent = number;
            expect(printer.TicketOf(devmode), version < 6 ? "psk:Device" : kMethods[number], kIntents[number]);
            const auto& [name, method] = kNames[number];
            devmode.Get()->dmICMMethod = 77;
            EXPECT_EQ(S_OK, printer.Take(Choice("PageColorManagement", name) + kIntent, devmode));
            const DWORD expected = offered == nullptr ? 77 : std::max<DWORD>(version < 6 ? 4 : 1, method);
            EXPECT_EQ(expected, devmode.Get()->dmICMMethod) << name;
            EXPECT_EQ(number, devmode.Get()->dmICMIntent); // is not read
            EXPECT_EQ(0u, devmode.Get()->dmFields & (DM_ICMMETHOD | DM_ICMINTENT));
        }
    }
}

TEST(Translators, PublishCopiesAndOutputQuality)
{
    for (const int copies : {999, -1, 0})
    {
        g_copies = copies;
        BoundPrinter printer(copies == 999 ? "tavlen-w3100-xps.json" : kColorModel);
        const char* const quality = copies == 999 ? "psk:Automatic" : "";
        const ComPtr<IXMLDOMDocument2> document = printer.Complete();
        const char* const maximum = copies == 999 ? "999" : "1";
        EXPECT_EQ((Texts{"xsd:integer", "1", maximum, "1", "psk:Unconditional", "copies", "1", "Copies"}),
                  Select(document.Get(), "//psf:ParameterDef[contains(@name, ':JobCopies')]/psf:Property/psf:Value"));
        EXPECT_EQ(quality, OptionsOf(document, "PageOutputQuality"));
        EXPECT_EQ(quality, OptionsOf(printer.TicketOf(TestDevmode()), "PageOutputQuality"));
    }
}

TEST(Translators, KeepToTheDataModelWhileItIsInUse)
{
    BoundPrinter printer;
    TavlenPtProviderTestAccess::UseDataModel(*printer.object);
    const TestDevmode devmode = DevmodeOf(6820);
    devmode.Get()->dmICMMethod = devmode.Get()->dmICMIntent = 1;
    devmode.Get()->dmCopies = 7;
    const auto texts = [&]
    {
        return Select(printer.TicketOf(devmode).Get(), "//psf:Feature[not(contains(@name, 'Size'))]/psf:Option/@name | "
                                                       "//psf:ParameterInit[contains(@name, ':JobCopies')]");
    };
    // Where it says nothing, the devmode's numbers count.
    EXPECT_EQ((Texts{"ns0000:cardstock-glossy", "psk:None", "psk:BusinessGraphics", "7"}), texts());
    FeatureServices& model = *printer.object->GetFeatureServicesPtr();
    model.SetMediaTypes({{5001, W("Auto")}, {3, W("Glossy")}, {10000, W("Blue 90g")}});
    OptionFeatureRef(model, Feature::MsIcmIntent).SetValue(ValueId(DataModelIds::Value::MsIntentColorimetric));
    const std::string copies = "<psf:Value>70000</psf:Value></psf:ParameterInit>";
    EXPECT_EQ(S_OK, printer.Take(Choice("PageMediaType", kBlue) + Choice("PageColorManagement", "psk:System") +
                                     "<psf:ParameterInit name='psk:JobCopiesAllDocuments'>" + copies,
                                 devmode));
    EXPECT_EQ(static_cast<short>(70000), devmode.Get()->dmCopies); // written out of the data model
    EXPECT_EQ((Texts{kBlue, "psk:System", "psk:RelativeColorimetric", "70000"}), texts());
}

} // namespace
