// Page media size: papers of devmodes and tickets on their way through a provider, with every model's forms and others.
#include <algorithm>

#include <tvcore/pagesizetable.h>
#include <tvutil/operatingsystem.h>

#include "complugins/customforms.h"
#include "tests/common/oemdevmodebytes.h"
#include "tests/ptpcprovider/pagesizefixture.h"

namespace
{

using nlohmann::json;
using OemDevmodeBytes::MakeForm;

constexpr const char* kModels[] = {"tavlen-c9070-ps", "tavlen-b4400-uni", "tavlen-w3100-xps", "tavlen-b7000-xps"};

std::string SizeOf(const json& form, const char* zeros)
{
    return form["width"].dump() + zeros + "x" + form["length"].dump() + zeros;
}

// By what the model says of the form; "" for a form that is never published.
std::string OptionOf(const json& form, const std::string& privatePrefix = "ns0000:")
{
    const std::string size = "_" + form["paperId"].dump() + "_" + SizeOf(form, "");
    switch (form["type"].get<int>())
    {
    case DataModelIds::PageSizeUserForm:
        return privatePrefix + "UserForm" + size;
    case DataModelIds::PageSizeDriverCustom:
        return privatePrefix + "DriverCustomSize" + size;
    case DataModelIds::PageSizeUnlisted:
        return {};
    default:
        const PageSizeRow& row = *PageSizeTable::FindRow(form["valueId"].get<int>());
        return (row.isKeyword ? "psk:" : privatePrefix) + Utf8(row.optionName);
    }
}

// The form that a devmode with its number means: the first of that number, or of the driver's own form of its size.
const json& MeantBy(const json& form, const json& forms)
{
    json number = form["paperId"];
    for (const json& other : forms)
        if (other["type"] == 25004 && SizeOf(other, "") == SizeOf(form, ""))
            number = other["paperId"];
    return *std::find_if(forms.begin(), forms.end(), [&](const json& other) { return other["paperId"] == number; });
}

// The form that comes back: one of a page-size value itself, else the first of the size or the last user's form of it.
std::string BackOf(const json& form, const json& forms)
{
    json back = form;
    for (const json& other : forms)
        if (form["valueId"] == 0 && other["type"] == 25005 && SizeOf(other, "") == SizeOf(form, ""))
            back = other;
    const bool isByValue = form["valueId"] != 0;
    return (isByValue ? form["paperId"].dump() : "256") + " " + SizeOf(back, "") + " " +
           back["name"].get<std::string>();
}

class MediaSize : public PageSizes
{
};

TEST_F(MediaSize, OfEveryFormOfEveryModelComesBack)
{
    const std::string custom = "psk:CustomMediaSize psk:MediaSizeWidth psk:PageMediaSizeMediaSizeWidth "
                               "psk:MediaSizeHeight psk:PageMediaSizeMediaSizeHeight "
                               "psk:PageMediaSizeMediaSizeWidth 123400 psk:PageMediaSizeMediaSizeHeight 234500";
    const std::string postScript = "psk:PSCustomMediaSize psk:PSWidth psk:PageMediaSizePSWidth psk:PSHeight "
                                   "psk:PageMediaSizePSHeight psk:PSWidthOffset psk:PageMediaSizePSWidthOffset "
                                   "psk:PSHeightOffset psk:PageMediaSizePSHeightOffset psk:PSOrientation "
                                   "psk:PageMediaSizePSOrientation psk:PageMediaSizePSWidth 123400 "
                                   "psk:PageMediaSizePSHeight 234500 psk:PageMediaSizePSWidthOffset 0 "
                                   "psk:PageMediaSizePSHeightOffset 0 psk:PageMediaSizePSOrientation 1";
    for (const std::string model : kModels)
    {
        Bind(model, [](json& changed) { changed["forms"][0]["name"] = std::string(40, 'n'); });
        for (const json& named : m_model["forms"])
        {
            SCOPED_TRACE(model + ": " + named["name"].get<std::string>());
            const json& form = named["paperId"] == 256 ? named : MeantBy(named, m_model["forms"]);
            // An older custom size, whose initialisers go unless something else refers to them.
            const ComPtr<IXMLDOMDocument2> ticket = LoadTestDocument("tickets/custom-size.xml");
            const bool isCustom = form["paperId"] == 256;
            const bool isListed = form["type"] != 25007;
            EXPECT_EQ(isListed ? S_OK : E_FAIL, ToTicket(named["paperId"], 1234, 2345, ticket.Get()));
            if (!isListed)
                continue;
            const std::string fixed = OptionOf(form) + " psk:MediaSizeWidth " + form["width"].dump() +
                                      "00 psk:MediaSizeHeight " + form["length"].dump() + "00";
            EXPECT_EQ(!isCustom ? fixed : model == kModels[0] ? postScript : custom, SizeIn(ticket.Get()));
            const std::string back = isCustom ? "256 1234x2345 " : BackOf(form, m_model["forms"]);
            EXPECT_EQ(back.substr(0, back.find("nnn")) + std::string(back.find("nnn") < back.size() ? 31 : 0, 'n'),
                      ToDevmode(ticket.Get()).substr(0, back.size()));
        }
    }
}

std::string Feature(const std::string& option, const std::string& width, const std::string& height,
                    const std::string& kind = "MediaSize")
{
    const auto property = [&kind](const char* side, const std::string& value)
    {
        return "<psf:ScoredProperty name='psk:" + kind + side + "'>" + value + "</psf:ScoredProperty>";
    };
    const auto number = [](const std::string& text)
    {
        return text.starts_with("<") ? text : "<psf:Value>" + text + "</psf:Value>";
    };
    return "<psf:Feature name='psk:PageMediaSize'><psf:Option name='" + option + "'>" +
           property("Width", number(width)) + property("Height", number(height)) + "</psf:Option></psf:Feature>";
}

TEST_F(MediaSize, OfATicketChoosesTheFormOfItsValueOrElseOfItsSize)
{
    const std::string a4 = "9 2100x2970 A4";
    const std::string usual = OperatingSystem::UseEnglishPaperSizes() ? "1 2159x2794 Letter" : a4;
    const std::string a4Option = "<psf:Feature name='psk:PageMediaSize'><psf:Option name='psk:ISOA4'/></psf:Feature>";
    const auto file = [](const char* name)
    {
        return TextOf(LoadTestDocument(std::string("tickets/") + name).Get());
    };
    const auto custom = [](const std::string& width, const std::string& height)
    {
        return TicketAround(Feature("psk:CustomMediaSize", width, height));
    };
    const std::string referring = TicketAround(
        Feature("psk:PSCustomMediaSize", "<psf:ParameterRef name='psk:W'/>", "200000", "PS") +
        "<psf:ParameterInit name='psk:W'><psf:Value>100000</psf:Value></psf:ParameterInit>");
    struct Row
    {
        std::string ticket;
        std::string c9070, b4400, w3100, b7000;
    };
    const auto everywhere = [](const std::string& ticket, const std::string& form)
    {
        return Row{ticket, form, form, form, form};
    };
    const Row rows[] = {
        everywhere(file("platform-00.xml"), a4), // 209.9 mm
        everywhere(file("prefix-fw.xml"), a4),
        everywhere(file("custom-size.xml"), "256 1500x2200 "),
        everywhere(referring, "256 1000x2000 "),
        // The value that the name has ends the walk, whatever the size; other makers' names have none.
        everywhere(TicketAround(Feature("psk:ISOA4", "100000", "100000")), a4),
        {TicketAround(Feature("psk:ISOA3", "297000", "420000")), "8 2970x4200 A3", "256 2970x4200 ", "8 2970x4200 A3",
         "8 2970x4200 A3"},
        {TicketAround(Feature("ns0000:sra4", "1000", "1000")), "256 10x10 ", "256 10x10 ", "256 10x10 ",
         "325 2250x3200 SRA4"},
        everywhere(TicketAround(Feature("vnd:sra4", "1000", "1000")), "256 10x10 "),
        // By size, to half a millimetre; a user's form of it wins.
        {TicketAround(Feature("vnd:Own", "210499", "296501")), a4, a4, a4, "256 2100x2970 House Stationery"},
        everywhere(TicketAround(Feature("vnd:Own", "210500", "297000")), "256 2105x2970 "),
        {TicketAround(Feature("vnd:Own", "200000", "300000")), "256 2000x3000 ", "256 2000x3000 ", "256 2000x3000 ",
         "256 2000x3000 Service Test Sheet"},
        // Custom sizes take no form's place; other makers' are sizes like others.
        everywhere(custom("210000", "297000"), "256 2100x2970 "),
        everywhere(TicketAround(Feature("vnd:CustomMediaSize", "215900", "279400")), "1 2159x2794 Letter"),
        // Numbers as the runtime reads them; in a devmode they have 16 bits.
        everywhere(custom("150050.9", "220051up"), "256 1500x2201 "),
        everywhere(custom("99999999999", "3300000"), "256 44564x33000 "),
        // No usable size: the default, also for a name that says another.
        everywhere(file("minimal.xml"), usual),
        everywhere(TicketAround("<psf:Feature name='psk:PageMediaSize'/>" + a4Option), usual),
        everywhere(TicketAround(a4Option), usual),
        everywhere(TicketAround(Feature("psk:ISOA5", "148000", "")), usual),
        everywhere(custom("0", "297000"), usual),
        everywhere(custom("-210000", "297000"), usual),
        everywhere(custom("1e5", "297000"), usual),
        everywhere(custom("50", "297000"), usual),
        everywhere(custom("6553600", "297000"), usual), // 16 bits of which would be 0
        everywhere(custom("<psf:ParameterRef name='psk:Nowhere'/>", "297000"), usual),
        everywhere(TicketAround(Feature("psk:ISOA5", "148000", "210000") + a4Option), "11 1480x2100 A5"),
        everywhere(TicketAround("<psf:Feature name='psk:PageMediaSize'><psf:Option name='A4'/></psf:Feature>"),
                   "refused"),
    };
    for (const std::string model : kModels)
    {
        Bind(model);
        for (const Row& row : rows)
        {
            SCOPED_TRACE(model + ": " + row.ticket);
            const std::string& expected = model == kModels[0]   ? row.c9070
                                          : model == kModels[1] ? row.b4400
                                          : model == kModels[2] ? row.w3100
                                                                : row.b7000;
            EXPECT_EQ(expected, ToDevmode(LoadDocument(row.ticket).Get()));
        }
    }
}

TEST_F(MediaSize, OfACustomSizeOfTheUsersHasItsOwnOption)
{
    CustomForms::Remove(W("Banner"));
    ASSERT_EQ(0, RunHost({"printer", "custom-size", "add", "Banner", "--width", "297mm", "--length", "1200mm"}).status);
    Bind(kModels[1]);
    const ComPtr<IXMLDOMDocument2> ticket = LoadDocument(TicketAround(""));
    EXPECT_EQ(S_OK, ToTicket(256, 2970, 12000, ticket.Get()));
    EXPECT_EQ(0u, SizeIn(ticket.Get()).find("ns0000:DriverCustomSize_" + std::to_string(CustomSizeNumber(W("Banner"))) +
                                            "_2970x12000 "));
    EXPECT_EQ("256 2970x12000 Banner", ToDevmode(ticket.Get()));
    CustomForms::Remove(W("Banner"));
}

// Lists that no model has; sizes in a devmode are found by the first form that is no driver's custom size.
TEST_F(MediaSize, IsFoundInEveryOrderOfForms)
{
    const FormsInfoRecord custom = MakeForm(256, W("Custom"), 2100, 2970, 25003);
    const FormsInfoRecord own = MakeForm(330, W("Own"), 2000, 3000, 25003);
    const FormsInfoRecord late = MakeForm(331, W("Late"), 2000, 3000, 25003);
    const FormsInfoRecord user = MakeForm(257, W("User"), 2000, 3000, 25005);
    const FormsInfoRecord other = MakeForm(258, W("Other"), 2000, 3000, 25005);
    const FormsInfoRecord hidden = MakeForm(340, W("Hidden"), 2000, 3000, 25007);
    const FormsInfoRecord unknown = MakeForm(400, W("Unknown"), 2000, 3000, 25001); // by no dictionary
    struct Row
    {
        std::vector<FormsInfoRecord> forms;
        int number;
        const char* option; // of the size, or of the first; null: refused
        const char* back;
    };
    const Row rows[] = {
        {{own, user, other}, 256, "ns0000:UserForm_257_2000x3000 ", "256 2000x3000 Other"},
        {{hidden, own, late}, 256, "ns0000:DriverCustomSize_331_2000x3000 ", "256 2000x3000 Hidden"},
        {{custom, hidden}, 256, "psk:CustomMediaSize ", "256 2000x3000 "},
        {{custom, own}, 999, "psk:CustomMediaSize ", "256 2000x3000 "},
        {{}, 256, "psk:CustomMediaSize ", "256 2000x3000 "},
        {{unknown}, 400, nullptr, nullptr},
        {{hidden}, 340, nullptr, nullptr},
    };
    Bind(kModels[1]);
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.forms.size());
        SetForms(row.forms);
        const ComPtr<IXMLDOMDocument2> ticket = LoadTestDocument("tickets/custom-size.xml");
        const std::string before = TextOf(ticket.Get());
        EXPECT_EQ(row.option != nullptr ? S_OK : E_FAIL, ToTicket(row.number, 2000, 3000, ticket.Get()));
        if (row.option == nullptr)
            EXPECT_EQ(before, TextOf(ticket.Get()));
        else
        {
            EXPECT_EQ(0u, SizeIn(ticket.Get()).find(row.option)) << SizeIn(ticket.Get());
            EXPECT_EQ(row.back, ToDevmode(ticket.Get()));
        }
    }
    SetForms({});
    EXPECT_EQ("256 0x0 ", ToDevmode(LoadDocument(TicketAround("")).Get())) << "no form has the default value";
    m_binding.emplace();
    EXPECT_EQ("refused", ToDevmode(LoadDocument(TicketAround("")).Get())) << "no printer, no forms";
}

} // namespace
