// The caches of a printer's capabilities, the user's custom sizes and the reconciliation of a devmode's paper, on the
// command line.
#include <windows.h>
#include <winspool.h>

#include <atomic>
#include <cstdlib>
#include <limits>
#include <memory>
#include <thread>
#include <tuple>
#include <type_traits>

#include <tvcore/customsizenumber.h>
#include <tvutil/datacache.h>
#include <tvutil/user.h>

#include "complugins/customforms.h"
#include "complugins/mscacheddevicecapabilities.h"
#include "formsreport.h"
#include "hostrun.h"
#include "printerhandle.h"
#include "utilitiesstaticlib/findfunction.h"

namespace
{

using nlohmann::json;

void AddOwnForm(HANDLE printer, WideString& name)
{
    FORM_INFO_1W form{};
    form.pName = name.data();
    form.Size = {150000, 250000};
    form.ImageableArea = {0, 0, 150000, 250000};
    EXPECT_TRUE(AddFormW(printer, 1, reinterpret_cast<BYTE*>(&form))) << GetLastError();
}

// The form's place in the spooler's list, from 1 on; 0 when it is not there.
DWORD NumberOf(HANDLE printer, const WideString& name)
{
    DWORD needed = 0;
    DWORD count = 0;
    EnumFormsW(printer, 1, nullptr, 0, &needed, &count);
    std::vector<BYTE> room(needed);
    EXPECT_TRUE(EnumFormsW(printer, 1, room.data(), needed, &needed, &count)) << GetLastError();
    for (DWORD at = 0; at < count; ++at)
        if (WStringView(reinterpret_cast<const FORM_INFO_1W*>(room.data())[at].pName) == name)
            return at + 1;
    return 0;
}

std::string NameOfNumber(std::uint16_t number)
{
    std::string name;
    for (int at = 0; CustomSizeNumber(CXString::FromUtf8(name)) != number; ++at)
        name = "Size " + std::to_string(at);
    return name;
}

class CapabilityCaches : public HostTest
{
protected:
    CapabilityCaches()
    {
        ForgetSizes();
    }

    ~CapabilityCaches() override
    {
        ForgetSizes();
    }

    static json Caches(const std::string& printer)
    {
        return json::parse(OutputOf({"printer", "caches", printer, "--json"}));
    }

    static std::string StateOf(const json& caches, const char* name)
    {
        for (const json& cache : caches["caches"])
            if (cache["name"] == name)
                return cache["state"];
        return "not listed";
    }

    static RunResult Add(const std::string& name, const std::string& width, const std::string& length,
                         const std::vector<std::string>& more = {})
    {
        std::vector<std::string> arguments = {"printer", "custom-size", "add", "--width", width, "--length", length};
        arguments.insert(arguments.end(), more.begin(), more.end());
        arguments.insert(arguments.end(), {"--", name});
        return RunHost(arguments);
    }

    static json Sizes()
    {
        return json::parse(OutputOf({"printer", "custom-size", "list", "--json"}));
    }

    static void Refresh(const std::string& printer)
    {
        (void)OutputOf({"printer", "refresh", printer});
    }

    // A devmode of the printer, after these settings, reconciled; the words.
    std::string Reconcile(const std::string& printer, const std::vector<std::string>& settings)
    {
        WriteBytes(Folder() / "d.dm", NewDevmode(printer, settings));
        return OutputOf({"devmode", "reconcile", File("d.dm"), "--printer", printer});
    }

