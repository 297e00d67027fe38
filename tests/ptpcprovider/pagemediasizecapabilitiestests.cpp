// What capabilities offer of page media sizes, and the imageable area.
#include "complugins/ptpcprovider/imageablearea.h"
#include "complugins/ptpcprovider/pagemediasizeextents.h"
#include "complugins/ptpcprovider/pagemediasizeforms.h"
#include "tests/common/documentcomparer.h"
#include "tests/common/oemdevmodebytes.h"
#include "tests/common/testprinter.h"
#include "tests/ptpcprovider/pagesizefixture.h"

namespace
{

using OemDevmodeBytes::MakeForm;
using Access = TavlenPtProviderTestAccess;

class PageMediaSizeCapabilities : public PageSizes
{
protected:
    ComPtr<IXMLDOMDocument2> Complete(const std::string& base = "capabilities/core-driver-like.xml") const
    {
        ComPtr<IXMLDOMDocument2> document = LoadTestDocument(base);
        const auto replace = [&](IXMLDOMDocument2* replaced)
        {
            Access::ReplaceMediaSizes(*m_binding->object, replaced, nullptr);
            Access::ReplaceImageableArea(*m_binding->object, replaced, nullptr);
        };
        replace(document.Get());
        const ComPtr<IXMLDOMDocument2> again = Reparse(document.Get());
        replace(again.Get());
        EXPECT_EQ("", CompareDocuments(document.Get(), again.Get())) << "replacing twice is replacing once";
        return again;
    }

    static std::string Area(IXMLDOMDocument2* document)
    {
        return Words(document, {"/*/psf:Property[@name='psk:PageImageableSize']/psf:Property"});
    }
};

constexpr const char* kOptions = "//psf:Feature[@name='psk:PageMediaSize']/psf:Option";

TEST_F(PageMediaSizeCapabilities, OfferEveryListedFormOnceWithItsParameters)
{
    struct Row
    {
        const char* model;
        const char* options;
        const char* parameters; // default, maximum, minimum
    };
    const Row rows[] = {
        {"tavlen-b4400-uni",
         "psk:ISOA4 psk:NorthAmericaLetter psk:ISOA5 psk:ISOA6 psk:NorthAmericaLegal psk:NorthAmericaExecutive "
         "psk:NorthAmericaStatement psk:JISB5 psk:NorthAmericaNumber10Envelope psk:ISODLEnvelope psk:CustomMediaSize",
         "MediaSizeWidth 76200 216000 76200 MediaSizeHeight 127000 356000 127000"},
        {"tavlen-c9070-ps",
         "psk:ISOA4 psk:NorthAmericaLetter psk:ISOA3 psk:NorthAmericaTabloid psk:ISOSRA3 psk:ISOA5 psk:ISOA6 "
         "psk:NorthAmericaLegal psk:NorthAmericaExecutive psk:NorthAmericaStatement psk:JISB4 psk:JISB5 "
         "psk:NorthAmericaNumber10Envelope psk:NorthAmericaMonarchEnvelope psk:ISODLEnvelope psk:ISOC5Envelope "
         "psk:PSCustomMediaSize",
         "PSWidth 98400 330200 98400 PSHeight 139700 487700 139700 PSWidthOffset 0 0 0 PSHeightOffset 0 0 0 "
         "PSOrientation 1 1 1"},
        // Without "A4 (Tray Setup)", which has the number of A4, and the form that is never published.
        {"tavlen-b7000-xps",
         "psk:NorthAmericaLetter psk:ISOA4 psk:NorthAmericaTabloid psk:ISOA3 psk:ISOSRA3 ns0000:sra4 ns0000:na-12x19 "
         "ns0000:prc-8k psk:NorthAmericaLegal psk:NorthAmericaExecutive psk:NorthAmericaStatement psk:ISOA5 psk:ISOA6 "
         "psk:JISB4 psk:JISB5 psk:NorthAmericaNumber10Envelope psk:ISODLEnvelope psk:ISOC5Envelope "
         "psk:JapanHagakiPostcard ns0000:DriverCustomSize_330_1270x2032 ns0000:DriverCustomSize_331_2970x12000 "
         "ns0000:DriverCustomSize_332_2100x990 ns0000:UserForm_257_2100x2970 ns0000:UserForm_258_2100x990 "
         "ns0000:UserForm_259_1050x2970 psk:CustomMediaSize",
         "MediaSizeWidth 90000 330200 90000 MediaSizeHeight 99000 1200000 99000"},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.model);
        Bind(row.model);
        for (const std::string& base : TestDocumentsIn("capabilities"))
        {
            SCOPED_TRACE(base);
            const ComPtr<IXMLDOMDocument2> document = Complete(base);
            if (base.find("odd-") != std::string::npos || base.find("prefix") != std::string::npos)
                continue; // other prefixes
            EXPECT_EQ(row.options, Join(Select(document.Get(), std::string(kOptions) + "/@name")));
            std::string parameters;
            for (const std::string& name : Select(document.Get(), "//psf:ParameterDef/@name"))
                if (name.starts_with("psk:PageMediaSize"))
                    parameters += (parameters.empty() ? "" : " ") + name.substr(17) + " " +
                                  Join(Select(document.Get(),
                                              "//psf:ParameterDef[@name='" + name +
                                                  "']/psf:Property[contains(@name,'Value')]/psf:Value"));
            EXPECT_EQ(row.parameters, parameters);
            for (const std::string& reference : Select(document.Get(), std::string(kOptions) + "//psf:ParameterRef/@name"))
                EXPECT_EQ(1u, Select(document.Get(), "//psf:ParameterDef[@name='" + reference + "']").size()) << reference;
        }
    }
    const std::vector<std::string> custom = Select(Complete().Get(), "//psf:ParameterDef[@name="
                                                                     "'psk:PageMediaSizeMediaSizeWidth']//psf:Value");
    EXPECT_EQ("xsd:integer 90000 330200 90000 psk:Unconditional microns 1", Join(custom));
}

