// DeviceCapabilitiesW: the model's figures, in the platform's shapes.

#include <algorithm>
#include <array>
#include <set>
#include <tuple>

#include "tests/tvui/installedprinter.h"

namespace
{

template <std::size_t Length>
WideString TextOf(const std::array<WCHAR, Length>& name)
{
    return {name.data(), static_cast<std::size_t>(std::find(name.begin(), name.end(), WCHAR()) - name.begin())};
}

using Name24 = std::array<WCHAR, 24>;
using Name64 = std::array<WCHAR, 64>;

// One value of each row of a list.
template <class Rows, class Projection>
auto Each(const Rows& rows, Projection projection)
{
    std::vector<std::decay_t<decltype(projection(rows.front()))>> values;
    for (const auto& row : rows)
        values.push_back(projection(row));
    return values;
}

using Pair = std::array<LONG, 2>;

Pair PairOf(LONG first, LONG second)
{
    return {first, second};
}

class Capabilities : public InstalledPrinter
{
protected:
    template <class Name, class Rows>
    void ExpectNames(WORD capability, const Rows& rows) const
    {
        EXPECT_EQ(Each(List<Name>(capability), TextOf<std::tuple_size_v<Name>>),
                  Each(rows, [](const auto& row) { return WideString(row.name.View()); }))
            << "capability " << capability;
    }

    void ExpectListsOfModel() const
    {
        const auto& forms = m_model.forms;
        EXPECT_EQ(List<WORD>(DC_PAPERS), Each(forms, [](const auto& form) { return WORD{form.paperId}; }));
        EXPECT_EQ(List<Pair>(DC_PAPERSIZE),
                  Each(forms, [](const auto& form) { return PairOf(form.width, form.length); }));
        ExpectNames<Name64>(DC_PAPERNAMES, forms);
        ExpectNames<Name64>(DC_MEDIAREADY, std::vector{forms.front()});
        EXPECT_EQ(List<WORD>(DC_BINS), Each(m_model.bins, [](const auto& bin) { return WORD{bin.id}; }));
        ExpectNames<Name24>(DC_BINNAMES, m_model.bins);
        EXPECT_EQ(List<DWORD>(DC_MEDIATYPES),
                  Each(m_model.mediaTypes, [](const auto& type) { return static_cast<DWORD>(type.id); }));
        ExpectNames<Name64>(DC_MEDIATYPENAMES, m_model.mediaTypes);
        EXPECT_EQ(List<Pair>(DC_ENUMRESOLUTIONS),
                  Each(m_model.resolutions, [](const auto& row) { return PairOf(row.x, row.y); }));
    }
};

TEST_F(Capabilities, AreTheModelsFigures)
{
    struct Row
    {
        WORD capability;
        int postScript;
        int unidrv;
    };
    constexpr Row kRows[] = {
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
        for (const Row& row : kRows)
            EXPECT_EQ(Ask(row.capability), isPostScript ? row.postScript : row.unidrv) << row.capability;
        EXPECT_EQ(static_cast<DWORD>(Ask(DC_FIELDS)) & (DM_COPIES | DM_PAPERWIDTH | DM_DITHERTYPE),
                  DWORD{DM_COPIES | DM_PAPERWIDTH});
        ExpectListsOfModel();
    }
}

TEST_F(Capabilities, NamesMayFillTheirRoom)
{
    const std::string whole(64, 'm');
    Install(kUnidrvModel,
            [&whole](nlohmann::json& model)
            {
                model["mediaTypes"][0]["name"] = whole;
                model["forms"][0]["name"] = std::string(63, 'f');
                model["bins"][0]["name"] = std::string(23, 'b');
            });
    EXPECT_EQ(TextOf(List<Name64>(DC_MEDIATYPENAMES)[0]).size(), 64u);
    ExpectListsOfModel();
}

TEST_F(Capabilities, ListTheFilesOfTheDriver)
{
    Install(kPostScriptModel);
    std::set<WideString> names;
    for (const Name64& name : List<Name64>(DC_FILEDEPENDENCIES))
        names.insert(TextOf(name));
    for (const WCHAR* const name : {W("tvui_B.dll"), W("tvcore_B.dll"), W("tvutil_B.dll"), W("tvptpc_B.dll"),
                                    W("tvwftu_b.dll"), W("tvui-tavlen-c9070-ps.json")})
        EXPECT_EQ(names.count(name), 1u) << CXString(name).ToUtf8();
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