    json PublicFields() const
    {
        return ShownDevmode(ReadBytes(Folder() / "d.dm"))["public"];
    }

private:
    static void ForgetSizes()
    {
        User(CustomForms::kComponent).DeleteKey(CustomForms::kKey);
    }
};

TEST_F(CapabilityCaches, AreFullAfterTheInstallationAndGoWithThePrinter)
{
    const std::string printer = InstallTestPrinter("tavlen-b7000-xps");
    const json caches = Caches(printer);
    ASSERT_EQ(caches["caches"].size(), 9U);
    for (const json& cache : caches["caches"])
        EXPECT_TRUE(cache["state"] == "valid" && cache["size"] > 7) << cache;
    EXPECT_EQ(caches["customForms"], (json{{"stored", 1397442489}, {"now", 1397442489}}));
    const json forms = Shown(printer)["model"]["forms"];
    ASSERT_EQ(caches["forms"].size(), forms.size());
    for (std::size_t at = 0; at < forms.size(); ++at)
        for (const auto& [field, value] : forms[at].items())
            EXPECT_EQ(caches["forms"][at][field], value) << field;
    EXPECT_NE(OutputOf({"printer", "caches", printer}).find("XResolutions"), std::string::npos);

    (void)OutputOf({"printer", "remove", printer});
    EXPECT_TRUE(IsRefused(RunHost({"printer", "caches", printer}), printer));
    EXPECT_FALSE(DataCache::RemovePrinter(CXString::FromUtf8(printer), HKEY_CURRENT_USER)) << "nothing is left";
}

TEST_F(CapabilityCaches, FollowTheCustomSizesAtARefresh)
{
    const std::string printer = InstallTestPrinter("tavlen-b7000-xps");
    const std::size_t ofModel = Caches(printer)["forms"].size();
    struct Size
    {
        std::string name;
        const char* given;
        std::vector<std::string> options;
        int width; // in tenths
        int units;
    };
    const Size sizes[] = {
        {"Strip", "100mm", {}, 1000, 7491},
        {std::string("Gr\xC3\xB6\xC3\x9F") + "e", "8.27in", {}, 2101, 7492},
        {"Said", "4in", {"--units", "metric"}, 1016, 7491},
    };
    for (const Size& size : sizes)
        EXPECT_EQ(Add(size.name, size.given, "5.5in", size.options).status, 0);
    json caches = Caches(printer);
    EXPECT_EQ(StateOf(caches, "XPaperCaps"), "stale");
    EXPECT_EQ(StateOf(caches, "XBinCaps"), "valid");
    EXPECT_NE(caches["customForms"]["stored"], caches["customForms"]["now"]);
    EXPECT_TRUE(caches["forms"].empty()) << "a conversion finds none";
    MakePlainDevmode(printer);
    const std::string before = ReadBytes(Folder() / "d.dm");
    EXPECT_TRUE(IsRefused(RunHost({"devmode", "reconcile", File("d.dm"), "--printer", printer}), "E_FAIL"));
    EXPECT_EQ(ReadBytes(Folder() / "d.dm"), before);

    Refresh(printer);
    caches = Caches(printer);
    EXPECT_EQ(StateOf(caches, "XPaperCaps"), "valid");
    EXPECT_EQ(caches["customForms"]["stored"], caches["customForms"]["now"]);
    ASSERT_EQ(caches["forms"].size(), ofModel + std::size(sizes));
    for (const Size& size : sizes)
    {
        const json& forms = caches["forms"];
        const auto form =
            std::find_if(forms.begin(), forms.end(), [&](const json& f) { return f["name"] == size.name; });
        ASSERT_NE(form, forms.end()) << size.name;
        EXPECT_EQ((*form)["width"], size.width);
        EXPECT_EQ((*form)["length"], 1397);
        EXPECT_EQ((*form)["units"], size.units);
        EXPECT_EQ(OutputOf({"printer", "custom-size", "remove", size.name}), "");
    }
    EXPECT_EQ(StateOf(Caches(printer), "XPaperCaps"), "stale");
    EXPECT_EQ(Sizes(), json::array());
}

TEST_F(CapabilityCaches, TakeNoCustomSizeThatIsNone)
{
    ASSERT_EQ(Add("There", "100mm", "200mm").status, 0);
    const json before = Sizes();
    const std::tuple<std::string, std::string, std::string, const char*> kCases[] = {
        {"New", "0mm", "100mm", "--width"},
        {"New", "-1mm", "100mm", "--width"},
        {"New", "0.099999mm", "100mm", "--width"},
        {"New", "100mm", "3276.700001mm", "--length"},
        {"New", "100", "100mm", "--width"},
        {"New", "99999999999mm", "100mm", "--width"},
        {" \xC2\xA0\xE3\x80\x80", "100mm", "100mm", "empty"},
        {"A\\B", "100mm", "100mm", "backslash"},
        {"A\nB", "100mm", "100mm", "control"},
        {"A\xE2\x80\xA9", "100mm", "100mm", "control"},
        {NameOfNumber(CustomSizeNumber(W("There"))), "100mm", "100mm", "paper number"},
        {std::string(256, 'n'), "100mm", "100mm", "255"},
        {"\xFF", "100mm", "100mm", "UTF-8"},
        {"tHERE", "100mm", "100mm", "there is a custom paper size of this name"},
    };
    for (const auto& [name, width, length, message] : kCases)
    {
        const RunResult result = Add(name, width, length);
        EXPECT_EQ(result.status, 1) << message;
        EXPECT_TRUE(IsOneErrorLine(result.errors, message));
    }
    EXPECT_EQ(Add("New", "1mm", "1mm", {"--units", "cubits"}).status, 2);
    for (const char* const name : {"Nobody's", "There\\There", ""})
        EXPECT_EQ(RunHost({"printer", "custom-size", "remove", name}).status, 1) << name;
    EXPECT_EQ(Sizes(), before);
    EXPECT_EQ(Add(std::string(255, 'n'), "0.1mm", "3276.7mm").status, 0);
    EXPECT_TRUE(IsOneErrorLine(Add(std::string(63, 'N'), "1mm", "1mm").errors, "63 characters"));
    EXPECT_EQ(Add(std::string(62, 'n'), "1mm", "1mm").status, 0);
}

TEST_F(CapabilityCaches, TellWhichSizesAreLeftOutAndLetThemBeRemoved)
{
    const std::string printer = InstallTestPrinter("tavlen-b4400-uni");
    ASSERT_EQ(Add("Good", "100mm", "200mm").status, 0);
    const User user(CustomForms::kComponent);
    user.SetDword(CXString(CustomForms::kKey) + W("\\Bad"), CustomForms::kWidth, 1000);
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"refresh", printer}, {"custom-size", "list"}})
    {
        std::vector<std::string> arguments = {"printer"};
        arguments.insert(arguments.end(), command.begin(), command.end());
        EXPECT_NE(OutputOf(arguments).find("\"Bad\" is left out"), std::string::npos);
    }
    EXPECT_EQ(Caches(printer)["forms"].back()["name"], "Good");
    EXPECT_TRUE(Sizes()[0]["fault"].is_null());
    EXPECT_TRUE(Sizes()[1]["fault"].is_string());
    EXPECT_TRUE(user.CreateKey(CXString(CustomForms::kKey) + W("\\ \n\x2028")));
    for (const json& size : Sizes())
        EXPECT_EQ(RunHost({"printer", "custom-size", "remove", "--", size["name"]}).status, 0) << size;
    EXPECT_EQ(Sizes(), json::array());
}

