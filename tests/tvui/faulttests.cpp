// Every platform call and every allocation fails in turn while the module is asked: it answers -1, and then works.
#include <algorithm>
#include <functional>
#include <new>
#include <vector>

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

TEST_F(Faults, LeaveCapabilitiesRefusedOrRight)
{
    Install(kUnidrvModel);
    const ConfigurationModule module;
    WideString name = MutableName();
    std::vector<WORD> papers(m_model["forms"].size()); // the faults are not for the test's own memory
    const auto ask = [&]
    {
        std::fill(papers.begin(), papers.end(), WORD{0});
        const int answer = module.Capability(nullptr, name.data(), DC_PAPERS, papers.data());
        EXPECT_TRUE(answer == -1 || answer == static_cast<int>(papers.size())) << answer;
        EXPECT_EQ(papers[0], answer == -1 ? 0 : 9);
        return answer != -1;
    };
    ExpectAnswersOrRefusals(ask);
}

TEST_F(Faults, LeaveDevmodesUnwrittenOrWhole)
{
    Install(kUnidrvModel);
    const ConfigurationModule module;
    const ByteBuffer properties = Properties();
    const std::vector<BYTE> whole(properties.data(), properties.data() + properties.size());
    WideString name = MutableName();
    const std::vector<BYTE> nothing(whole.size());
    std::vector<BYTE> output(whole.size());
    const auto ask = [&]
    {
        std::fill(output.begin(), output.end(), BYTE{0});
        DOCUMENTPROPERTYHEADER header = ConfigurationModule::Header(name.data(), nullptr, output, DM_OUT_BUFFER);
        const LONG answer = module.PropertySheets(nullptr, &header);
        EXPECT_TRUE(answer == -1 || answer == IDOK) << answer;
        EXPECT_TRUE(output == (answer == IDOK ? whole : nothing));
        return answer == IDOK;
    };
    ExpectAnswersOrRefusals(ask);
}

// What somebody reads meanwhile is whole, and a filling that was cut off is told.
TEST_F(Faults, LeaveCachesWholeWhileTheyAreFilled)
{
    Install(kUnidrvModel);
    const User user(CustomForms::kComponent);
    user.DeleteKey(CustomForms::kKey);
    ASSERT_TRUE(CustomForms::Add({W("Strip"), 100000, 200000, true}));
    const ConfigurationModule module;
    const Printer printer(m_name);
    WideString name = MutableName();
    ASSERT_TRUE(module.Event(name.data(), PRINTER_EVENT_CACHE_REFRESH));
    std::vector<FormsInfoRecord> forms;
    const auto count = [&]
    {
        MSDeviceCapabilities capabilities;
        capabilities.Initialize(printer.GetPrinterHandle());
        const HRESULT result =
            capabilities.GetPaperDatabaseCachedDeviceCapabilitiesVector(printer.GetPrinterHandle(), nullptr, forms);
        EXPECT_EQ(forms.empty(), FAILED(result));
        return forms.size();
    };
    const std::size_t whole = m_model["forms"].size() + 1;
    unsigned refusals = 0;
    for (unsigned nth = 1;; ++nth)
    {
        winport::ArmFault(winport::FaultKind::PlatformCall, nth);
        const bool isFilled = module.Event(name.data(), PRINTER_EVENT_CACHE_REFRESH) != FALSE;
        const bool fired = winport::DisarmFault(winport::FaultKind::PlatformCall);
        EXPECT_EQ(count(), whole) << "after fault " << nth;
        refusals += isFilled ? 0U : 1U;
        if (fired)
            continue;
        EXPECT_TRUE(isFilled);
        break;
    }
    EXPECT_GT(refusals, 20U);
    user.DeleteKey(CustomForms::kKey);
}

TEST_F(Faults, LeaveFormListsRefusedOrRight)
{
    Install(kUnidrvModel);
    const User user(CustomForms::kComponent);
    user.DeleteKey(CustomForms::kKey);
    ASSERT_TRUE(CustomForms::Add({W("Strip"), 100000, 200000, true}));
    const ConfigurationModule module;
    const Printer printer(m_name);
    const std::size_t whole = m_model["forms"].size() + 1; // the faults are not for the test's own memory
    WideString name = MutableName();
    ASSERT_TRUE(module.Event(name.data(), PRINTER_EVENT_CACHE_REFRESH));
    const auto ask = [&]
    {
        try
        {
            std::vector<FormsInfoRecord> forms;
            MSDeviceCapabilities capabilities;
            capabilities.Initialize(printer.GetPrinterHandle());
            const HRESULT result =
                capabilities.GetPaperDatabaseCachedDeviceCapabilitiesVector(printer.GetPrinterHandle(), nullptr, forms);
            EXPECT_TRUE(result == S_OK || result == E_FAIL || result == E_NOTIMPL) << result;
            EXPECT_EQ(forms.size(), result == S_OK ? whole : 0);
            return result == S_OK;
        }
        catch (const std::bad_alloc&)
        {
            return false;
        }
    };
    ExpectAnswersOrRefusals(ask);
    user.DeleteKey(CustomForms::kKey);
}

} // namespace
