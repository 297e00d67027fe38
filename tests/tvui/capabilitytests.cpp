// DeviceCapabilitiesW: the model's figures, in the platform's shapes; and the caches that the module fills with them.
#include <algorithm>
#include <array>
#include <tuple>

#include <tvutil/datacache.h>
#include <tvutil/tavlenutilities.h>

#include "complugins/msdevicecapabilities.h"
#include "tests/tvui/installedprinter.h"

namespace
{

using nlohmann::json;
using Name24 = std::array<WCHAR, 24>;
using Name64 = std::array<WCHAR, 64>;
template <class Value>
using One = std::array<Value, 1>;
using Two = std::array<LONG, 2>;

class Capabilities : public InstalledPrinter
{
protected:
    // These fields of each item of a list of the model.
    [[nodiscard]] json Rows(const char* list, const std::vector<const char*>& fields) const
    {
        json rows = json::array();
        for (const json& item : m_model[list])
        {
            json& row = rows.emplace_back(json::array());
            for (const char* const field : fields)
                row.push_back(item[field]);
        }
        return rows;
    }

    template <class Name>
    [[nodiscard]] json Names(WORD capability) const
    {
        json names = json::array();
        for (const Name& name : List<Name>(capability))
            names.push_back(
                {CXString(WStringView(name.begin(), std::find(name.begin(), name.end(), WCHAR()))).ToUtf8()});
        return names;
    }

    void ExpectListsOfModel() const
    {
        EXPECT_EQ(json(List<One<WORD>>(DC_PAPERS)), Rows("forms", {"paperId"}));
        EXPECT_EQ(json(List<Two>(DC_PAPERSIZE)), Rows("forms", {"width", "length"}));
        EXPECT_EQ(Names<Name64>(DC_MEDIAREADY), json::array({Rows("forms", {"name"})[0]}));
        EXPECT_EQ(json(List<One<WORD>>(DC_BINS)), Rows("bins", {"id"}));
        EXPECT_EQ(Names<Name24>(DC_BINNAMES), Rows("bins", {"name"}));
        EXPECT_EQ(json(List<One<DWORD>>(DC_MEDIATYPES)), Rows("mediaTypes", {"id"}));
        EXPECT_EQ(Names<Name64>(DC_MEDIATYPENAMES), Rows("mediaTypes", {"name"}));
        EXPECT_EQ(json(List<Two>(DC_ENUMRESOLUTIONS)), Rows("resolutions", {"x", "y"}));
    }
};

TEST_F(Capabilities, AreTheModelsFigures)
{
    constexpr std::tuple<WORD, int, int> kRows[] = {
        {DC_COPIES, 9999, 999},
        {DC_MINEXTENT, 1397 << 16 | 984, 1270 << 16 | 762}, // length and width
        {DC_MAXEXTENT, 4877 << 16 | 3302, 3560 << 16 | 2160},
        {DC_EXTRA, 708 + 5956, 564 + 5956},
        {DC_COLORDEVICE, 1, 0},
        {DC_TRUETYPE, DCTT_DOWNLOAD | DCTT_SUBDEV, DCTT_BITMAP | DCTT_DOWNLOAD},
        {DC_PRINTRATE, 70, 44},
        {DC_PRINTRATEPPM, 70, 44},
        {DC_PRINTERMEM, 2097152, 65536},
        {DC_PRINTRATEUNIT, 1, 1},
        {DC_DUPLEX, 1, 1},
        {DC_COLLATE, 1, 1},
        {DC_STAPLE, 0, 0},
        {DC_ORIENTATION, 90, 90},
        {DC_SIZE, 220, 220},
        {DC_VERSION, 0x0401, 0x0401},
        {DC_DRIVER, 0x0100, 0x0100},
    };
    for (const bool isPostScript : {true, false})
    {
        const std::string shippedModel = isPostScript ? kPostScriptModel : kUnidrvModel;
        Install(shippedModel);
        for (const auto& [capability, postScript, unidrv] : kRows)
            EXPECT_EQ(Ask(capability), isPostScript ? postScript : unidrv) << capability;
        EXPECT_EQ(static_cast<DWORD>(Ask(DC_FIELDS)) & (DM_COPIES | DM_PAPERWIDTH | DM_DITHERTYPE),
                  DWORD{DM_COPIES | DM_PAPERWIDTH});
        ExpectListsOfModel();
        const json files = Names<Name64>(DC_FILEDEPENDENCIES);
        const std::string dataFile = "tvui-" + shippedModel + ".json";
        for (const char* const name : {"tvui_B.dll", "tvcore_B.dll", "tvutil_B.dll", "tvptpc_B.dll", dataFile.c_str()})
            EXPECT_EQ(std::count(files.begin(), files.end(), json::array({name})), 1) << files;
    }
}

TEST_F(Capabilities, NamesMayFillTheirRoom)
{
    Install(kUnidrvModel,
            [](json& model)
            {
                model["mediaTypes"][0]["name"] = std::string(64, 'm');
                model["forms"][0]["name"] = std::string(63, 'f');
                model["bins"][0]["name"] = std::string(23, 'b');
            });
    ExpectListsOfModel();
}

TEST_F(Capabilities, NamePapersByOneRule)
{
    constexpr std::tuple<const char*, bool, const char*> kForms[] = {
        {"Envelope DL", false, "Env. DL"},
        {"Big Envelope for an Envelope", true, "Big Env. for an Env."},
        {"11x17", true, "11x17 inches"},
        {"8 1/2 X 13.5", true, "8 1/2 X 13.5 inches"},
        {"4 \xC3\x97 6", true, "4 \xC3\x97 6 inches"},
        {"11x17 Envelope", true, "11x17 Env."},
        {"100x200", false, "100x200"},
        {"12x18 in", true, "12x18 in"},
        {"12", true, "12"},
        {"x", true, "x"},
    };
    json expected = json::array();
    Install(kPostScriptModel,
            [&expected, &kForms](json& model)
            {
                json form = model["forms"][0];
                for (const auto& [name, isInInches, displayName] : kForms)
                {
                    form["paperId"] = 500 + expected.size();
                    form["name"] = name;
                    form["units"] = isInInches ? 7492 : 7491;
                    form["type"] = 25005;
                    form["valueId"] = 0;
                    model["forms"].push_back(form);
                    expected.push_back(json::array({displayName}));
                }
            });
    json papers = Names<Name64>(DC_PAPERNAMES);
    ASSERT_EQ(papers.size(), m_model["forms"].size());
    papers.erase(papers.begin(), papers.end() - static_cast<std::ptrdiff_t>(expected.size()));
    EXPECT_EQ(papers, expected);
}

TEST_F(Capabilities, OfAPrinterByHandleOrByName)
{
    Install(kUnidrvModel);
    const ConfigurationModule module;
    const Printer printer(m_name);
    HANDLE const handle = printer.GetPrinterHandle();
    HANDLE const nobodys = reinterpret_cast<HANDLE>(0x5555);
    WideString name = MutableName();
    WideString unknown = W("no such printer");
    WideString empty;
    const std::tuple<HANDLE, WCHAR*, int> rows[] = {
        {handle, name.data(), 999},  {handle, nullptr, 999},
        {nullptr, name.data(), 999}, {INVALID_HANDLE_VALUE, name.data(), 999},
        {nullptr, empty.data(), -1}, {nullptr, nullptr, -1},
        {nobodys, name.data(), -1},  {nullptr, unknown.data(), -1},
    };
    for (const auto& [asked, named, copies] : rows)
        EXPECT_EQ(module.Capability(asked, named, DC_COPIES, nullptr), copies) << asked << " " << (named != nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PRINTER_NAME});
    std::vector<BYTE> room(64, BYTE{0xA5});
    for (const int capability : {0, 19, 20, 21, 23, 24, 25, 33, 36, 1000, 65526, 65533, 65535}) // not answered
        EXPECT_EQ(Ask(static_cast<WORD>(capability), room.data()), -1) << capability;
    EXPECT_EQ(room, std::vector<BYTE>(64, BYTE{0xA5}));
}

