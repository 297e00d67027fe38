// Printer models: what ships is sound, and every fault is told by its place.
#include <filesystem>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <sstream>

#include <gtest/gtest.h>

#include <tvcore/printermodel.h>

namespace
{

using nlohmann::json;

std::string ReadModelText(const std::string& name)
{
    std::ifstream stream(std::filesystem::path(TVPT_MODELS_FOLDER) / (name + ".json"));
    EXPECT_TRUE(stream.is_open()) << name;
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

// Empty when the model is accepted.
std::string FaultOf(const std::string& text)
{
    try
    {
        (void)ParsePrinterModel(text, "m.json");
        return {};
    }
    catch (const ExceptionInvalidPrinterModel& fault)
    {
        return fault.what();
    }
}

TEST(ShippedModels, AreSoundAndHoldWhatTheirNamesPromise)
{
    struct Row
    {
        const char* name;
        const WCHAR* driver;
        std::uint64_t capability;
        std::int32_t family;
        bool isColor;
        PrinterModel::CoreDriverKind kind;
    };
    using Kind = PrinterModel::CoreDriverKind;
    constexpr Row kRows[] = {
        {"tavlen-c9070-ps", W("Tavlen C9070 PS"), 0xE02, 8434, true, Kind::PostScript},
        {"tavlen-b4400-uni", W("Tavlen B4400 Uni"), 0x888, 8431, false, Kind::Unidrv},
    };
    for (const Row& row : kRows)
    {
        SCOPED_TRACE(row.name);
        const PrinterModel model =
            ReadPrinterModel(std::filesystem::path(TVPT_MODELS_FOLDER) / (std::string(row.name) + ".json"));
        EXPECT_EQ(model.name, row.driver);
        EXPECT_EQ(model.capability, row.capability);
        EXPECT_EQ(model.controllerFamily, row.family);
        EXPECT_EQ(model.IsColor(), row.isColor);
        EXPECT_EQ(model.coreDriver.kind, row.kind);
        for (const PrinterModel::Form& form : model.forms)
            EXPECT_TRUE(model.margins.contains(form.paperId)) << form.paperId;
    }
}

TEST(PrinterModels, AFaultIsToldByItsJsonPointer)
{
    struct Row
    {
        const char* fault; // the whole message behind the file's name
        std::function<void(json&)> change;
    };
    const Row rows[] = {
        {"/: must be an object, not array",
         [](json& m)
         {
             m = json::array();
         }},
        {"/: field \"forms\" is missing",
         [](json& m)
         {
             m.erase("forms");
         }},
        {"/colour: unknown field",
         [](json& m)
         {
             m["colour"] = true;
         }},
        {"/a~1b~0: unknown field",
         [](json& m)
         {
             m["a/b~"] = 1;
         }},
        {"/name: must be a text, not number",
         [](json& m)
         {
             m["name"] = 5;
         }},
        {"/name: must not be empty",
         [](json& m)
         {
             m["name"] = "";
         }},
        {"/name: longer than 63 characters",
         [](json& m)
         {
             m["name"] = std::string(64, 'x');
         }},
        {"/name: holds a control character",
         [](json& m)
         {
             m["name"] = "a\nb";
         }},
        {"/name: holds one of the characters \\ , ! \" < > &",
         [](json& m)
         {
             m["name"] = "a\\b";
         }},
        {"/capability: not a hexadecimal word such as \"0x888\"",
         [](json& m)
         {
             m["capability"] = "0xXY";
         }},
        {"/capability: not a hexadecimal word such as \"0x888\"",
         [](json& m)
         {
             m["capability"] = "0x11112222333344445";
         }},
        {"/controllerFamily: 8433 is unknown; known are 5001, 8430, 8431, 8434",
         [](json& m)
         {
             m["controllerFamily"] = 8433;
         }},
        {"/coreDriver/kind: must be \"postscript\" or \"unidrv\"",
         [](json& m)
         {
             m["coreDriver"]["kind"] = "pcl";
         }},
        {"/coreDriver/privateSize: 564 is unknown; known are 708, 724",
         [](json& m)
         {
             m["coreDriver"]["privateSize"] = 564;
         }},
        {"/workflowModule: \"../x.dll\" is unknown; known are tvwftu_B.dll, tvwfwu_B.dll, tvwfuv_B.dll",
         [](json& m)
         {
             m["workflowModule"] = "../x.dll";
         }},
        {"/productInformation/x: the field's name is not a number",
         [](json& m)
         {
             m["productInformation"]["x"] = "";
         }},
        {"/productStrings: product string 41035 is missing",
         [](json& m)
         {
             m["productStrings"].erase("41035");
         }},
        {"/productStrings/0418: the field's name is not a number",
         [](json& m)
         {
             m["productStrings"]["0418"] = "";
         }},
        {"/forms: must be a list, not object",
         [](json& m)
         {
             m["forms"] = json::object();
         }},
        {"/forms: must not be empty",
         [](json& m)
         {
             m["forms"] = json::array();
         }},
        {"/forms/0: field \"width\" is missing",
         [](json& m)
         {
             m["forms"][0].erase("width");
         }},
        {"/forms/1/paperId: must be from 1 to 65535",
         [](json& m)
         {
             m["forms"][1]["paperId"] = 65536;
         }},
        {"/forms/1/paperId: must be a whole number, not number",
         [](json& m)
         {
             m["forms"][1]["paperId"] = 9.5;
         }},
        {"/forms/1/paperId: must be from 1 to 65535",
         [](json& m)
         {
             m["forms"][1]["paperId"] = 18446744073709551615u;
         }},
        {"/forms/1/paperId: paper id 9 is given twice for forms of one type",
         [](json& m)
         {
             m["forms"][1]["paperId"] = 9;
         }},
        {"/forms/2/type: 25006 is unknown; known are 25001, 25002, 25003, 25004, 25005, 25007",
         [](json& m)
         {
             m["forms"][2]["type"] = 25006;
         }},
        {"/forms/2/units: 1 is unknown; known are 7491, 7492",
         [](json& m)
         {
             m["forms"][2]["units"] = 1;
         }},
        {"/forms/2/valueId: a form of type 25001 needs a page-size value",
         [](json& m)
         {
             m["forms"][2]["valueId"] = 0;
         }},
        {"/forms/2/name: longer than 63 characters",
         [](json& m)
         {
             m["forms"][2]["name"] = std::string(64, 'x');
         }},
        {"/resolutions/0/name: longer than 31 characters",
         [](json& m)
         {
             m["resolutions"][0]["name"] = std::string(32, 'x');
         }},
        {"/resolutions/1: this resolution is given twice",
         [](json& m)
         {
             m["resolutions"][1] = m["resolutions"][0];
         }},
        {"/mediaTypes/1/id: media value 6811 is reserved: it has no option name",
         [](json& m)
         {
             m["mediaTypes"][1]["id"] = 6811;
         }},
        {"/mediaTypes/1/id: media value 6879 is unknown",
         [](json& m)
         {
             m["mediaTypes"][1]["id"] = 6879;
         }},
        // 6799 is published like automatic selection, 1 is the spooler's number of plain paper.
        {"/mediaTypes/2/id: another media type would have the same option name",
         [](json& m)
         {
             m["mediaTypes"][2]["id"] = 6799;
         }},
        {"/mediaTypes/2/id: another media type would have the same option name",
         [](json& m)
         {
             m["mediaTypes"][2]["id"] = 1;
         }},
        {"/mediaTypes/3/id: another media type would have the same option name",
         [](json& m)
         {
             m["mediaTypes"][2] = m["mediaTypes"][3] = {{"id", 9700}, {"name", "Blue"}};
         }},
        {"/mediaTypes/1/name: longer than 64 characters",
         [](json& m)
         {
             m["mediaTypes"][1]["name"] = std::string(65, 'x');
         }},
        {"/bins/1/id: bin 7 is given twice",
         [](json& m)
         {
             m["bins"][1]["id"] = 7;
         }},
        {"/margins/0/paperId: no form has paper id 999",
         [](json& m)
         {
             m["margins"][0]["paperId"] = 999;
         }},
        {"/margins/0: the margins leave nothing of the paper",
         [](json& m)
         {
             m["margins"][0]["left"] = 210000;
         }},
        {"/margins/0/top: must be from 0 to 1000000",
         [](json& m)
         {
             m["margins"][0]["top"] = -1;
         }},
        {"/maxCopies: must be from 1 to 32767",
         [](json& m)
         {
             m["maxCopies"] = 0;
         }},
        {"/printRate: must be from 1 to 32767",
         [](json& m)
         {
             m["printRate"] = 0;
         }},
        {"/: field \"memory\" is missing",
         [](json& m)
         {
             m.erase("memory");
         }},
        {"/minExtent: greater than the maximum extent",
         [](json& m)
         {
             m["minExtent"]["length"] = 65535;
         }},
        {"/defaults/175: must be a whole number, not null",
         [](json& m)
         {
             m["defaults"]["175"] = nullptr;
         }},
        {"/defaults/5: the feature catalogue has no such feature",
         [](json& m)
         {
             m["defaults"]["5"] = 1;
         }},
        {"/defaults/46: JobPlex must be one of 5001, 5420 to 5422",
         [](json& m)
         {
             m["defaults"]["46"] = 5423;
         }},
        {"/defaults/146: FinishingBypass must be one of 5001, from 9687 on with a name (9687:NAME) of at most 64 "
         "characters",
         [](json& m)
         {
             m["defaults"]["146"] = 9687;
         }},
        {"/defaults/95: must be a text, not number",
         [](json& m)
         {
             m["defaults"]["95"] = 12;
         }},
        {"/defaults/720: must be true or false, not number",
         [](json& m)
         {
             m["defaults"]["720"] = 1;
         }},
        {"/defaults/210: MediaCollection has no value of its own, only features",
         [](json& m)
         {
             m["defaults"]["210"] = 6800;
         }},
        {"/defaults: a document's defaults take 2906 bytes, a devmode has room for 2900",
         [](json& m)
         {
             for (const char* const text : {"78", "82", "83", "84", "85"})
                 m["defaults"][text] = std::string(255, 't');
             for (const char* const option : {"146", "174"})
                 m["defaults"][option] = "9700:" + std::string(64, 'n');
         }},
    };
    const json shipped = json::parse(ReadModelText("tavlen-c9070-ps"));
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.fault);
        json changed = shipped;
        row.change(changed);
        EXPECT_EQ(FaultOf(changed.dump()), std::string("m.json: ") + row.fault);
    }
}

