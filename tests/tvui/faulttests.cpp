// Every platform call and every allocation fails in turn while the module is asked: it answers -1, and then works.
#include <algorithm>
#include <functional>
#include <vector>

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

} // namespace