TEST_F(CapabilityCaches, AreFilledWhileAnotherProcessAddsAndRemovesSizes)
{
    const std::string printer = InstallTestPrinter("tavlen-b7000-xps");
    std::atomic<bool> isDone = false;
    std::thread other(
        [&isDone]
        {
            const std::string command = std::string(TVPT_CHILD_COMMAND) + " printer custom-size ";
            for (int round = 0; round < 12; ++round)
                for (const char* const work : {"add Strip --width 100mm --length 200mm", "remove Strip"})
                    EXPECT_EQ(std::system((command + work).c_str()), 0) << work;
            isDone = true;
        });
    while (!isDone)
    {
        const RunResult list = RunHost({"printer", "custom-size", "list"});
        EXPECT_EQ(list.status, 0) << list.errors;
        EXPECT_EQ(list.out.find("left out"), std::string::npos) << list.out;
        Refresh(printer);
        EXPECT_FALSE(CustomForms::WalkSizes().isCutOff) << "as conversions walk, without the lock";
    }
    other.join();
}

TEST(FormTable, KeepsEachFormOnItsLineAndEachLengthsSign)
{
    FormsInfoRecord form;
    form.SetName(W("A\n\x2028\x85"
                   "B"));
    form.width = -5;
    form.length = std::numeric_limits<std::int32_t>::min();
    const std::string table = FormTable({&form, 1});
    EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 2) << table;
    EXPECT_NE(table.find(" A   B  -0.5      -214748364.8 "), std::string::npos) << table;
}

