// Job tickets: settings in, the whole text out.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iterator>
#include <string>

#include <tvcore/featurereferences.h>
#include <tvcore/featureservices.h>
#include <tvcore/featurevalues.h>

#include "complugins/jtifkeywords.h"
#include "complugins/renjtifforxps.h"
#include "complugins/xdevmode.h"

namespace
{

using namespace std::string_literals;
namespace Feature = DataModelIds::Feature;

// "9700:Sky Blue" has a name.
ValueId MakeOption(const std::string& text)
{
    const std::size_t colon = text.find(':');
    const auto value = static_cast<DataModelIds::tagValueEnum>(std::atoi(text.c_str()));
    return ValueId(value, CXString::FromUtf8(colon == text.npos ? ""s : text.substr(colon + 1)));
}

FeatureValue MakeValue(FeatureCatalogue::Kind kind, const std::string& text)
{
    if (kind == FeatureCatalogue::Kind::Option)
        return MakeOption(text);
    if (kind == FeatureCatalogue::Kind::Dimension)
        return FeatureCatalogue::ParseLength(text).value().value;
    if (kind == FeatureCatalogue::Kind::Integer)
        return std::int32_t{std::atoi(text.c_str())};
    return CXString::FromUtf8(text);
}

// "43=3|46=5421"
void Set(FeatureServices& features, std::string_view settings)
{
    for (std::size_t begin = 0; begin < settings.size();)
    {
        const std::size_t end = std::min(settings.find('|', begin), settings.size());
        const std::string setting(settings.substr(begin, end - begin));
        const auto feature = static_cast<DataModelIds::tagFeatureEnum>(std::atoi(setting.c_str()));
        const std::string value = setting.substr(setting.find('=') + 1);
        features.SetValue(feature, MakeValue(FeatureCatalogue::Find(feature)->kind, value));
        begin = end + 1;
    }
}

class Renderer : public RenJtifForXps
{
public:
    using RenJtifForXps::RenJtifForXps;
    using RenJtifForXps::WriteLines;
};

// What is in the buffer already stays in front.
std::string TicketOf(FeatureServices& features)
{
    XDevmode noDevmode;
    ProductData product(PrinterModel{});
    ByteBuffer text;
    text.appendAscii("before ");
    EXPECT_TRUE(Renderer(nullptr, noDevmode, product).WriteLines(features, text));
    const std::string all(reinterpret_cast<const char*>(text.data()), text.size());
    EXPECT_TRUE(all.starts_with("before ")) << all;
    return all.substr(7);
}

// The whole text of "~|copyCount: 3|#": "~" is a job's title and sender that nobody has set, "#" is no finishing.
std::string Text(std::string_view lines)
{
    std::string text = "%TVLbegin: 001.0300\n%TVL";
    for (const char character : lines)
        if (character == '~')
            text += "title: Default job\n%TVLsenderName: Default Sender";
        else if (character == '#')
            text += "binding: None\n%TVLedgeStitching: None\n%TVLbookletMaker: False";
        else
            text += character == '|' ? "\n%TVL"s : std::string(1, character);
    return text + '\n';
}

struct Job
{
    std::string_view settings;
    std::string_view lines;
};

// clang-format off
constexpr Job kJobs[] = {
    {"", "~|#"},
    // Texts, as they come: neither quoted nor escaped, an empty one is one too, what is not ASCII has no byte.
    {"78=100% \"done\"\\n|82=|83=R\xC3\xB6sli \xF0\x9F\x93\x84|84=a: b|85=%TVLend",
     "title: 100% \"done\"\\n|senderName: |recipientName: R?sli ??|message: a: b|jobStartMessage: %TVLend|#"},
    // Every feature, in the reverse of the ticket's order.
    {"179=90|178=6921|176=5|175=6803|174=6753|104=5901|103=5852|102=5811|101=5756|63=5531|98=4mm|97=3mm|96=2mm|95=1mm"
     "|88=5601|45=5410|208=6254|145=5001|146=5001|46=5421|43=3|59=5511|85=S|84=M|83=R|82=A|78=T",
     "title: T|senderName: A|recipientName: R|message: M|jobStartMessage: S|signature: True|copyCount: 3"
     "|requirements: duplex|binding: None|edgeStitching: SinglePortrait|bookletMaker: False|requirements: collated"
     "|rotation: 90|xImageShift: 1|yImageShift: 2|x2ImageShift: 3|y2ImageShift: 4|disposition: SAVE"
     "|highlightPrintingColor: cardinal|highlightMappingColor: yellow|highlightMappingAlgorithm: Presentation"
     "|mismatchedHighlightPrintingColor: hold|documentPaperColors: yellow|paperType-opacity: opaque"
     "|paperType-preFinish: DrilledPreCutTab 3 5|paperType-weight: 90"},
    // All automatic: these lines and no others.
    {"59=5001|46=5001|146=5001|145=5001|208=5001|45=5001|88=5001|63=5001|101=5001|102=5001|103=5001|104=5001|174=5001"
     "|175=5001|178=6921|176=5",
     "~|signature: False|#|disposition: PRINT|documentPaperColors: Automatic"},
    {"59=5510|45=5411|88=5600|63=5530", "~|signature: False|#|requirements: uncollated|rotation: 0|disposition: PRINT"},
    {"88=5602|63=5532", "~|#|rotation: 180|disposition: PRINT&SAVE"},
    {"88=5603|43=32767|179=0", "~|copyCount: 32767|#|rotation: 270|paperType-weight: 0"},
    // Shifts: to the nearest millimetre, a half goes towards zero; the back's unless the job is simplex.
    {"46=5420|95=12.5mm|96=12.6mm|97=1mm|98=1mm", "~|requirements: simplex|#|xImageShift: 12|yImageShift: 13"},
    {"46=5422|95=-12.5mm|96=-12.6mm|97=-0.4mm", "~|requirements: duplex(tumble)|#|xImageShift: -12|yImageShift: -13"
                                                "|x2ImageShift: 0"},
    {"97=1in", "~|#|x2ImageShift: 25"},
    {"46=5001|98=1000mm", "~|#|y2ImageShift: 1000"},
    // Finishing: the bypass comes first, then slip sheets.
    {"146=9700:Stacker 2|145=6800|208=6254", "~|outputLocation: FinishingBypass Stacker 2"},
    {"145=6800|208=6254", "~|requirements: slipSheeting|#"},
    {"208=6252", "~|binding: None|edgeStitching: None|bookletMaker: True"},
    {"208=6255", "~|binding: None|edgeStitching: SingleLandscape|bookletMaker: False"},
    {"208=6256", "~|binding: None|edgeStitching: RightSinglePortrait|bookletMaker: False"},
    {"208=6257", "~|binding: None|edgeStitching: RightSingleLandscape|bookletMaker: False"},
    {"208=6258", "~|binding: None|edgeStitching: DualLandscape|bookletMaker: False"},
    {"208=6259", "~|binding: None|edgeStitching: DualPortrait|bookletMaker: False"},
    {"208=6260", "~|binding: None|edgeStitching: RightDualLandscape|bookletMaker: False"},
    {"208=6261", "~|binding: None|edgeStitching: RightDualPortrait|bookletMaker: False"},
    {"208=6275", "~|binding: left|edgeStitching: None|bookletMaker: False"},
    {"208=6276", "~|binding: right|edgeStitching: None|bookletMaker: False"},
    // Colours.
    {"101=5761", "~|#"},
    {"101=5750|102=5800|103=5850|104=5900|174=6750", "~|#|highlightPrintingColor: red|highlightMappingColor: red"
     "|highlightMappingAlgorithm: Automatic|mismatchedHighlightPrintingColor: selectCurrent|documentPaperColors: noColor"},
    {"101=5751|102=5801|103=5851|104=5902|174=6751", "~|#|highlightPrintingColor: green|highlightMappingColor: green"
     "|highlightMappingAlgorithm: Pictorial|mismatchedHighlightPrintingColor: abort|documentPaperColors: white"},
    {"101=5752|102=5802|103=5853|174=6752", "~|#|highlightPrintingColor: blue|highlightMappingColor: blue"
     "|highlightMappingAlgorithm: PictorialTable|documentPaperColors: pink"},
    {"101=5753|102=5803|103=5854|174=6754", "~|#|highlightPrintingColor: cyan|highlightMappingColor: cyan"
     "|highlightMappingAlgorithm: ColorToHighlight|documentPaperColors: blue"},
    {"101=5754|102=5804|103=5855|174=6755", "~|#|highlightPrintingColor: magenta|highlightMappingColor: magenta"
     "|highlightMappingAlgorithm: Monochrome|documentPaperColors: green"},
    {"101=5755|102=5805|174=6756", "~|#|highlightPrintingColor: black|highlightMappingColor: black|documentPaperColors: buff"},
    {"102=5806|174=6757", "~|#|highlightMappingColor: cardinal|documentPaperColors: goldenrod"},
    {"101=5757|102=5807|174=6758", "~|#|highlightPrintingColor: royal|highlightMappingColor: royal|documentPaperColors: red"},
    {"101=5758|102=5808|174=6759", "~|#|highlightPrintingColor: ruby|highlightMappingColor: ruby|documentPaperColors: gray"},
    {"101=5759|102=5809|174=6760", "~|#|highlightPrintingColor: violet|highlightMappingColor: violet|documentPaperColors: ivory"},
    {"101=5760|102=5810|174=6761", "~|#|highlightPrintingColor: brown|highlightMappingColor: brown|documentPaperColors: orange"},
    {"101=5762|102=5812|174=9700:Sky Blue", "~|#|highlightPrintingColor: other|highlightMappingColor: other|documentPaperColors: Sky Blue"},
    // The type of the paper. Without a media type nothing of it but the weight.
    {"178=6921|176=5|179=120", "~|#|paperType-weight: 120"},
    {"175=6800|178=6920|176=5", "~|#|paperType-opacity: opaque|paperType-preFinish: Plain 0 0"},
    {"175=6800|178=6921", "~|#|paperType-opacity: opaque|paperType-preFinish: PlainDrilled 3 0"},
    {"175=6801", "~|#|paperType-opacity: transparency|paperType-preFinish: Plain 0 0"},
    {"175=6801|178=6921", "~|#|paperType-opacity: transparency|paperType-preFinish: PlainDrilled 3 0"},
    {"175=6803|176=0", "~|#|paperType-opacity: opaque|paperType-preFinish: PlainPreCutTab 0 0"},
    {"175=6804|176=12", "~|#|paperType-opacity: opaque|paperType-preFinish: PlainPreCutTab 0 12"},
    {"175=6804|178=6921", "~|#|paperType-opacity: opaque|paperType-preFinish: DrilledPreCutTab 3 0"},
    {"175=6890", "~|#|paperType-opacity: opaque|paperType-preFinish: Preprinted 0 0"},
    {"175=6890|178=6921|176=5", "~|#|paperType-opacity: opaque|paperType-preFinish: PreprintedDrilled 3 0"},
    {"175=6802", "~|#|paperType-opacity: opaque|paperType-preFinish: opaque 0 0"},
    {"175=6799|178=5001|176=5", "~|#|paperType-opacity: opaque|paperType-preFinish: opaque 0 5"},
    {"175=9700:Blue 90g|178=6921", "~|#|paperType-opacity: opaque|paperType-preFinish: opaque 3 0"},
};
// clang-format on

TEST(JobTickets, SayWhatTheSettingsAre)
{
    std::string all;
    for (const Job& job : kJobs)
    {
        FeatureServices features;
        Set(features, job.settings);
        const std::string text = TicketOf(features);
        EXPECT_EQ(text, Text(job.lines)) << job.settings;
        all += text;
    }
    const auto isSeen = [&all](std::string_view text)
    {
        return all.find(text) != all.npos;
    };
    for (const Jtif::Line& line : Jtif::kLines)
    {
        EXPECT_TRUE(isSeen(line.keyword)) << "no job shows " << line.keyword;
        for (const Jtif::ValueText& row : line.values)
            EXPECT_TRUE(isSeen(std::string(line.keyword).append(row.text))) << "no job shows " << row.text;
    }
}

TEST(JobTickets, CarryNoPageExceptions)
{
    FeatureServices features;
    FeatureSettings exception;
    exception.SetValue(Feature::JobPlex, ValueId(DataModelIds::Value::Simplex));
    for (const auto list : {Feature::PageExceptions, Feature::PageExceptionsPlex})
        features.SetValue(list, FeatureList{exception, FeatureSettings()});
    ASSERT_EQ(ListOfValuesRef(features, Feature::PageExceptions).GetNumItems(), 2u);
    EXPECT_EQ(TicketOf(features), Text("~|#"));
}

TEST(JobTickets, TakeNamesOfAnyLength)
{
    const std::string name(65536, 'x');
    FeatureServices features;
    features.SetValue(Feature::PaperColor, MakeOption("9700:" + name));
    EXPECT_EQ(TicketOf(features), Text("~|#|documentPaperColors: " + name));
}

} // namespace
