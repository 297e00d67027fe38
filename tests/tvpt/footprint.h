// What this process holds of the machine, for tests that it holds no more later. 0 stands for what nobody tells.
#pragma once

#include <cstddef>

struct Footprint
{
    std::size_t memory = 0;  // allocated bytes; not told by the sanitizers' allocators, nor under Wine
    std::size_t handles = 0; // open files on Linux, kernel handles on Windows; not told under Wine
};

Footprint MeasureFootprint();
