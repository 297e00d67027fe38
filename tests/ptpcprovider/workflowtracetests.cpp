// Linux, where the trace can be captured: why a printer is bound without a workflow module.
#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <tuple>

#include <gtest/gtest.h>

#include <tvutil/printer.h>

#include "complugins/workflowobject.h"
#include "tests/common/testfolders.h"
#include "tests/common/testprinter.h"

TEST(WorkflowTrace, SaysWhyThereIsNoModule)
{
    // Files of the driver, and what is stored as a number: of another length none.
    const std::tuple<std::vector<std::string>, std::vector<BYTE>, std::string> cases[] = {
        {{"tvother_b.dll"}, {}, "none of the known ones is among the driver's files"},
        {{"tvwfuv_b.dll"}, {}, BinaryFolder().string() + "/tvwfuv_B.dll cannot be loaded: Win32 error 126"},
        {{"tvwfwu_b.dll"}, {}, "tvwfwu_B.dll has no object to give"},
        {{}, {4, 0, 0, 0}, "the printer's data name an unknown one, number 4"},
        {{}, {0, 0, 0, 0}, "the printer's data say that there is none"},
        {{}, {1, 0}, "what the printer's data hold for it is no number"},
    };
    for (const auto& [driverFiles, stored, reason] : cases)
    {
        const TestPrinter printer({0xE02, "tavlen-c9070-ps.json", driverFiles});
        if (!stored.empty())
            Printer(printer.Handle())
                .SetPrinterDataW(W("XWorkflowDLL"), REG_DWORD, stored.data(), static_cast<DWORD>(stored.size()));
        testing::internal::CaptureStderr();
        setenv("WINPORT_DEBUG_OUTPUT", "1", 1);
        WorkflowObject workflow;
        EXPECT_FALSE(workflow.Load(printer.Handle()));
        unsetenv("WINPORT_DEBUG_OUTPUT");
        const std::string trace = testing::internal::GetCapturedStderr();
        EXPECT_EQ("WorkflowObject::Load: no workflow module: ", trace.substr(0, trace.find(reason))) << reason;
        EXPECT_EQ(1, std::count(trace.begin(), trace.end(), '\n')) << trace;
    }
}