TEST(PrinterModels, TextThatIsNoSoundJsonIsToldByItsLine)
{
    struct Row
    {
        std::string text;
        const char* fault;
    };
    const Row rows[] = {
        {"", "line 1: not well-formed JSON"},
        {"{\n\"name\":\n}", "line 3: not well-formed JSON"},
        {"{\"name\":\"\xFF\"}", "line 1: not well-formed JSON"},
        {"{\"a\":{\"b\":1,\"b\":2}}", "/a/b: field given twice"},
        {"{\"f\":[0,{\"b\":1,\"b\":2}]}", "/f/1/b: field given twice"},
        {std::string(1000000, '['), "nested too deeply"},
        {std::string((4u << 20) + 1, ' '), "larger than 4194304 bytes"},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.text.substr(0, 40));
        const std::string fault = FaultOf(row.text);
        EXPECT_TRUE(fault.starts_with("m.json: ") && fault.ends_with(row.fault)) << fault;
    }
}

TEST(PrinterModels, OnePaperIdMayStandForFormsOfDifferentTypes)
{
    json model = json::parse(ReadModelText("tavlen-b4400-uni"));
    json own = model["forms"][0];
    own["type"] = 25004;
    own["name"] = "A4 own";
    model["forms"].push_back(own);
    EXPECT_EQ(FaultOf(model.dump()), "");
}

TEST(PrinterModels, NameTheirWorkflowModuleInAnyCaseOfLetters)
{
    json model = json::parse(ReadModelText("tavlen-b4400-uni"));
    model["workflowModule"] = "TVWFTU_b.Dll";
    EXPECT_EQ(ParsePrinterModel(model.dump(), "m.json").workflowModule, W("tvwftu_B.dll"));
    model.erase("workflowModule");
    EXPECT_TRUE(ParsePrinterModel(model.dump(), "m.json").workflowModule.IsEmpty());
}

TEST(PrinterModels, AFileThatCannotBeReadIsAFault)
{
    for (const char* const name : {"no-such-file.json", "."})
        EXPECT_THROW((void)ReadPrinterModel(std::filesystem::path(TVPT_MODELS_FOLDER) / name),
                     ExceptionInvalidPrinterModel)
            << name;
}

} // namespace
