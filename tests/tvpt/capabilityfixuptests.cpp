// The whole road of every model: capabilities corrected and completed, documents as the Print Schema wants them, sample
// and edited tickets to a devmode and back.
#include <cctype>
#include <cstdio>
#include <set>
#include <tuple>

#include <tvutil/crc32.h>

#include "complugins/capabilitycaches.h"
#include "complugins/msdevicecapabilities.h"
#include "filebytes.h"
#include "hostrun.h"
#include "printerhandle.h"
#include "printschemadocument.h"
#include "tests/common/documentcomparer.h"
#include "tests/common/testfolders.h"

namespace
{

namespace fs = std::filesystem;
using nlohmann::json;
using Edits = std::vector<std::pair<std::string, std::string>>; // what is there, what is put in its place

// Without the declarations that Wine's DOM repeats on elements that were appended.
std::string Plain(std::string text)
{
    const std::string repeated = " xmlns:psf=\"" + std::string(kFramework.uri) + "\"";
    const std::size_t first = text.find(repeated) + 1;
    for (std::size_t at = text.find(repeated, first); at != std::string::npos; at = text.find(repeated, at))
        text.erase(at, repeated.size());
    return text;
}

// The first of each.
std::string Edited(std::string text, const Edits& edits)
{
    for (const auto& [from, to] : edits)
    {
        const std::size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        if (at != std::string::npos)
            text.replace(at, from.size(), to);
    }
    return text;
}

std::string DisplayNameOf(const SchemaElement& element)
{
    for (const SchemaElement* const property : element.Children("Property"))
        if (property->nameAttribute.Is(kKeywords.uri, "DisplayName"))
            return property->Child("Value")->text;
    return "-";
}

// "NAME: DISPLAY NAME; OPTION=DISPLAY NAME; " of the features of that name.
std::string Offered(const SchemaElement& capabilities, const std::string& name)
{
    std::string text;
    for (const SchemaElement* const feature : capabilities.Children("Feature"))
        if (feature->nameAttribute.Is(kKeywords.uri, name))
        {
            text += name + ": " + DisplayNameOf(*feature) + "; ";
            for (const SchemaElement* const option : feature->Children("Option"))
                text += option->nameAttribute.local + "=" + DisplayNameOf(*option) + "; ";
        }
    return text;
}

// Each rule with the path of what is at fault, without the names in it.
std::set<std::string> FaultsOf(const std::string& file)
{
    std::set<std::string> faults;
    for (const json& fault : json::parse(RunHost({"check", file, "--json"}).out))
    {
        std::string kind = fault["path"];
        for (std::size_t at = 0; (at = kind.find('[', at)) != std::string::npos;)
            kind.erase(at, kind.find(']', at) + 1 - at);
        faults.insert(fault["rule"].get<std::string>() + " " + kind);
    }
    return faults;
}

// Eight digits for what the document means, blanks aside.
std::string DigestOf(const std::string& file)
{
    std::string meaning = Meaning(LoadDocument(ReadBytes(file), "digest").Get());
    std::erase_if(meaning, [](unsigned char character) { return std::isspace(character) != 0; });
    char digits[9] = {};
    std::snprintf(digits, sizeof digits, "%08lx",
                  static_cast<unsigned long>(Crc32::GetCrc(meaning.data(), meaning.size())));
    return digits;
}

class WholeRoad : public HostTest
{
protected:
    void Install(const std::string& model)
    {
        InstallTestPrinter(model);
        WriteDevmode("d.dm");
    }

    // A driver of its own with texts that no document has.
    void InstallTexts(const std::string& name, const json& shortEdge)
    {
        const json texts = {
            {"41033", "Dots"}, {"40373", "Sides"}, {"10027", "One"}, {"10290", "Long"}, {"10029", shortEdge}};
        InstallChanged({{"name", name}, {"productStrings", texts}});
    }

