// Prints each benchmark's time as a multiple of the run's yardstick: figures that can be compared between machines.
//
// The yardstick is the benchmark named "yardstick": the same matter without our code, parsing and serialising a real
// ticket with the bare DOM, or copying a devmode.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

class RatioReporter : public benchmark::ConsoleReporter
{
public:
    RatioReporter() : ConsoleReporter(OO_Tabular)
    {
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration)
                m_times.emplace_back(run.benchmark_name(), run.GetAdjustedCPUTime() * UnitInNanoseconds(run.time_unit));
    }

    void Finalize() override
    {
        double yardstick = 0;
        for (const auto& [name, time] : m_times)
            if (name == "yardstick")
                yardstick = time;
        if (yardstick == 0)
            return;
        GetOutputStream() << "\nmultiples of the yardstick\n";
        for (const auto& [name, time] : m_times)
        {
            char ratio[32];
            std::snprintf(ratio, sizeof(ratio), "%10.3f", time / yardstick);
            GetOutputStream() << ratio << "  " << name << '\n';
        }
    }

private:
    static double UnitInNanoseconds(benchmark::TimeUnit unit)
    {
        return 1e9 / benchmark::GetTimeUnitMultiplier(unit);
    }

    std::vector<std::pair<std::string, double>> m_times;
};
