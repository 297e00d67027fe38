// DeviceCapabilitiesW: the model's figures, in the platform's shapes.

#include <algorithm>
#include <array>
#include <tuple>

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
        Install(isPostScript ? kPostScriptModel : kUnidrvModel);
        for (const auto& [capability, postScript, unidrv] : kRows)
            EXPECT_EQ(Ask(capability), isPostScript ? postScript : unidrv) << capability;
        EXPECT_EQ(static_cast<DWORD>(Ask(DC_FIELDS)) & (DM_COPIES | DM_PAPERWIDTH | DM_DITHERTYPE),
                  DWORD{DM_COPIES | DM_PAPERWIDTH});
        ExpectListsOfModel();
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

TEST_F(Capabilities, ListTheFilesOfTheDriver)
{
    Install(kPostScriptModel);
    const json files = Names<Name64>(DC_FILEDEPENDENCIES);
    for (const char* const name :
         {"tvui_B.dll", "tvcore_B.dll", "tvutil_B.dll", "tvptpc_B.dll", "tvwftu_b.dll", "tvui-tavlen-c9070-ps.json"})
        EXPECT_EQ(std::count(files.begin(), files.end(), json::array({name})), 1) << files;
}

TEST_F(Capabilities, ThatAreNotAnsweredAreMinusOneAndWriteNothing)
{
    Install(kUnidrvModel);
    std::vector<BYTE> room(64, BYTE{0xA5});
    for (const int capability : {0, 19, 20, 21, 23, 24, 25, 33, 36, 1000, 65526, 65533, 65535})
        EXPECT_EQ(Ask(static_cast<WORD>(capability), room.data()), -1) << capability;
    EXPECT_EQ(room, std::vector<BYTE>(64, BYTE{0xA5}));
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
    EXPECT_TRUE(module.Event(name.data(), PRINTER_EVENT_INITIALIZE));
    EXPECT_TRUE(module.Event(nullptr, PRINTER_EVENT_DELETE));
}

} // namespace