    [[nodiscard]] RunResult Complete(const std::string& base) const
    {
        return RunHost({"capabilities", "--printer", m_printer, "--base", "-"}, base);
    }
};

const std::string kListed =
    "PageResolution: Dots; _600x600=Standard (600 x 600 dpi); _1200x1200=High (1200 x 1200 dpi); ";
const std::string kSides = "JobDuplexAllDocumentsContiguously: Sides; OneSided=One; TwoSidedShortEdge=Short; "
                           "TwoSidedLongEdge=Long; ";
const std::string kUp = "PageOrientation: -; Portrait=-; Landscape=-; ";

TEST_F(WholeRoad, CorrectsTheServicesCapabilities)
{
    const std::string service = ReadBytes(TestDataFolder() / "capabilities" / "core-driver-like.xml");
    const std::string duplex = "JobDuplexAllDocumentsContiguously";
    const std::string displayName = "<psf:Property name=\"psk:DisplayName\"><psf:Value xsi:type=\"xsd:string\">";
    const std::string last = "</psf:Value></psf:ScoredProperty></psf:Option>";
    // clang-format off
    const std::tuple<const char*, Edits, std::string> rows[] = {
        {"two orientations", {{"psk:Portrait", "psk:ReversePortrait"}}, kListed + kSides + kUp},
        {"nothing to name", {{displayName + "600</psf:Value></psf:Property>", ""}}, Edited(kListed, {{"Standard (600 x 600 dpi)", "-"}}) + kSides + kUp},
        {"half of it listed", {{">600" + last, ">601" + last}}, Edited(kListed, {{"_600x600=Standard (600 x 600 dpi); ", ""}}) + kSides + kUp},
        {"a number with words", {{">600" + last, "> 600dpi" + last}}, kListed + kSides + kUp},
        {"another's option", {{"psk:TwoSidedShortEdge", "psk:Slanted"}}, kListed + Edited(kSides, {{"TwoSidedShortEdge=Short", "Slanted=x"}}) + kUp},
        {"no duplex", {{duplex, "Other"}}, kListed + kUp},
    };
    // clang-format on
    const auto completed = [&](const std::string& base)
    {
        const RunResult result = Complete(base);
        EXPECT_EQ(result.status, 0) << result.errors;
        const SchemaElement tree = ReadTree(result.out);
        return Offered(tree, "PageResolution") + Offered(tree, duplex) + Offered(tree, "PageOrientation");
    };
    InstallTexts("tavlen-silent", "");
    EXPECT_EQ(completed(service), kListed + Edited(kSides, {{"=Short", "=x"}}) + kUp) << "keeps the service's text";
    InstallTexts("tavlen-texts", "Short");
    for (const auto& [name, edits, offered] : rows)
        EXPECT_EQ(completed(Edited(service, edits)), offered) << name;
    const std::string noResolution = Edited(service, {{"psk:PageResolution", "psk:Other"}});
    EXPECT_TRUE(IsRefused(Complete(noResolution), "E_FAIL"));
    EXPECT_TRUE(
        IsRefused(Complete(Edited(service, {{"psk:ResolutionY", "psk:Other"}})), "FixUpResolutionCapabilities"));

    // A device that tells no resolution.
    MSDeviceCapabilities caches;
    const PrinterHandle printer = PrinterHandle::Open(m_printer, PrinterHandle::Access::Use);
    caches.Initialize(printer.Get());
    caches.SetCache(MSDeviceCapabilities::Cache::Resolutions, CapabilityCaches::WriteResolutions({}));
    EXPECT_EQ(caches.Save(DataCache::Lock(HKEY_CURRENT_USER)), S_OK);
    EXPECT_EQ(completed(service), "PageResolution: Resolution; _600x600=600; _1200x600=1200; _1200x1200=1200; "
                                  "_300x300=300; " +
                                      kSides + kUp);
    EXPECT_EQ(completed(noResolution), kSides + kUp);
}

// Back to the devmode that it was made from, and the same ticket again. The tickets are the same on every platform, and
// their digests are kept: where they change for a reason, the file that the test leaves beside it takes their place.
TEST_F(WholeRoad, LeavesSamplesAsTheyAreTheSecondTime)
{
    // Not Print Schema documents to the provider: the framework's namespace without a prefix, and another namespace.
    const std::set<std::string> refused = {"odd-default-namespace.xml", "odd-https-namespaces.xml"};
    // A media size that is replaced takes all parameters with it that nothing refers to: those of this sample, which
    // has none at first, go the second time.
    const std::string loses = "manufacturing-3d.xml";
    std::set<std::string> digests;
    // A ticket without a media size means the usual paper of the user's country; on Windows that is a setting of the
    // user's, the United States' in a new Wine.
    SetEnvironmentVariableW(W("LC_ALL"), W("en_US"));
    for (const char* const model : kModels)
    {
        Install(model);
        WriteBytes(File("c.xml"), OutputOf({"capabilities", "--printer", m_printer}));
        digests.insert(std::string(model) + " capabilities " + DigestOf(File("c.xml")) + "\n");
        for (const fs::directory_entry& entry : fs::directory_iterator(TestDataFolder() / "tickets"))
        {
            const std::string name = entry.path().filename().string();
            const std::string sample = Utf8FromPath(fs::absolute(entry.path())); // with its drive, where there are some
            SCOPED_TRACE(std::string(model) + ": " + name);
            const RunResult taken = ToDevmode(sample, "d.dm", "0.dm");
            EXPECT_EQ(taken.status != 0, refused.contains(name)) << taken.errors;
            if (taken.status != 0)
                continue;
            FromDevmode("0.dm", "1.xml", sample);
            digests.insert(std::string(model) + " " + name + " " + DigestOf(File("1.xml")) + "\n");
            EXPECT_EQ(ToDevmode("1.xml", "0.dm", "1.dm").status, 0);
            FromDevmode("1.dm", "2.xml", "1.xml");
            EXPECT_EQ(ToDevmode("2.xml", "1.dm", "2.dm").status, 0);
            if (name == loses)
                FromDevmode("1.dm", "1.xml", "2.xml");
            EXPECT_TRUE(ReadBytes(Folder() / "1.dm") == ReadBytes(Folder() / "0.dm"));
            EXPECT_TRUE(ReadBytes(Folder() / "2.dm") == ReadBytes(Folder() / "1.dm"));
            EXPECT_EQ(CompareDocuments(LoadDocument(ReadBytes(Folder() / "1.xml"), "1").Get(),
                                       LoadDocument(ReadBytes(Folder() / "2.xml"), "2").Get()),
                      "");
            const std::set<std::string> before = FaultsOf(sample);
            for (const std::string& fault : FaultsOf(File("2.xml")))
                EXPECT_TRUE(before.contains(fault)) << fault;
        }
    }
    std::string found;
    for (const std::string& line : digests)
        found += line;
    const fs::path kept = TestDataFolder() / "made-tickets.txt";
    const fs::path made = BinaryFolder() / "made-tickets.txt";
    WriteBytes(made, found);
    SetEnvironmentVariableW(W("LC_ALL"), nullptr);
    EXPECT_EQ(ReadBytes(kept), found) << "if this is meant: cp " << made << " " << kept;
}

TEST_F(WholeRoad, MakesDocumentsWithoutFaultAndTakesATicketAsSomebodyHasEditedIt)
{
    using Edit = Edits::value_type;
    const Edit letter{"psk:ISOA4", "psk:NorthAmericaLetter"};
    const Edit width{">210000<", ">215900<"};
    const Edit length{">297000<", ">279400<"};
    const Edit managed{"\"psk:PageColorManagement\"><psf:Option name=\"psk:None\"",
                       "\"psk:PageColorManagement\"><psf:Option name=\"psk:Device\""};
    const auto copies = [](const std::string& count)
    {
        const std::string before = "\"psk:JobCopiesAllDocuments\"><psf:Value xsi:type=\"xsd:integer\">";
        return std::pair(before + "1<", before + count + "<");
    };
    const auto type = [](const std::string& from, const std::string& to)
    {
        const std::string before = "\"psk:PageMediaType\"><psf:Option name=\"";
        return std::pair(before + from + "\"", before + to + "\"");
    };
    // With the fields that come of it; the last is the driver's media type.
    // clang-format off
    const std::tuple<const char*, Edits, json> rows[] = {
        {kModels[0], {letter, width, length, copies("12"), type("psk:AutoSelect", "tk:cardstock-glossy"), managed},
         {{"dmPaperSize", 1}, {"dmFormName", "Letter"}, {"dmCopies", 12}, {"dmICMMethod", 4}, {"175", 6820}}},
        {kModels[1], {letter, width, length, copies("2"), type("psk:AutoSelect", "ns0000:recycled")},
         {{"dmPaperSize", 1}, {"dmFormName", "Letter"}, {"dmCopies", 2}, {"175", 6839}}},
        {kModels[2], {{"psk:ISOA4", "psk:CustomMediaSize"}, {">210000<", ">120000<"}, copies("3"), type("psk:AutoSelect", "psk:Photographic")},
         {{"dmPaperSize", 256}, {"dmPaperWidth", 1200}, {"dmPaperLength", 2970}, {"dmCopies", 3}, {"175", 6825}}},
        {kModels[3], {{"psk:NorthAmericaLetter", "psk:ISOA3"}, copies("99"), type("psk:Plain", "tk:letterhead")},
         {{"dmPaperSize", 8}, {"dmFormName", "A3"}, {"dmCopies", 99}, {"175", 6821}}},
    };
    // clang-format on
    for (const auto& [model, edits, fields] : rows)
    {
        SCOPED_TRACE(model);
        Install(model);
        EXPECT_EQ(FromDevmode("d.dm", "t").status, 0);
        OutputOf({"capabilities", "--printer", m_printer, "-o", File("c.xml")});
        EXPECT_EQ(OutputOf({"check", File("c.xml")}), "");
        EXPECT_EQ(OutputOf({"check", File("t"), "--against", File("c.xml")}), "");
        OutputOf({"capabilities", "--printer", m_printer, "--base-only", "-o", File("base.xml")});
        for (const auto& [option, file] : {std::pair("--ticket", "t"), {"--base", "base.xml"}})
        {
            OutputOf({"capabilities", "--printer", m_printer, option, File(file), "-o", File("same.xml")});
            EXPECT_EQ(DigestOf(File("same.xml")), DigestOf(File("c.xml"))) << option;
        }
        WriteBytes(Folder() / "edited.xml", Edited(Plain(ReadBytes(Folder() / "t")), edits));
        EXPECT_EQ(ToDevmode("edited.xml", "d.dm", "back.dm").status, 0);
        const json shown = ShownDevmode(ReadBytes(Folder() / "back.dm"), m_printer);
        for (const auto& [field, value] : fields.items())
            EXPECT_EQ(field == "175" ? shown["features"]["477"]["210"][field] : shown["public"][field], value) << field;
        FromDevmode("back.dm", "again.xml", "t");
        for (const auto& [from, to] : edits)
            EXPECT_NE(Plain(ReadBytes(Folder() / "again.xml")).find(to), std::string::npos) << to;
    }
}

} // namespace
