// Job tickets: the settings of a devmode in, the whole text out; and what tvpt says of settings that are not in it.
#include <cstdlib>
#include <sstream>

#include "complugins/renjtifforxps.h"
#include "complugins/xdevmode.h"
#include "hostrun.h"
#include "tests/common/oemdevmodebytes.h"
#include "tests/common/testdevmode.h"

#include <tvcore/featurevalues.h>
#include <tvutil/attributebyteslistvalue.h>
#include <tvutil/attributebytesreader.h>

namespace
{

namespace Feature = DataModelIds::Feature;
using namespace OemDevmodeBytes;

using JobTickets = HostTest;

Bytes DevmodeWith(const AttributeBytesIndexedList& settings)
{
    return Make(CoreDriverLayout::PostScript, {{1, StateOf(AttributeBytesRawList(settings))}});
}

// As whoever writes the bytes can make it: of any characters.
AttributeBytesValue RawText(WStringView text)
{
    return {AttributeBytesKind::String, 0, ByteBuffer(std::as_bytes(std::span(text)))};
}

std::string TicketOf(const AttributeBytesIndexedList& settings)
{
    Bytes bytes = DevmodeWith(settings);
    XDevmode devmode(reinterpret_cast<DEVMODEW*>(bytes.data()));
    ProductData product(PrinterModel{});
    ByteBuffer text("+", 1); // what is there stays in front
    EXPECT_TRUE(RenJtifForXps(nullptr, devmode, product).GenerateJtif(text) && *text.data() == '+');
    return {reinterpret_cast<const char*>(text.data()) + 1, text.size() - 1};
}

// "43=3|46=5421"
std::string TicketOf(const std::string& settings)
{
    AttributeBytesIndexedList list;
    std::istringstream parts(settings);
    for (std::string part; std::getline(parts, part, '|');)
    {
        const FeatureCatalogue::Row& row = *FeatureCatalogue::Find(std::atoi(part.c_str()));
        FeatureCatalogue::StoreValue(list, row, ParseValue(row, part.substr(part.find('=') + 1), true));
    }
    return TicketOf(list);
}

// The whole text of "~|copyCount: 3|#": "~" is a job's title and sender that nobody has set, "#" is no finishing.
std::string Text(const std::string& lines)
{
    std::string text = "%TVLbegin: 001.0300|" + lines + "|";
    for (const auto& [mark, meaning] :
         {std::pair("~", "title: Default job|senderName: Default Sender"),
          std::pair("#", "binding: None|edgeStitching: None|bookletMaker: False"), std::pair("|", "\n%TVL")})
        for (std::size_t at = 0; (at = text.find(mark, at)) != text.npos; at += std::string_view(meaning).size())
            text.replace(at, 1, meaning);
    return text.substr(0, text.size() - 4);
}

// One job for each value of the last setting; its text stands for "@".
struct Jobs
{
    std::string settings;
    std::string values;
    std::string lines;
};

// clang-format off
const Jobs kJobs[] = {
    // Texts as they come: neither quoted nor escaped; an empty one is one too; what is not ASCII has no byte.
    {"85=%TVLend|84=a: b|83=R\xC3\xB6sli \xF0\x9F\x93\x84|82=|78=", "100%\"\\n 100%\"\\n",
     "title: @|senderName: |recipientName: R?sli ??|message: a: b|jobStartMessage: %TVLend|#"},
    // Every feature, in the reverse of the ticket's order.
    {"179=90|178=6921|176=5|175=6803|174=6753|104=5901|103=5852|102=5811|101=5756|63=5531|98=4mm|97=3mm|96=2mm|95=1mm|88=5601"
     "|45=5410|208=6254|145=5001|146=5001|46=5421|43=3|59=5511|85=S|84=M|83=R|82=A|78=", "T T",
     "title: @|senderName: A|recipientName: R|message: M|jobStartMessage: S|signature: True|copyCount: 3|requirements: duplex"
     "|binding: None|edgeStitching: SinglePortrait|bookletMaker: False|requirements: collated|rotation: 90|xImageShift: 1"
     "|yImageShift: 2|x2ImageShift: 3|y2ImageShift: 4|disposition: SAVE|highlightPrintingColor: cardinal"
     "|highlightMappingColor: yellow|highlightMappingAlgorithm: Presentation|mismatchedHighlightPrintingColor: hold"
     "|documentPaperColors: yellow|paperType-opacity: opaque|paperType-preFinish: DrilledPreCutTab 3 5|paperType-weight: 90"},
    // All automatic.
    {"46=5001|98=1mm|146=5001|145=5001|208=5001|45=5001|88=5001|63=5001|101=5001|102=5001|103=5001|104=5001|174=5001|175=5001"
     "|178=6921|59=", "5001 False|5510 False|5511 True",
     "~|signature: @|#|y2ImageShift: 1|disposition: PRINT|documentPaperColors: Automatic"},
    {"101=5761|97=1mm|43=", "1 1|32767 32767", "~|copyCount: @|#|x2ImageShift: 1"},
    {"45=", "5410 collated|5411 uncollated", "~|#|requirements: @"},
    {"88=", "5600 0|5601 90|5602 180|5603 270", "~|#|rotation: @"},
    {"63=", "5001 PRINT|5530 PRINT|5531 SAVE|5532 PRINT&SAVE", "~|#|disposition: @"},
    // To the nearest millimetre, a half towards zero. The back's unless the job is simplex.
    {"96=12.6mm|95=", "12.5mm 12|12.6mm 13|-12.5mm -12|-12.6mm -13|-0.4mm 0|1in 25|1000mm 1000", "~|#|xImageShift: @|yImageShift: 13"},
    {"97=1mm|98=1mm|46=", "5421 duplex|5422 duplex(tumble)", "~|requirements: @|#|x2ImageShift: 1|y2ImageShift: 1"},
    {"97=1mm|98=1mm|46=", "5420 simplex", "~|requirements: @|#"},
    // Finishing: the bypass comes first, then slip sheets.
    {"145=6800|208=6254|146=", "9700:Stacker Stacker", "~|outputLocation: FinishingBypass @"},
    {"208=6254|145=", "6800 slipSheeting|1 slipSheeting", "~|requirements: @|#"},
    {"208=", "6252 True", "~|binding: None|edgeStitching: None|bookletMaker: @"},
    {"208=", "6275 left|6276 right", "~|binding: @|edgeStitching: None|bookletMaker: False"},
    {"208=", "6254 SinglePortrait|6255 SingleLandscape|6256 RightSinglePortrait|6257 RightSingleLandscape|6258 DualLandscape"
     "|6259 DualPortrait|6260 RightDualLandscape|6261 RightDualPortrait", "~|binding: None|edgeStitching: @|bookletMaker: False"},
    {"101=", "5750 red|5751 green|5752 blue|5753 cyan|5754 magenta|5755 black|5756 cardinal|5757 royal|5758 ruby|5759 violet"
     "|5760 brown|5762 other", "~|#|highlightPrintingColor: @"},
    {"102=", "5800 red|5801 green|5802 blue|5803 cyan|5804 magenta|5805 black|5806 cardinal|5807 royal|5808 ruby|5809 violet"
     "|5810 brown|5811 yellow|5812 other", "~|#|highlightMappingColor: @"},
    {"103=", "5850 Automatic|5851 Pictorial|5852 Presentation|5853 PictorialTable|5854 ColorToHighlight|5855 Monochrome",
     "~|#|highlightMappingAlgorithm: @"},
    {"104=", "5900 selectCurrent|5901 hold|5902 abort", "~|#|mismatchedHighlightPrintingColor: @"},
    {"174=", "6750 noColor|6751 white|6752 pink|6753 yellow|6754 blue|6755 green|6756 buff|6757 goldenrod|6758 red|6759 gray"
     "|6760 ivory|6761 orange|5001 Automatic|9700:Sky Sky", "~|#|documentPaperColors: @"},
    // The type of the paper; without one nothing of it but the weight.
    {"178=6921|176=5|179=", "0 0|120 120", "~|#|paperType-weight: @"},
    {"178=6921|176=5|175=", "6801 PlainDrilled 3 0", "~|#|paperType-opacity: transparency|paperType-preFinish: @"},
    {"175=", "6801 Plain 0 0", "~|#|paperType-opacity: transparency|paperType-preFinish: @"},
    {"178=6920|176=12|175=", "6800 Plain 0 0|6803 PlainPreCutTab 0 12|6804 PlainPreCutTab 0 12|6890 Preprinted 0 0"
     "|6799 opaque 0 12|6802 opaque 0 12|9700:Blue opaque 0 12", "~|#|paperType-opacity: opaque|paperType-preFinish: @"},
    {"178=6921|176=0|175=", "6800 PlainDrilled 3 0|6803 DrilledPreCutTab 3 0|6804 DrilledPreCutTab 3 0|6890 PreprintedDrilled 3 0"
     "|6802 opaque 3 0", "~|#|paperType-opacity: opaque|paperType-preFinish: @"},
    {"175=", "6804 PlainPreCutTab 0 0|6878 opaque 0 0", "~|#|paperType-opacity: opaque|paperType-preFinish: @"},
};
// clang-format on

TEST_F(JobTickets, SayWhatTheSettingsAre)
{
    EXPECT_EQ(TicketOf(""), Text("~|#"));
    for (const Jobs& row : kJobs)
    {
        std::istringstream values(row.values);
        for (std::string value; std::getline(values, value, '|');)
        {
            const std::size_t end = value.find(' ');
            const std::string lines = std::string(row.lines).replace(row.lines.find('@'), 1, value.substr(end + 1));
            EXPECT_EQ(TicketOf(row.settings + value.substr(0, end)), Text(lines)) << row.settings << value;
        }
    }
}

TEST_F(JobTickets, HaveNoLineThatATextForgesAndNoPageExceptions)
{
    AttributeBytesIndexedList settings;
    settings.SetAttributeBytes(Feature::JobTitle, RawText(W("A\n%TVLcopyCount: 99\r\x2028\x85 B")));
    settings.SetAttributeBytes(Feature::PaperColor, {AttributeBytesNewValueId(9700, W("Sky\nBlue")), true});
    for (const auto list : {Feature::PageExceptions, Feature::PageExceptionsPlex})
        settings.SetAttributeBytes(list, AttributeBytesListValue{AttributeBytesRawList(settings)});
    EXPECT_EQ(TicketOf(settings),
              Text("title: A %TVLcopyCount: 99    B|senderName: Default Sender|#|documentPaperColors: Sky Blue"));
}

TEST_F(JobTickets, HaveTheDevmodesSettingsElseTheModelsAndAWordOnWhatIsNotInThem)
{
    AttributeBytesIndexedList untaken;
    untaken.SetAttributeBytes(Feature::JobCopies, RawText(W("3")));
    untaken.SetAttributeBytes(Feature::JobTitle, RawText(WideString(256, W('x'))));
    untaken.SetAttributeBytes(Feature::PageMediaCollection, MakeBooleanAttributeBytes(true));
    // Not in its collection: nobody's setting.
    untaken.SetAttributeBytes(Feature::MediaType, {AttributeBytesValueId(6800), true});
    AttributeBytesIndexedList copies;
    copies.SetAttributeBytes(Feature::JobCopies, MakeIntegerAttributeBytes(7));
    Bytes damaged = DevmodeWith(copies); // has the CRC of a sound part, which is read before it
    damaged.back() = std::byte{1};
    const std::string office = InstallTestPrinter();
    const std::string other =
        InstallChanged({{"name", "Other"}, {"defaults", {{"43", 2}, {"45", 5410}, {"175", 6801}}}});
    const std::string defaults = "note: -: this is the job ticket of the defaults: ";
    const std::string noTicket = " carry no job ticket: ";
    const std::tuple<std::string, Bytes, std::string, std::string> rows[] = {
        {office, TestDevmode().Bytes(), "~|#", defaults + "there is no maker's part (absent"},
        {office, Make(CoreDriverLayout::PostScript, {}), "~|#", defaults + "the maker's part has no settings"},
        {office, DevmodeWith(untaken), "~|#", "not set: 43 JobCopies, 78 JobTitle, 477 PageMediaCollection\n"},
        {InstallTestPrinter("tavlen-w3100-xps"), DevmodeWith({}), "~|copyCount: 1|requirements: simplex|#",
         noTicket + "controllers of its family 8430 read none"},
        {other, DevmodeWith(copies),
         "~|copyCount: 7|#|requirements: collated|paperType-opacity: transparency|paperType-preFinish: Plain 0 0",
         noTicket + "bit 10 of"},
        {office, damaged, "~|#", defaults + "the maker's part is damaged (CRC mismatch: "},
    };
    for (const auto& [printer, devmode, lines, note] : rows)
    {
        const RunResult run = RunHost({"jobticket", "--printer", printer, "-"},
                                      std::string(reinterpret_cast<const char*>(devmode.data()), devmode.size()));
        EXPECT_TRUE(run.status == 0 && run.out == Text(lines)) << note << run.status << run.out;
        EXPECT_TRUE(IsOneErrorLine(run.errors, note));
    }
}

} // namespace
