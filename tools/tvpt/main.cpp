// tvpt: plays the PrintTicket service, so that every operation of the provider can be run, inspected and scripted.
#include <iostream>

#include "commandline.h"
#include "platform.h"

int main(int argc, char** argv)
{
    platform::PrepareStandardStreams();
    const ExitStatus status = RunTvpt(platform::Arguments(argc, argv), {std::cin, std::cout, std::cerr});
    return static_cast<int>(status);
}
