// The caches of a printer's capabilities, the user's custom sizes and the reconciliation of a devmode's paper, on the
// command line.
#include <windows.h>
#include <winspool.h>

#include <atomic>
#include <thread>
#include <tuple>

#include <tvutil/cforms.h>
#include <tvutil/datacache.h>
#include <tvutil/user.h>

#include "complugins/customforms.h"
#include "hostrun.h"
#include "printerhandle.h"
#include "utilitiesstaticlib/findfunction.h"

namespace
{

using nlohmann::json;

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
        return JsonOf({"printer", "caches", printer});
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
        return JsonOf({"printer", "custom-size", "list"});
    }

    static void Refresh(const std::string& printer)
    {
        (void)OutputOf({"printer", "refresh", printer});
    }

    // A devmode of the printer, after these settings, reconciled; the words.
    std::string Reconcile(const std::string& printer, const std::vector<std::string>& settings)
    {
        WriteDevmode("d.dm", settings);
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

TEST_F(CapabilityCaches, AreFullFollowTheCustomSizesAtARefreshAndGoWithThePrinter)
{
    const std::string printer = InstallTestPrinter("tavlen-b7000-xps");
    json caches = Caches(printer);
    ASSERT_EQ(caches["caches"].size(), 9U);
    for (const json& cache : caches["caches"])
        EXPECT_TRUE(cache["state"] == "valid" && cache["size"] > 7) << cache;
    const json forms = Shown(printer)["model"]["forms"];
    ASSERT_EQ(caches["forms"].size(), forms.size());
    for (std::size_t at = 0; at < forms.size(); ++at)
        for (const auto& [field, value] : forms[at].items())
            EXPECT_EQ(caches["forms"][at][field], value) << field;
    EXPECT_NE(OutputOf({"printer", "caches", printer}).find("XResolutions"), std::string::npos);

    // With the width in tenths and the units.
    const std::tuple<std::string, const char*, std::vector<std::string>, int, int> sizes[] = {
        {"Strip", "100mm", {}, 1000, 7491},
        {std::string("Gr\xC3\xB6\xC3\x9F") + "e", "8.27in", {}, 2101, 7492},
        {"Said", "4in", {"--units", "metric"}, 1016, 7491},
    };
    for (const auto& [name, given, options, width, units] : sizes)
        EXPECT_EQ(Add(name, given, "5.5in", options).status, 0);
    caches = Caches(printer);
    EXPECT_EQ(StateOf(caches, "XPaperCaps"), "stale");
    EXPECT_EQ(StateOf(caches, "XBinCaps"), "valid");
    EXPECT_NE(caches["customForms"]["stored"], caches["customForms"]["now"]);
    EXPECT_TRUE(caches["forms"].empty()) << "a conversion finds none";
    WriteDevmode("d.dm");
    EXPECT_TRUE(IsRefused(RunHost({"devmode", "reconcile", File("d.dm"), "--printer", printer}), "E_FAIL"));

    Refresh(printer);
    caches = Caches(printer);
    EXPECT_EQ(StateOf(caches, "XPaperCaps"), "valid");
    EXPECT_EQ(caches["customForms"]["stored"], caches["customForms"]["now"]);
    ASSERT_EQ(caches["forms"].size(), forms.size() + std::size(sizes));
    for (const auto& [name, given, options, width, units] : sizes)
    {
        const auto form = std::find_if(caches["forms"].begin(), caches["forms"].end(),
                                       [&wanted = name](const json& each) { return each["name"] == wanted; });
        ASSERT_NE(form, caches["forms"].end()) << name;
        EXPECT_TRUE((*form)["width"] == width && (*form)["length"] == 1397 && (*form)["units"] == units) << *form;
        EXPECT_EQ(OutputOf({"printer", "custom-size", "remove", name}), "");
    }
    EXPECT_EQ(StateOf(Caches(printer), "XPaperCaps"), "stale");
    EXPECT_EQ(Sizes(), json::array());

    (void)OutputOf({"printer", "remove", printer});
    EXPECT_TRUE(IsRefused(RunHost({"printer", "caches", printer}), printer));
    EXPECT_FALSE(DataCache::RemovePrinter(CXString::FromUtf8(printer), HKEY_CURRENT_USER)) << "nothing is left";
}

TEST_F(CapabilityCaches, TakeNoCustomSizeThatIsNone)
{
    ASSERT_EQ(Add("There", "100mm", "200mm").status, 0);
    const json before = Sizes();
    const std::tuple<std::string, std::string, std::string, const char*> kCases[] = {
        {"New", "-1mm", "100mm", "--width"},
        {"New", "0.099999mm", "100mm", "--width"},
        {"New", "100mm", "3276.700001mm", "--length"},
        {"New", "99999999999mm", "100mm", "--width"},
        {" \xC2\xA0\xE3\x80\x80", "100mm", "100mm", "empty"},
        {"A\\B", "100mm", "100mm", "backslash"},
        {"A\xE2\x80\xA9", "100mm", "100mm", "control"},
        {"Size 5462", "100mm", "100mm", "paper number"}, // that of "There"
        {std::string(256, 'n'), "100mm", "100mm", "255"},
        {"\xFF", "100mm", "100mm", "UTF-8"},
        {"tHERE", "100mm", "100mm", "there is a custom paper size of this name"},
    };
    for (const auto& [name, width, length, message] : kCases)
        EXPECT_TRUE(IsRefused(Add(name, width, length), message));
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
         {std::vector<std::string>{"printer", "refresh", printer}, {"printer", "custom-size", "list"}})
        EXPECT_NE(OutputOf(command).find("\"Bad\" is left out"), std::string::npos);
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
            for (int round = 0; round < 12; ++round)
                for (const char* const work : {"add Strip --width 100mm --length 200mm", "remove Strip"})
                    EXPECT_EQ(RunChild(std::string("printer custom-size ") + work), 0) << work;
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
    constexpr DWORD kNumber = 119;
    const PrinterHandle handle = PrinterHandle::Open(printer, PrinterHandle::Access::Administer);
    std::vector<WideString> names;
    CFormRecord form;
    while (names.size() < kNumber && !(CForms(handle.Get()).GetFormW(kNumber, form) && form.flags == 0))
    {
        const std::string name = "Own " + std::to_string(names.size()) + " " + std::to_string(GetCurrentProcessId());
        names.emplace_back(CXString::FromUtf8(name).View());
        FORM_INFO_1W own = {0, names.back().data(), {150000, 250000}, {0, 0, 150000, 250000}};
        EXPECT_TRUE(AddFormW(handle.Get(), 1, reinterpret_cast<BYTE*>(&own))) << GetLastError();
    }
    Reconcile(printer, {"app=excel.exe", "dmPaperSize=" + std::to_string(kNumber)});
    for (WideString& name : names)
        EXPECT_TRUE(DeleteFormW(handle.Get(), name.data()));
    if (names.size() == kNumber)
        GTEST_SKIP() << "this spooler takes forms and does not list them";
    EXPECT_EQ(PublicFields()["dmPaperSize"], kNumber);
}

