// A program of its own for a test: adds a printer and removes it again, over and over, as a busy installer would, and
// leaves it added. The first failure ends it, with its line on standard error.
//
//     printer_loop PRINTER MODEL ROUNDS
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "printerinstall.h"

int main(int argc, char** argv)
try
{
    if (argc != 4)
        return 2;
    for (int round = 0; round < std::atoi(argv[3]); ++round)
    {
        if (round != 0)
            RemovePrinter(argv[1]);
        InstallPrinter(argv[1], argv[2]);
    }
    return 0;
}
catch (const std::exception& failure)
{
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
}
