// Printer models against the page-size dictionary.
#include <gtest/gtest.h>

#include <string>

#include <tvcore/printermodel.h>

#include "tests/tvcore/modeltext.h"

namespace
{

using nlohmann::json;

TEST(ModelsAndTheDictionary, DisagreementIsAFaultOfTheModel)
{
    struct Row
    {
        const char* place; // in the list of forms, and what stands there
        json value;
        const char* fault;
    };
    const json shipped = ShippedModel("tavlen-b7000-xps");
    json sameName = shipped["forms"][0];
    sameName["paperId"] = 2;
    const Row rows[] = {
        {"/0/valueId", 6699, "/forms/0/valueId: the page-size dictionary has no value 6699"},
        {"/4/valueId", 6430,
         "/forms/4/valueId: value 6430 is a sheet of 215900 x 279400 microns, not of this form's size"},
        // Five tenths of a millimetre are too much, four are not.
        {"/1/length", 2975,
         "/forms/1/valueId: value 6436 is a sheet of 210000 x 297000 microns, not of this form's size"},
        {"/1/length", 2974, ""},
        {"/18/valueId", 0, "/forms/18/valueId: a form of type 25004 needs a page-size value"},
        {"/2", sameName, "/forms/2/valueId: another form would have the same option name"},
        // The driver's own A4 shares the number of the A4, so it is not listed; under its own number it is.
        {"/19/paperId", 341, "/forms/19/valueId: another form would have the same option name"},
        {"/0/paperId", 49152, "/forms/0/paperId: paper ids from 49152 on are for named custom sizes"},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.place);
        json changed = shipped;
        changed["forms"][json::json_pointer(row.place)] = row.value;
        std::string fault;
        try
        {
            (void)ParsePrinterModel(changed.dump(), "m.json");
        }
        catch (const ExceptionInvalidPrinterModel& exception)
        {
            fault = exception.what();
        }
        EXPECT_EQ(fault, *row.fault != '\0' ? std::string("m.json: ") + row.fault : "");
    }
}

} // namespace
