// Printer models against the page-size dictionary.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>

#include <tvcore/pagesizedictionary.h>
#include <tvcore/printermodel.h>

#include "tests/tvcore/modeltext.h"

namespace
{

using nlohmann::json;

TEST(ModelsAndTheDictionary, DisagreementIsAFaultOfTheModel)
{
    struct Row
    {
        const char* fault;
        std::function<void(json&)> change;
    };
    const Row rows[] = {
        {"/forms/0/valueId: the page-size dictionary has no value 6699",
         [](json& forms)
         {
             forms[0]["valueId"] = 6699;
         }},
        {"/forms/4/valueId: value 6430 is a sheet of 215900 x 279400 microns, not of this form's size",
         [](json& forms)
         {
             forms[4]["valueId"] = 6430;
         }},
        // Five tenths of a millimetre are too much, four are not.
        {"/forms/1/valueId: value 6436 is a sheet of 210000 x 297000 microns, not of this form's size",
         [](json& forms)
         {
             forms[1]["length"] = 2975;
         }},
        {"",
         [](json& forms)
         {
             forms[1]["length"] = 2974;
         }},
        {"/forms/18/valueId: a form of type 25004 needs a page-size value",
         [](json& forms)
         {
             forms[18]["valueId"] = 0;
         }},
        {"/forms/2/valueId: another form would have the same option name",
         [](json& forms)
         {
             forms[2] = forms[0];
             forms[2]["paperId"] = 2;
         }},
        // The driver's own A4 shares the number of the A4, so it is not listed; under its own number it is.
        {"/forms/19/valueId: another form would have the same option name",
         [](json& forms)
         {
             forms[19]["paperId"] = 341;
         }},
        {"/forms/0/paperId: paper ids from 49152 on are for named custom sizes",
         [](json& forms)
         {
             forms[0]["paperId"] = 49152;
         }},
    };
    const json shipped = ShippedModel("tavlen-b7000-xps");
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.fault);
        json changed = shipped;
        row.change(changed["forms"]);
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

// What the provider does to name a form.
TEST(ModelsAndTheDictionary, EveryFormOfADictionaryTypeHasAnOptionName)
{
    const PageSizeDictionary dictionary;
    for (const char* const name : {"tavlen-c9070-ps", "tavlen-b4400-uni", "tavlen-w3100-xps", "tavlen-b7000-xps"})
        for (const PrinterModel::Form& form : ParsePrinterModel(ShippedModel(name).dump(), name).forms)
        {
            SCOPED_TRACE(std::string(name) + ", form " + form.name.ToUtf8());
            int found = 0;
            for (const PageSizeDictionaryEntry& entry :
                 dictionary.GetPageSizeEntryRefs(Dimension(form.width, Dimension::TenthsOfAMillimeter),
                                                 Dimension(form.length, Dimension::TenthsOfAMillimeter)))
                found += entry.GetValueId().GetValueEnum() == form.valueId ? 1 : 0;
            EXPECT_EQ(found, form.valueId != 0 ? 1 : 0);
        }
}

TEST(ShippedXpsModels, HoldWhatTheirNamesPromise)
{
    const PrinterModel w3100 = ParsePrinterModel(ShippedModel("tavlen-w3100-xps").dump(), "w3100");
    EXPECT_EQ(w3100.capability, 0xC08u);
    EXPECT_EQ(w3100.controllerFamily, 8430);
    EXPECT_EQ(w3100.coreDriver.kind, PrinterModel::CoreDriverKind::Unidrv);
    EXPECT_TRUE(w3100.IsColor());

    const PrinterModel b7000 = ParsePrinterModel(ShippedModel("tavlen-b7000-xps").dump(), "b7000");
    EXPECT_EQ(b7000.capability, 0x1404u);
    EXPECT_EQ(b7000.controllerFamily, 8431);
    EXPECT_EQ(b7000.coreDriver.kind, PrinterModel::CoreDriverKind::PostScript);
    EXPECT_FALSE(b7000.IsColor());
    std::map<std::int32_t, int> formsOfType;
    for (const PrinterModel::Form& form : b7000.forms)
        ++formsOfType[form.formType];
    for (const std::int32_t type : {25001, 25002, 25003, 25004, 25005, 25007})
        EXPECT_GT(formsOfType[type], 0) << type;
    EXPECT_GT(b7000.mediaTypes.back().id, 9686);
}

} // namespace
