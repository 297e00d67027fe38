// Every platform call and every allocation fails in turn while the module is asked: it answers -1, and then works.
#include <algorithm>
#include <new>
#include <optional>

#include <tvutil/user.h>

#include "complugins/customforms.h"
#include "complugins/msdevicecapabilities.h"
#include "tests/tvui/installedprinter.h"
#include "winport/faultinjection.h"

namespace
{

class Faults : public InstalledPrinter
{
protected:
    // Short lists: every allocation for an item of one is a round of its own, and finds nothing that two items do not.
    void InstallShortLists()
    {
        Install(kUnidrvModel,
                [](nlohmann::json& model)
                {
                    for (const char* const list : {"forms", "margins", "mediaTypes", "bins", "resolutions"})
                        model[list].get_ref<nlohmann::json::array_t&>().resize(2);
                });
    }

    // `ask` is true for the right answer and false for a refused one; anything else is a failure of its own.
    static void ExpectAnswersOrRefusals(const std::function<bool()>& ask)
    {
        ExpectAnswerOrRefusal(winport::FaultKind::PlatformCall, ask);
        if (TVPT_ALLOCATION_FAULTS != 0)
            ExpectAnswerOrRefusal(winport::FaultKind::Allocation, ask);
    }

private:
    static void ExpectAnswerOrRefusal(winport::FaultKind kind, const std::function<bool()>& ask)
    {
        unsigned refusals = 0;
        for (unsigned nth = 1;; ++nth)
        {
            winport::ArmFault(kind, nth);
            const bool answered = ask();
            const bool fired = winport::DisarmFault(kind);
            EXPECT_TRUE(ask()) << "after fault " << nth;
            if (!fired)
            {
                EXPECT_TRUE(answered);
                break;
            }
            refusals += answered ? 0u : 1u;
        }
        EXPECT_GT(refusals, 0u);
    }
};

TEST_F(Faults, LeaveCapabilitiesRefusedOrRightAndDevmodesUnwrittenOrWhole)
{
    InstallShortLists();
    const ConfigurationModule module;
    WideString name = MutableName();
    std::vector<WORD> papers(m_model["forms"].size()); // the faults are not for the test's own memory
    const auto askPapers = [&]
    {
        std::fill(papers.begin(), papers.end(), WORD{0});
        const int answer = module.Capability(nullptr, name.data(), DC_PAPERS, papers.data());
        EXPECT_TRUE(answer == -1 || answer == static_cast<int>(papers.size())) << answer;
        EXPECT_EQ(papers[0], answer == -1 ? 0 : 9);
        return answer != -1;
    };
    ExpectAnswersOrRefusals(askPapers);
    const ByteBuffer properties = Properties();
    const std::vector<BYTE> whole(properties.data(), properties.data() + properties.size());
    const std::vector<BYTE> nothing(whole.size());
    std::vector<BYTE> output(whole.size());
    const auto askDevmode = [&]
    {
        std::fill(output.begin(), output.end(), BYTE{0});
        DOCUMENTPROPERTYHEADER header = ConfigurationModule::Header(name.data(), nullptr, output, DM_OUT_BUFFER);
        const LONG answer = module.PropertySheets(nullptr, &header);
        EXPECT_TRUE(answer == -1 || answer == IDOK) << answer;
        EXPECT_TRUE(output == (answer == IDOK ? whole : nothing));
        return answer == IDOK;
    };
    ExpectAnswersOrRefusals(askDevmode);
}

// With one custom size of the user beside the model's forms.
class FaultsOfCaches : public Faults
{
protected:
    void SetUp() override
    {
        Faults::SetUp();
        Install(kUnidrvModel);
        m_user.DeleteKey(CustomForms::kKey);
        ASSERT_TRUE(CustomForms::Add({W("Strip"), 100000, 200000, true}));
        ASSERT_TRUE(IsFilled());
        m_whole = m_model["forms"].size() + 1; // the faults are not for the test's own memory
        m_printer.emplace(m_name);
    }

    void TearDown() override
    {
        m_user.DeleteKey(CustomForms::kKey);
        m_printer.reset();
        Faults::TearDown();
    }

    bool IsFilled()
    {
        return m_module.Event(m_mutableName.data(), PRINTER_EVENT_CACHE_REFRESH) != FALSE;
    }

    // What a conversion reads: all the forms or none.
    bool AreRead() const
    try
    {
        std::vector<FormsInfoRecord> forms;
        MSDeviceCapabilities capabilities;
        HANDLE const printer = m_printer->GetPrinterHandle();
        capabilities.Initialize(printer);
        const HRESULT result = capabilities.GetPaperDatabaseCachedDeviceCapabilitiesVector(printer, nullptr, forms);
        EXPECT_TRUE(result == S_OK || result == E_FAIL || result == E_NOTIMPL) << result;
        EXPECT_EQ(forms.size(), result == S_OK ? m_whole : 0);
        return result == S_OK;
    }
    catch (const std::bad_alloc&)
    {
        return false;
    }

private:
    const User m_user{CustomForms::kComponent};
    const ConfigurationModule m_module{};
    WideString m_mutableName = MutableName();
    std::optional<Printer> m_printer;
    std::size_t m_whole = 0;
};

// What somebody reads meanwhile is whole, and a filling that was cut off is told.
TEST_F(FaultsOfCaches, LeaveThemWholeWhileTheyAreFilled)
{
    unsigned refusals = 0;
    for (unsigned nth = 1;; ++nth)
    {
        winport::ArmFault(winport::FaultKind::PlatformCall, nth);
        const bool isFilled = IsFilled();
        const bool fired = winport::DisarmFault(winport::FaultKind::PlatformCall);
        EXPECT_TRUE(AreRead()) << "after fault " << nth;
        refusals += isFilled ? 0U : 1U;
        if (fired)
            continue;
        EXPECT_TRUE(isFilled);
        break;
    }
    EXPECT_GT(refusals, 20U);
}

TEST_F(FaultsOfCaches, LeaveReadingRefusedOrRight)
{
    ExpectAnswersOrRefusals([this] { return AreRead(); });
}

} // namespace
