// The first operations of a process and of a thread while memory runs out, under the tool chain whose runtime makes
// room at a first use. Windows: elsewhere any allocation of a test's own process can fail (faulttests.cpp).
#include <windows.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/common/testprinter.h"

namespace
{

struct Told
{
    unsigned long nth = 0;
    bool isFired = false;
    HRESULT result = S_OK;
};

struct Scene
{
    const char* name;
    const char* probe;  // operation and where
    const char* module; // the driver's workflow module
    HRESULT through;    // the result when nothing fails
    // Of how many allocations the process does not survive that one fails: those with which the tool chain's runtime
    // makes room for the exceptions of a module's process and thread, at the first one that is thrown or caught there.
    std::size_t limit;
};

constexpr Scene kScenes[] = {
    {"conversion, thread", "convert thread", "tvwftu_b.dll", S_OK, 0},
    {"conversion, process", "convert process", "tvwftu_b.dll", S_OK, 0},
    {"binding to a product, thread", "bind thread", "tvwftu_b.dll", S_OK, 0},
    {"binding, process", "bind process", "tvother_b.dll", S_OK, 0},
    {"refusal, thread", "refuse thread", "tvother_b.dll", E_FAIL, 6},
    {"refusal, process", "refuse process", "tvother_b.dll", E_FAIL, 14},
};

class OutOfMemory : public testing::TestWithParam<Scene>
{
protected:
    // What the probe told before it ended, also when it did not survive: what it does not survive, it never does. Of a
    // thousand processes one of Wine's ends before it has begun.
    std::vector<Told> Probe(unsigned long nth) const
    {
        std::vector<Told> told;
        int status = 0;
        for (int attempt = 0; attempt < 3 && told.empty(); ++attempt)
            told = ProbeOnce(nth, status);
        EXPECT_FALSE(told.empty() && status > 0 && status < 10 && status != 3) << "the probe cannot begin: " << status;
        return told;
    }

private:
    std::vector<Told> ProbeOnce(unsigned long nth, int& status) const
    {
        const std::string command = std::string("out_of_memory_probe.exe ") + GetParam().probe + " " +
                                    std::to_string(nth) + " >" + m_file + " 2>nul";
        status = std::system(command.c_str());
        std::vector<Told> told;
        std::ifstream lines(m_file);
        std::string fired;
        std::string result;
        for (Told line; lines >> line.nth >> fired >> result;)
        {
            line.isFired = fired == "fired";
            line.result = static_cast<HRESULT>(std::strtoul(result.c_str(), nullptr, 16));
            told.push_back(line);
        }
        lines.close();
        std::remove(m_file.c_str());
        return told;
    }

    const std::string m_file = "outofmemory" + std::to_string(GetCurrentProcessId()) + ".txt";
};

TEST_P(OutOfMemory, FailsTheFirstOperationCleanly)
{
    const Scene& scene = GetParam();
    const TestPrinter printer({0xE02, "tavlen-c9070-ps.json", {scene.module}});
    SetEnvironmentVariableW(W("TVPT_PROBE_PRINTER"), TestPrinter::Name().c_str());
    const bool isOfThreads = std::string(scene.probe).find(" thread") != std::string::npos;
    constexpr unsigned long kFar = 5000;
    std::string ended;
    std::size_t endedCount = 0;
    bool isThrough = false;
    unsigned long nth = 1;
    while (!isThrough && nth < kFar && !HasFailure())
    {
        const unsigned long begun = nth;
        for (const Told& told : Probe(nth))
        {
            const bool isRefusal = told.result == E_FAIL || told.result == E_OUTOFMEMORY;
            EXPECT_TRUE(told.result == scene.through || (told.isFired && isRefusal)) << told.nth << ": " << told.result;
            isThrough = !told.isFired;
            nth = told.nth + 1;
        }
        // In threads the probe goes on until one number ends it; in processes it tries one.
        if (!isThrough && (isOfThreads || nth == begun))
        {
            ended += " " + std::to_string(nth++);
            ++endedCount;
        }
    }
    SetEnvironmentVariableW(W("TVPT_PROBE_PRINTER"), nullptr);
    EXPECT_TRUE(isThrough) << "there is always one more allocation to fail";
    EXPECT_GT(nth, 20u) << "hardly anything was made to fail";
    EXPECT_LE(endedCount, scene.limit) << "did not survive:" << ended << " of " << nth - 2;
    RecordProperty("ended", ended + " of " + std::to_string(nth - 2)); // for the limit that the architecture states
}

INSTANTIATE_TEST_SUITE_P(Scenes, OutOfMemory, testing::ValuesIn(kScenes),
                         [](const auto& scene)
                         {
                             std::string name = scene.param.name;
                             std::erase_if(name, [](char c) { return c == ' ' || c == ','; });
                             return name;
                         });

} // namespace
