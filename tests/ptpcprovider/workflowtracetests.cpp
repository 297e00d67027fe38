// Linux, where the trace can be captured: why a printer is bound without a workflow module.
#include <windows.h>

#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tvutil/printer.h>

#include "complugins/workflowobject.h"
#include "tests/common/testprinter.h"

namespace
{

TEST(WorkflowTrace, SaysWhyThereIsNoModule)
{
    struct Case
    {
        std::vector<std::string> driverFiles;
        DWORD storedKind; // 0: none stored
        const char* reason;
    };
    const Case cases[] = {
        {{"tvother_b.dll"}, 0, "no workflow module: the driver has none"},
        {{"tvwfuv_b.dll"}, 0, "tvwfuv_B.dll cannot be loaded: Win32 error 126"},
        {{"tvwfwu_b.dll"}, 0, "tvwfwu_B.dll has no object to give"},
        {{}, 4, "an unknown one, number 4"},
    };
    for (const Case& test : cases)
    {
        const TestPrinter printer({0xE02, "tavlen-c9070-ps.json", test.driverFiles});
        if (test.storedKind != 0)
            Printer(printer.Handle())
                .SetPrinterDataW(W("XWorkflowDLL"), REG_DWORD, &test.storedKind, sizeof(test.storedKind));
        testing::internal::CaptureStderr();
        setenv("WINPORT_DEBUG_OUTPUT", "1", 1);
        WorkflowObject workflow;
        EXPECT_FALSE(workflow.Load(printer.Handle()));
        unsetenv("WINPORT_DEBUG_OUTPUT");
        const std::string trace = testing::internal::GetCapturedStderr();
        EXPECT_NE(std::string::npos, trace.find(test.reason)) << trace;
    }
}

} // namespace