TEST_F(CapabilityCaches, ReconcileADevmodesPaper)
{
    const std::string printer = InstallTestPrinter("tavlen-b7000-xps");
    std::string words = Reconcile(printer, {"dmPaperSize=3"});
    EXPECT_NE(words.find("dmPaperSize: 3 becomes 17\n"), std::string::npos) << words;
    EXPECT_NE(words.find("The paper is \"11x17\" (17), 279.4 x 431.8 mm."), std::string::npos) << words;
    EXPECT_EQ(PublicFields()["dmPaperSize"], 17);
    EXPECT_EQ(PublicFields()["dmPaperWidth"], 2794);
    words = RunHost({"devmode", "reconcile", File("d.dm"), "--printer", printer}).out;
    EXPECT_TRUE(words.starts_with("Nothing changes.\n")) << words;

    words = Reconcile(printer, {"dmPaperSize=256", "dmFields=0", "dmFormName=Zed"});
    EXPECT_NE(words.find("with DM_PAPERLENGTH, without DM_FORMNAME, since the size"), std::string::npos) << words;
    words = Reconcile(printer, {"dmPaperSize=9999", "dmPaperWidth=1", "dmPaperLength=2"});
    EXPECT_NE(words.find("No form"), std::string::npos) << words;
    const std::string bytes = ReadBytes(Folder() / "d.dm");
    EXPECT_EQ(RunHost({"devmode", "reconcile", "-", "--printer", printer}, bytes).status, 2);
    (void)OutputOf({"devmode", "reconcile", "-", "--printer", printer, "-o", File("o.dm")}, bytes);
    EXPECT_EQ(ReadBytes(Folder() / "o.dm"), bytes);

    // A custom size is found by its number, and a paper from 10,000 on keeps the country's usual name.
    ASSERT_EQ(Add("Strip", "100mm", "5.5in").status, 0);
    Refresh(printer);
    words = Reconcile(printer, {"dmPaperSize=" + Sizes()[0]["paperId"].dump()});
    EXPECT_NE(words.find("dmPaperWidth: 2159 becomes 1000\n"), std::string::npos) << words;
    EXPECT_NE(words.find("The paper is \"Strip\" ("), std::string::npos) << words;
    EXPECT_NE(words.find("100 x 139.7 mm"), std::string::npos) << words;

    // A ticket made of it names it and tells its measures, in micrometres; it comes back as a size of its own.
    ASSERT_EQ(FromDevmode("d.dm", "t.xml").status, 0);
    const std::string ticket = ReadBytes(Folder() / "t.xml");
    for (const char* const part : {"_1000x1397\"", ">100000<", ">139700<"})
        EXPECT_NE(ticket.find(part), std::string::npos) << part << "\n" << ticket;
    EXPECT_EQ(ToDevmode("t.xml", "d.dm", "d.dm").status, 0);
    EXPECT_EQ(PublicFields()["dmPaperSize"], 256);
    EXPECT_EQ(PublicFields()["dmFormName"], "Strip");
}

