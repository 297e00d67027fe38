// Printer models: what ships is sound, and every fault is told by its place. What a field by itself may hold is in
// modelschematests.cpp; here is how the message reads, and what must agree between fields and tables.
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "tests/tvcore/modeltext.h"

namespace
{

using nlohmann::json;

TEST(ShippedModels, AreSoundAndHaveMarginsForEveryForm)
{
    for (const char* const name : {"tavlen-c9070-ps", "tavlen-b4400-uni", "tavlen-w3100-xps", "tavlen-b7000-xps"})
    {
        SCOPED_TRACE(name);
        const PrinterModel model = ReadPrinterModel(ModelsFolder() / (std::string(name) + ".json"));
        EXPECT_EQ(model.workflowModule, W("tvwftu_B.dll"));
        for (const PrinterModel::Form& form : model.forms)
            EXPECT_TRUE(model.margins.contains(form.paperId)) << form.paperId;
    }
}

struct FaultRow
{
    const char* place;
    std::optional<json> value; // none: what is there is taken away
    std::string fault;         // the whole message behind the file's name; empty for none
};

void ExpectFaults(const char* modelName, const std::vector<FaultRow>& rows)
{
    const json shipped = ShippedModel(modelName);
    for (const FaultRow& row : rows)
    {
        SCOPED_TRACE(row.place);
        json changed = shipped;
        if (row.value)
            changed[json::json_pointer(row.place)] = *row.value;
        else
            changed = changed.patch({{{"op", "remove"}, {"path", row.place}}});
        EXPECT_EQ(FaultOf(changed.dump()), row.fault.empty() ? "" : "m.json: " + row.fault);
    }
}

TEST(PrinterModels, AFaultIsToldByItsJsonPointer)
{
    const json own{{"id", 9700}, {"name", "Blue"}};
    json model = ShippedModel("tavlen-c9070-ps");
    json longDefaults = model["defaults"];
    for (const char* const text : {"78", "82", "83", "84", "85"})
        longDefaults[text] = std::string(255, 't');
    for (const char* const option : {"146", "174"})
        longDefaults[option] = "9700:" + std::string(64, 'n');
    json twoOwn = model["mediaTypes"];
    twoOwn[2] = twoOwn[3] = own;
    twoOwn[3]["id"] = 9701;
    ExpectFaults(
        "tavlen-c9070-ps",
        {
            {"", json::array(), "must be an object, not a list"},
            {"/memory", {}, "field \"memory\" is missing"},
            {"/a~1b~0\u2028\u009B", 1, "/a~1b~0  : unknown field"},
            {"/name", 5, "/name: must be a text, not a number"},
            {"/name", "a\nb", "/name: holds a control character or a line separator"},
            {"/capability", "0x11112222333344445", "/capability: not a hexadecimal word such as \"0x888\""},
            {"/workflowModule", "../x.dll",
             "/workflowModule: \"../x.dll\" is unknown; known are tvwftu_B.dll, tvwfwu_B.dll, tvwfuv_B.dll"},
            {"/forms/1/paperId", 9.5,
             "/forms/1/paperId: must be a whole number, not a number with a point or an exponent"},
            {"/forms/1/paperId", 18446744073709551615u, "/forms/1/paperId: must be from 1 to 65535"},
            {"/forms/1/paperId", 9, "/forms/1/paperId: paper id 9 is given twice for forms of one type"},
            {"/resolutions/1", model["resolutions"][0], "/resolutions/1: this resolution is given twice"},
            {"/mediaTypes/1/id", 6811, "/mediaTypes/1/id: media value 6811 is reserved: it has no option name"},
            {"/mediaTypes/1/id", 6879, "/mediaTypes/1/id: media value 6879 is unknown"},
            // 6799 is published like automatic selection, 1 is the spooler's number of plain paper.
            {"/mediaTypes/2/id", 6799, "/mediaTypes/2/id: another media type would have the same option name"},
            {"/mediaTypes/2/id", 1, "/mediaTypes/2/id: another media type would have the same option name"},
            {"/mediaTypes", twoOwn, "/mediaTypes/3/id: another media type would have the same option name"},
            {"/bins/1/id", 7, "/bins/1/id: bin 7 is given twice"},
            {"/margins/0/paperId", 999, "/margins/0/paperId: no form has paper id 999"},
            {"/margins/0/left", 210000, "/margins/0: the margins leave nothing of the paper"},
            {"/minExtent/length", 65535, "/minExtent: greater than the maximum extent"},
            {"/defaults/5", 1, "/defaults/5: the feature catalogue has no such feature"},
            {"/defaults/46", 5423, "/defaults/46: JobPlex must be one of 5001, 5420 to 5422"},
            {"/defaults/146", 9687,
             "/defaults/146: FinishingBypass must be one of 5001, from 9687 on with a name (9687:NAME) of at most 64 "
             "characters"},
            {"/defaults/720", 1, "/defaults/720: must be true or false, not a number"},
            {"/defaults/210", 6800, "/defaults/210: MediaCollection has no value of its own, only features"},
            {"/defaults", longDefaults,
             "/defaults: a document's defaults take 2906 bytes, a devmode has room for 2900"},
        });
    model["workflowModule"] = "TVWFTU_b.Dll"; // in the table's spelling: file systems may mind
    EXPECT_EQ(ParsePrinterModel(model.dump(), "m.json").workflowModule, W("tvwftu_B.dll"));
}

TEST(PrinterModels, FormsAgreeWithThePageSizeDictionary)
{
    json sameName = ShippedModel("tavlen-b7000-xps")["forms"][0];
    sameName["paperId"] = 2;
    json narrow = ShippedModel("tavlen-b7000-xps")["forms"][22];
    narrow["paperId"] = 9; // the margins must fit every form of the number
    narrow["width"] = 80;
    const std::string yields = ": only forms of type 25003 or 25004 may have the number of another form";
    ExpectFaults(
        "tavlen-b7000-xps",
        {
            {"/forms/0/valueId", 6699, "/forms/0/valueId: the page-size dictionary has no value 6699"},
            {"/forms/4/valueId", 6430,
             "/forms/4/valueId: value 6430 is a sheet of 215900 x 279400 microns, not of this form's size"},
            // Five tenths of a millimetre are too much, four are not.
            {"/forms/1/length", 2975,
             "/forms/1/valueId: value 6436 is a sheet of 210000 x 297000 microns, not of this form's size"},
            {"/forms/1/length", 2974, ""},
            {"/forms/4/paperId", 9, "/forms/4/paperId: paper id 9 is given twice" + yields},
            {"/forms/20/paperId", 328, "/forms/20/paperId: paper id 328 is given twice" + yields},
            {"/forms/22", narrow, "/margins/1: the margins leave nothing of the paper"},
            {"/forms/22/paperId", 9, "/margins/21/paperId: no form has paper id 332"},
            {"/forms/2", sameName, "/forms/2/valueId: another form would have the same option name"},
            // The driver's own A4 shares the number of the A4, so it is not listed; under its own number it is.
            {"/forms/19/paperId", 341, "/forms/19/valueId: another form would have the same option name"},
        });
}

TEST(PrinterModels, TextThatIsNoSoundJsonIsToldByItsLine)
{
    const std::pair<std::string, const char*> rows[] = {
        {"", "line 1: not well-formed JSON"},
        {"{\n\"name\":\n}", "line 3: not well-formed JSON"},
        {"{\"name\":\"\xFF\"}", "line 1: not well-formed JSON"},
        {"\xEF\xBB\xBF{}", "m.json: field \"name\" is missing"}, // a byte order mark is no fault
        {"1e999", "line 1: not well-formed JSON"},
        {"-99999999999999999999", "must be an object, not a number"},
        {"{\"a\":{\"b\":1,\"b\":2}}", "/a/b: field given twice"},
        {"{\"f\":[0,{\"b\":1,\"b\":2}]}", "/f/1/b: field given twice"},
        {std::string(1000000, '['), "nested too deeply"},
        {std::string(PrinterModel::kMaxFileSize + 1, ' '), "larger than 4194304 bytes"},
    };
    for (const auto& [text, end] : rows)
    {
        const std::string fault = FaultOf(text);
        EXPECT_TRUE(fault.starts_with("m.json: ") && fault.ends_with(end)) << fault;
    }
    for (const char* const name : {"no-such-file.json", "."})
        EXPECT_THROW((void)ReadPrinterModel(ModelsFolder() / name), ExceptionInvalidPrinterModel) << name;
}

} // namespace