TEST_F(PageMediaSizeCapabilities, CarryForeignTextAndOfferNoNameTwice)
{
    Bind("tavlen-b4400-uni");
    const std::vector<FormsInfoRecord> forms = {
        MakeForm(500, W("\"<a>&'\t\x0001z"), 1000, 2000, 25005),
        MakeForm(501, WideString(62, W('x')) + W("\U0001F5A8"), 1000, 2000, 25005), // cut within a character
        MakeForm(50000, W("\U0001F5A8"), 1000, 2000, 25003),
        MakeForm(50000, W("a second of that number and size"), 1000, 2000, 25003),
    };
    SetForms(forms);
    const ComPtr<IXMLDOMDocument2> document = Complete();
    EXPECT_EQ((std::vector<std::string>{"\"<a>&'  z", std::string(62, 'x') + "\xEF\xBF\xBD", "\xF0\x9F\x96\xA8"}),
              Select(document.Get(), std::string(kOptions) + "/psf:Property[@name='psk:DisplayName']/psf:Value"));
    EXPECT_EQ("Paper Size", Select(document.Get(), "//psf:Feature[@name='psk:PageMediaSize']/psf:Property/psf:Value").at(0));
}

TEST(PageMediaSizeForms, OfADriverYieldToAFormOfAnotherTypeAndTheCustomOneToTheProgram)
{
    const std::vector<FormsInfoRecord> forms = {
        MakeForm(9, W("a"), 1, 1, 25004),   MakeForm(9, W("b"), 1, 1, 25001), MakeForm(10, W("c"), 1, 1, 25003),
        MakeForm(10, W("d"), 1, 1, 25003),  MakeForm(11, W("e"), 1, 1, 25003), MakeForm(11, W("f"), 1, 1, 25007),
        MakeForm(256, W("g"), 1, 1, 25003),
    };
    for (const bool offersCustomSize : {true, false})
    {
        std::string names;
        for (const FormsInfoRecord& form : PageMediaSize::OfferedForms(forms, offersCustomSize))
            names += Utf8(form.GetName());
        EXPECT_EQ(offersCustomSize ? "bcdg" : "bcd", names);
    }
}