TEST_F(Capabilities, AreCachedAtTheEventsOfThePrinter)
{
    Install(kUnidrvModel);
    const ConfigurationModule module;
    const auto papers = [this]
    {
        const CXString port = TavlenUtilities::ConvertPortNameToRegistryKey(Printer(m_name).GetPortName().View());
        const DataCache store({m_name, port}, HKEY_CURRENT_USER, MSDeviceCapabilities::kStamp, true);
        return store.Read(W("XPaperCaps")).value_or(ByteBuffer());
    };
    WideString name = MutableName();
    WideString unknown = W("no such printer");
    const ByteBuffer whole = papers();
    ASSERT_FALSE(whole.empty());
    for (const INT event : {PRINTER_EVENT_ADD_CONNECTION, PRINTER_EVENT_INITIALIZE, PRINTER_EVENT_CACHE_REFRESH})
    {
        EXPECT_TRUE(module.Event(name.data(), PRINTER_EVENT_DELETE));
        EXPECT_TRUE(papers().empty());
        EXPECT_TRUE(module.Event(name.data(), PRINTER_EVENT_ATTRIBUTES_CHANGED));
        EXPECT_TRUE(papers().empty());
        EXPECT_TRUE(module.Event(name.data(), event)) << event;
        EXPECT_EQ(papers(), whole);
        EXPECT_FALSE(module.Event(unknown.data(), event));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PRINTER_NAME});
    }
    EXPECT_TRUE(module.Event(nullptr, PRINTER_EVENT_DELETE));
    ChangeInstalledModel([](json& model) { model["forms"].clear(); });
    EXPECT_FALSE(module.Event(name.data(), PRINTER_EVENT_CACHE_REFRESH));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_DATA});
    EXPECT_EQ(papers(), whole) << "a model that cannot be read changes nothing";
}

} // namespace
