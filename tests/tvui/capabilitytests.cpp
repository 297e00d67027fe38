// DeviceCapabilitiesW: the model's figures, in the platform's shapes.

#include <algorithm>
#include <array>
#include <set>

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

class Capabilities : public InstalledPrinter
{
protected:
    void ExpectListsOfModel() const
    {
        const auto nameOf = [](const auto& row)
        {
            return WideString(row.name.View());
        };
        const auto textOf = [](const auto& name)
        {
            return TextOf(name);
        };
        const auto& forms = Model().forms;
        EXPECT_EQ(List<WORD>(DC_PAPERS), Each(forms, [](const auto& form) { return static_cast<WORD>(form.paperId); }));
        EXPECT_EQ(Each(List<POINTL>(DC_PAPERSIZE), [](const POINTL& size) { return std::pair(size.x, size.y); }),
                  Each(forms, [](const auto& form) { return std::pair(LONG{form.width}, LONG{form.length}); }));
        EXPECT_EQ(Each(List<Name64>(DC_PAPERNAMES), textOf), Each(forms, nameOf));
        EXPECT_EQ(List<WORD>(DC_BINS), Each(Model().bins, [](const auto& bin) { return static_cast<WORD>(bin.id); }));
        EXPECT_EQ(Each(List<Name24>(DC_BINNAMES), textOf), Each(Model().bins, nameOf));
        EXPECT_EQ(List<DWORD>(DC_MEDIATYPES),
                  Each(Model().mediaTypes, [](const auto& type) { return static_cast<DWORD>(type.id); }));
        EXPECT_EQ(Each(List<Name64>(DC_MEDIATYPENAMES), textOf), Each(Model().mediaTypes, nameOf));
        EXPECT_EQ((List<std::array<LONG, 2>>(DC_ENUMRESOLUTIONS)), Each(Model().resolutions,
                                                                        [](const auto& row) {
                                                                            return std::array<LONG, 2>{row.x, row.y};
                                                                        }));
        EXPECT_EQ(Each(List<Name64>(DC_MEDIAREADY), textOf), std::vector{nameOf(forms.front())});
    }
};

TEST_F(Capabilities, AreTheModelsFigures)
{
    struct Case
    {
        const char* model;
        int copies;
        std::array<int, 4> extents; // least width and length, greatest width and length
        int color;
        int trueType;
        int privateSize;
        int pagesPerMinute;
        int memory;
    };
    constexpr Case kCases[] = {
        {kPostScriptModel, 9999, {984, 1397, 3302, 4877}, 1, DCTT_DOWNLOAD | DCTT_SUBDEV, 708, 70, 2097152},
        {kUnidrvModel, 999, {762, 1270, 2160, 3560}, 0, DCTT_BITMAP | DCTT_DOWNLOAD, 564, 44, 65536},
    };
    for (const Case& test : kCases)
    {
        SCOPED_TRACE(test.model);
        Install(test.model);
        EXPECT_EQ(Ask(DC_COPIES), test.copies);
        EXPECT_EQ(Ask(DC_MINEXTENT), test.extents[1] << 16 | test.extents[0]);
        EXPECT_EQ(Ask(DC_MAXEXTENT), test.extents[3] << 16 | test.extents[2]);
        EXPECT_EQ(Ask(DC_EXTRA), test.privateSize + 5956);
        EXPECT_EQ(Ask(DC_COLORDEVICE), test.color);
        EXPECT_EQ(Ask(DC_TRUETYPE), test.trueType);
        EXPECT_EQ(Ask(DC_PRINTRATE), test.pagesPerMinute);
        EXPECT_EQ(Ask(DC_PRINTRATEUNIT), 1);
        EXPECT_EQ(Ask(DC_PRINTRATEPPM), test.pagesPerMinute);
        EXPECT_EQ(Ask(DC_PRINTERMEM), test.memory);
        EXPECT_EQ(Ask(DC_DUPLEX), 1);
        EXPECT_EQ(Ask(DC_COLLATE), 1);
        EXPECT_EQ(Ask(DC_STAPLE), 0);
        EXPECT_EQ(Ask(DC_ORIENTATION), 90);
        EXPECT_EQ(Ask(DC_SIZE), 220);
        EXPECT_EQ(Ask(DC_VERSION), 0x0401);
        EXPECT_EQ(Ask(DC_DRIVER), 0x0100);
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
    const Printer printer(Name());
    WideString name = MutableName();
    WideString unknown = W("no such printer");
    WideString empty;
    EXPECT_EQ(module.Capability(printer.GetPrinterHandle(), name.data(), DC_COPIES, nullptr), 999);
    EXPECT_EQ(module.Capability(printer.GetPrinterHandle(), nullptr, DC_COPIES, nullptr), 999);
    EXPECT_EQ(module.Capability(nullptr, name.data(), DC_COPIES, nullptr), 999);
    EXPECT_EQ(module.Capability(INVALID_HANDLE_VALUE, name.data(), DC_COPIES, nullptr), 999);
    EXPECT_EQ(module.Capability(nullptr, unknown.data(), DC_COPIES, nullptr), -1);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PRINTER_NAME});
    EXPECT_EQ(module.Capability(nullptr, empty.data(), DC_COPIES, nullptr), -1);
    EXPECT_EQ(module.Capability(nullptr, nullptr, DC_COPIES, nullptr), -1);
    EXPECT_EQ(module.Capability(reinterpret_cast<HANDLE>(0x5555), name.data(), DC_COPIES, nullptr), -1);
    EXPECT_TRUE(module.Event(name.data(), PRINTER_EVENT_INITIALIZE));
    EXPECT_TRUE(module.Event(nullptr, PRINTER_EVENT_DELETE));
}

} // namespace