TEST_F(PageMediaSizeCapabilities, OfferNoCustomSizeWithoutItsExtents)
{
    struct Row
    {
        int least, most;
        bool isUsable;
    };
    constexpr Row kRows[] = {
        {0x0102'0304, 0x0102'0304, true},       {-1, 0x0102'0304, false}, {0x0102'0304, -1, false},
        {0, 0x0102'0304, false},                {0x0102'0304, 0, false},  {0x0102'0304, 0x0102'0303, false},
        {0x0102'0304, 0x0002'FFFF, false},      {1, 0x0102'0304, false},
        {0x0102'0304, int(0xFFFE'8000U), true},
    };
    for (const Row& row : kRows)
        EXPECT_EQ(row.isUsable, PageMediaSize::ExtentsOf(row.least, row.most).has_value()) << row.least << " " << row.most;
    EXPECT_EQ(0xFFFE, PageMediaSize::ExtentsOf(1 << 16 | 1, int(0xFFFE'8000U))->most.length) << "unsigned";

    Bind("tavlen-b4400-uni");
    ChangeInstalledModel([](nlohmann::json& model) { model["minExtent"] = 0; }); // no model any more: no answer
    const ComPtr<IXMLDOMDocument2> document = Complete("capabilities/public-keywords-example.xml");
    EXPECT_EQ(10u, Select(document.Get(), kOptions).size());
    EXPECT_TRUE(Select(document.Get(), "//psf:ParameterDef[contains(@name,'PageMediaSize')]").empty());
    EXPECT_EQ(Area(LoadTestDocument("capabilities/public-keywords-example.xml").Get()), Area(document.Get()))
        << "without its flag the imageable area is left alone";
}

TEST_F(PageMediaSizeCapabilities, HaveTheImageableAreaOfEveryOrientation)
{
    const std::string banner = "<psf:Feature name='psk:PageMediaSize'><psf:Option name='psk:CustomMediaSize'>"
                               "<psf:ScoredProperty name='psk:MediaSizeWidth'><psf:Value>297000</psf:Value>"
                               "</psf:ScoredProperty><psf:ScoredProperty name='psk:MediaSizeHeight'>"
                               "<psf:Value>1200000</psf:Value></psf:ScoredProperty></psf:Option></psf:Feature>";
    const std::string portrait = "297000 1200000 1000 2000 292000 1193000";
    struct Row
    {
        const char* orientation;
        std::string area; // size, origin, extent
    };
    const Row rows[] = {
        {"psk:Portrait", portrait},
        {"psk:Landscape", "1200000 297000 5000 1000 1193000 292000"},
        {"psk:ReversePortrait", "297000 1200000 4000 5000 292000 1193000"},
        {"psk:ReverseLandscape", "297000 1200000 4000 5000 292000 1193000"}, // not turned, on purpose
        {"vnd:Landscape", portrait},
        {"Landscape", portrait}, // cannot be read
    };
    const auto ask = [&](const std::string& orientation)
    {
        const ComPtr<IXMLDOMDocument2> document = LoadDocument(CapabilitiesAround(""));
        const ComPtr<IXMLDOMDocument2> ticket = LoadDocument(TicketAround(
            banner + "<psf:Feature name='psk:PageOrientation'><psf:Option name='" + orientation + "'/></psf:Feature>"));
        Access::ReplaceImageableArea(*m_binding->object, document.Get(), ticket.Get());
        return Join(Select(document.Get(), "//psf:Property[@name='psk:PageImageableSize']//psf:Value"));
    };
    Bind("tavlen-b7000-xps",
         [](nlohmann::json& model)
         {
             for (nlohmann::json& margins : model["margins"])
                 if (margins["paperId"] == 256)
                     margins.update({{"left", 1000}, {"top", 2000}, {"right", 4000}, {"bottom", 5000}});
         });
    for (const Row& row : rows)
        EXPECT_EQ(row.area, ask(row.orientation)) << row.orientation;
    const ComPtr<IXMLDOMDocument2> usual = Complete();
    Access::ReplaceImageableArea(*m_binding->object, usual.Get(), LoadTestDocument("tickets/platform-00.xml").Get());
    const std::string names = "psk:ImageableSizeWidth 210000 psk:ImageableSizeHeight 297000 psk:ImageableArea "
                              "psk:OriginWidth 4100 psk:OriginHeight 4100 psk:ExtentWidth 201800 psk:ExtentHeight "
                              "288800";
    EXPECT_EQ(names, Area(usual.Get()));

    const TestPrinter withoutProduct(0x400);
    ASSERT_EQ(S_OK, m_binding.emplace().BindTo(withoutProduct.Handle()));
    EXPECT_EQ("1200000 297000 0 0 1200000 297000", ask("psk:Landscape"));
    m_binding.reset();
}

} // namespace