TEST_F(CapabilityCaches, ReconcileNoUsersForm)
{
    const std::string printer =
        InstallTestPrinter("tavlen-c9070-ps"); // its device setting replaces the driver's papers
    const json forms = Caches(printer)["forms"];
    const auto drivers = std::find_if(forms.begin(), forms.end(),
                                      [](const json& form) { return form["paperId"] >= 119 && form["type"] == 25002; });
    ASSERT_NE(drivers, forms.end());
    Reconcile(printer, {"app=excel.exe", "dmPaperSize=" + (*drivers)["paperId"].dump()});
    EXPECT_LE(PublicFields()["dmPaperSize"], 9);

    // A user's own form, which the spooler numbers behind its own: its flags are 0, so it stays. As many are added as
    // bring one behind the platform's own papers.
    const PrinterHandle handle = PrinterHandle::Open(printer, PrinterHandle::Access::Administer);
    std::vector<WideString> names;
    DWORD own = 0;
    do
    {
        names.emplace_back(CXString::FromUtf8("Own form " + std::to_string(names.size()) + " of " +
                                              std::to_string(GetCurrentProcessId()))
                               .View());
        AddOwnForm(handle.Get(), names.back());
        own = NumberOf(handle.Get(), names.back());
    } while (own != 0 && own < 119);
    if (own != 0)
        Reconcile(printer, {"app=excel.exe", "dmPaperSize=" + std::to_string(own)});
    for (WideString& name : names)
        EXPECT_TRUE(DeleteFormW(handle.Get(), name.data()));
    if (own == 0)
        GTEST_SKIP() << "this spooler takes forms and does not list them";
    EXPECT_GE(own, 119U);
    EXPECT_EQ(PublicFields()["dmPaperSize"], own);
}

TEST_F(CapabilityCaches, SpareConversionsTheDriversCode)
{
    const std::string printer = InstallTestPrinter();
    MakePlainDevmode(printer);
    // The very copy that the spooler loads.
    const PrinterHandle handle = PrinterHandle::Open(printer, PrinterHandle::Access::Use);
    const CXString file = DescribeDriver(handle, printer).configFile;
    HMODULE const module = LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    ASSERT_NE(module, nullptr);
    const auto count = FindFunction<DWORD(WINAPI*)()>(module, "TavlenCountCapabilityQuestions");
    ASSERT_NE(count, nullptr);
    const DWORD before = count();
    EXPECT_EQ(Convert(printer).status, 0);
    EXPECT_EQ(ToDevmode("t", "d.dm", "o.dm").status, 0);
    (void)OutputOf({"devmode", "reconcile", File("o.dm"), "--printer", printer});
    Refresh(printer);
    MSDeviceCapabilities shared;
    MsCachedDeviceCapabilities capabilities(shared, handle.Get(), nullptr);
    std::vector<FormsInfoRecord> forms;
    std::vector<std::int32_t> resolutions;
    EXPECT_EQ(capabilities.GetForms(forms), S_OK);
    EXPECT_EQ(capabilities.GetResolutionEnums(resolutions), S_OK);
    constexpr DWORD kOfMediaTypes = 2 * 3; // their count, numbers and names, each way: translators ask nothing else
    EXPECT_EQ(count(), before + kOfMediaTypes);
    EXPECT_GT(DeviceCapabilitiesW(CXString::FromUtf8(printer).c_str(), W("FILE:"), DC_COPIES, nullptr, nullptr), 0);
    EXPECT_EQ(count(), before + kOfMediaTypes + 1) << "the counter counts";
    FreeLibrary(module);
}

TEST_F(CapabilityCaches, AreWholeForEightReadersWhileTwoRefresh)
{
    const std::string printer = InstallTestPrinter("tavlen-b7000-xps");
    ASSERT_EQ(Add("Strip", "100mm", "5.5in").status, 0);
    Refresh(printer);
    const std::string forms = std::to_string(Caches(printer)["forms"].size());
    std::vector<std::thread> processes;
    for (int at = 0; at < 10; ++at)
        processes.emplace_back(
            [&, at]
            {
                const std::string log = File("log" + std::to_string(at));
                const std::string work = at < 2 ? "refresh" : "read";
                const int status = std::system((std::string(TVPT_CACHES_LOOP_COMMAND) + " " + work + " \"" + printer +
                                                "\" " + forms + " 15 2> \"" + log + "\"")
                                                   .c_str());
                EXPECT_EQ(status, 0) << work << ": " << ReadBytes(log);
            });
    for (std::thread& process : processes)
        process.join();
    EXPECT_EQ(StateOf(Caches(printer), "XPaperCaps"), "valid");
}

} // namespace