TEST_F(CapabilityCaches, SpareConversionsTheDriversCode)
{
    const std::string printer = InstallTestPrinter();
    WriteDevmode("d.dm");
    // The very copy that the spooler loads.
    const PrinterHandle handle = PrinterHandle::Open(printer, PrinterHandle::Access::Use);
    const CXString file = DescribeDriver(handle, printer).configFile;
    HMODULE const module = LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    ASSERT_NE(module, nullptr);
    const auto count = FindFunction<DWORD(WINAPI*)()>(module, "TavlenCountCapabilityQuestions");
    ASSERT_NE(count, nullptr);
    const DWORD before = count();
    EXPECT_EQ(FromDevmode("d.dm", "t").status, 0);
    EXPECT_EQ(ToDevmode("t", "d.dm", "o.dm").status, 0);
    (void)OutputOf({"devmode", "reconcile", File("o.dm"), "--printer", printer});
    Refresh(printer);
    (void)OutputOf({"capabilities", "--printer", printer});
    // The media types' count, numbers and names for each of three tickets and for the offer, which also asks for both
    // extents and the copies: translators ask nothing else.
    constexpr DWORD kOfTranslators = 4 * 3 + 2 + 1;
    EXPECT_EQ(count(), before + kOfTranslators);
    EXPECT_GT(DeviceCapabilitiesW(CXString::FromUtf8(printer).c_str(), W("FILE:"), DC_COPIES, nullptr, nullptr), 0);
    EXPECT_EQ(count(), before + kOfTranslators + 1) << "the counter counts";
    FreeLibrary(module);
}

TEST_F(CapabilityCaches, AreWholeForEightReadersWhileTwoRefresh)
{
    const std::string printer = InstallTestPrinter("tavlen-b7000-xps");
    ASSERT_EQ(Add("Strip", "100mm", "5.5in").status, 0);
    Refresh(printer);
    const std::size_t forms = Caches(printer)["forms"].size();
    std::vector<std::thread> processes;
    for (int at = 0; at < 10; ++at)
        processes.emplace_back(
            [&, at]
            {
                const std::string file = File("out" + std::to_string(at));
                const std::string command = std::string("printer ") + (at < 2 ? "refresh" : "caches --json") + " \"" +
                                            printer + "\" > \"" + file + "\"";
                for (int round = 0; round < 15; ++round)
                {
                    ASSERT_EQ(RunChild(command), 0) << command;
                    if (at < 2)
                        continue;
                    const json caches = json::parse(ReadBytes(file));
                    EXPECT_EQ(caches["forms"].size(), forms);
                    for (const json& cache : caches["caches"])
                        EXPECT_EQ(cache["state"], "valid") << cache;
                }
            });
    for (std::thread& process : processes)
        process.join();
    EXPECT_EQ(StateOf(Caches(printer), "XPaperCaps"), "valid");
}

} // namespace
