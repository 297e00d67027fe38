// What this process holds of the machine, for tests that it holds no more later.
#pragma once

#include <cstddef>

struct Footprint
{
    std::size_t memory = 0;  // allocated bytes; 0 where the allocator does not tell, as under the sanitizers
    std::size_t handles = 0; // open files on Linux, kernel handles on Windows
};

Footprint MeasureFootprint();
