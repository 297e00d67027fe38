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

class OutOfMemory : public testing::Test
{
protected:
    OutOfMemory() : m_printer({0xE02, "tavlen-c9070-ps.json", {"tvother_b.dll"}})
    {
        SetEnvironmentVariableW(W("TVPT_PROBE_PRINTER"), TestPrinter::Name().c_str());
    }
    ~OutOfMemory() override
    {
        SetEnvironmentVariableW(W("TVPT_PROBE_PRINTER"), nullptr);
    }

    // What the probe told before it ended, also when it did not survive.
    static std::vector<Told> Probe(const std::string& operation, const std::string& where, unsigned long nth)
    {
        const std::string file = "outofmemory" + std::to_string(GetCurrentProcessId()) + ".txt";
        const std::string command =
            "out_of_memory_probe.exe " + operation + " " + where + " " + std::to_string(nth) + " >" + file + " 2>nul";
        std::system(command.c_str());
        std::vector<Told> told;
        std::ifstream lines(file);
        std::string fired;
        std::string result;
        for (Told line; lines >> line.nth >> fired >> result;)
        {
            line.isFired = fired == "fired";
            line.result = static_cast<HRESULT>(std::strtoul(result.c_str(), nullptr, 16));
            told.push_back(line);
        }
        lines.close();
        std::remove(file.c_str());
        return told;
    }

private:
    TestPrinter m_printer;
};

struct Scene
{
    const char* operation;
    const char* where;
    HRESULT through; // the result when nothing fails
    // Of how many allocations the process does not survive that one fails: those with which the tool chain's runtime
    // makes room for the exceptions of a module's process and thread, at the first one that is thrown or caught there.
    std::size_t limit;
};

constexpr Scene kScenes[] = {
    {"convert", "thread", S_OK, 0}, {"convert", "process", S_OK, 0}, {"bind", "thread", S_OK, 0},
    {"bind", "process", S_OK, 0},   {"refuse", "thread", E_FAIL, 8}, {"refuse", "process", E_FAIL, 16},
};

void CheckResult(const Told& told, const Scene& scene)
{
    const bool isRefusal = told.result == E_FAIL || told.result == E_OUTOFMEMORY;
    EXPECT_TRUE(told.result == scene.through || (told.isFired && isRefusal)) << told.nth << ": " << told.result;
}

TEST_F(OutOfMemory, FailsTheFirstOperationOfAProcessOrThreadCleanly)
{
    for (const Scene& scene : kScenes)
    {
        SCOPED_TRACE(std::string(scene.operation) + " " + scene.where);
        constexpr unsigned long kFar = 5000;
        std::string ended;
        std::size_t endedCount = 0;
        bool isThrough = false;
        unsigned long nth = 1;
        while (!isThrough && nth < kFar)
        {
            bool survived = false;
            for (const Told& told : Probe(scene.operation, scene.where, nth))
            {
                CheckResult(told, scene);
                survived = told.nth == nth;
                isThrough = !told.isFired;
                ++nth;
            }
            // In threads the probe goes on until one number ends it; in processes it runs one number.
            if (!isThrough && (!survived || scene.where == std::string("thread")))
            {
                ended += " " + std::to_string(nth++);
                ++endedCount;
            }
        }
        EXPECT_TRUE(isThrough) << "there is always one more allocation to fail";
        EXPECT_GT(nth, 20u) << "hardly anything was made to fail";
        EXPECT_LE(endedCount, scene.limit) << "did not survive:" << ended << " of " << nth;
        RecordProperty(std::string(scene.operation) + scene.where, ended + " of " + std::to_string(nth));
    }
}

} // namespace
