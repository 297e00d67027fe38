// A driver's configuration module that announces and brings papers as a test tells it to.
#include <windows.h>
#include <winspool.h>

#include <winddiui.h>

#include <algorithm>
#include <cstring>

#include "tests/tvutil/paperssample.h"

namespace
{

using namespace paperssample;

struct Answer
{
    int announced = -1;
    int brought = -1;
};

int CountOf(WCHAR character)
{
    return character == kTooMany ? 0x10001 : character - kNoPaper;
}

Answer AnswerTo(WORD capability)
{
    WCHAR script[7] = {};
    if (GetEnvironmentVariableW(kVariable, script, 7) != 6)
        return {};
    const WCHAR* const pair = script + (capability == DC_PAPERS ? 0 : capability == DC_PAPERSIZE ? 2 : 4);
    return {CountOf(pair[0]), CountOf(pair[1])};
}

template <class Record>
void Put(void* output, int position, const Record& record)
{
    std::memcpy(static_cast<Record*>(output) + position, &record, sizeof(record));
}

struct Name
{
    WCHAR text[kNameLength];
};

void PutPaper(WORD capability, void* output, int paper)
{
    if (capability == DC_PAPERS)
        Put(output, paper, static_cast<WORD>(kFirstNumber + paper));
    else if (capability == DC_PAPERSIZE)
        Put(output, paper, POINTL{paper * 10, paper * 20});
    else
    {
        Name name = {};
        std::fill_n(name.text, std::min(static_cast<std::size_t>(paper), kNameLength), W('p'));
        Put(output, paper, name);
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
