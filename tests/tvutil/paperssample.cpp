// A driver's configuration module that announces and brings papers as a test tells it to.
#include <windows.h>
#include <winspool.h>

#include <winddiui.h>

#include <algorithm>
#include <sstream>
#include <string>

#include "tests/tvutil/paperssample.h"

namespace
{

using namespace paperssample;

struct Answer
{
    int announced = -1;
    int brought = -1;
};

Answer AnswerTo(WORD capability)
{
    WCHAR script[64] = {};
    const DWORD length = GetEnvironmentVariableW(kVariable, script, 64);
    std::istringstream counts(std::string(script, script + length));
    Answer answer;
    for (const int asked : {DC_PAPERS, DC_PAPERSIZE, DC_PAPERNAMES})
        if (counts >> answer.announced >> answer.brought && asked == capability)
            return answer;
    return {};
}

void PutPaper(WORD capability, void* output, int paper)
{
    if (capability == DC_PAPERS)
        static_cast<WORD*>(output)[paper] = static_cast<WORD>(kFirstNumber + paper);
    else if (capability == DC_PAPERSIZE)
        static_cast<POINTL*>(output)[paper] = {paper * 10, paper * 20};
    else
    {
        WCHAR* const name = static_cast<WCHAR*>(output) + static_cast<std::size_t>(paper) * kNameLength;
        std::fill_n(name, kNameLength, WCHAR());
        std::fill_n(name, std::min(static_cast<std::size_t>(paper), kNameLength), W('p'));
    }
}

} // namespace

extern "C" PAPERS_SAMPLE_API DWORD WINAPI DrvDeviceCapabilities(HANDLE, LPWSTR, WORD capability, PVOID output,
                                                                DEVMODEW*)
{
    const Answer answer = AnswerTo(capability);
    if (output == nullptr)
        return static_cast<DWORD>(answer.announced);
    // Nobody could stop a driver that wrote many more than it had announced; this one only says so.
    constexpr int kWithinReason = 256;
    for (int paper = 0; paper < std::min(answer.brought, answer.announced + kWithinReason); ++paper)
        PutPaper(capability, output, paper);
    return static_cast<DWORD>(answer.brought);
}

// Wine wants it of every configuration module, even where it only asks for capabilities.
extern "C" PAPERS_SAMPLE_API LONG WINAPI DrvDocumentPropertySheets(PVOID, LPARAM)
{
    return -1;
}
