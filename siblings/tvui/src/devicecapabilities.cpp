#include "devicecapabilities.h"

#include <windows.h>
#include <winspool.h>

#include <algorithm>
#include <atomic>
#include <iterator>
#include <vector>

#include <tvcore/productdata.h>
#include <tvui/defaultdevmode.h>

#include "capabilityrecords.h"
#include "dependentfiles.h"
#include "devmodemerge.h"
#include "formlist.h"

namespace
{

struct Question
{
    const Printer& printer;
    const ProductData& product;
    void* output;
};

DWORD Fields(const Question& question)
{
    return SupportedFields(question.product);
}

// Without the custom sizes: see the header.
std::vector<PaperCache::Paper> PapersOfModel(const Question& question)
{
    return ListPapers(MakeFormList(question.product));
}

DWORD Papers(const Question& question)
{
    return AnswerList(PapersOfModel(question), question.output,
                      [](const PaperCache::Paper& paper) { return WORD{paper.paperId}; });
}

DWORD PaperSizes(const Question& question)
{
    return AnswerList(PapersOfModel(question), question.output,
                      [](const PaperCache::Paper& paper) {
                          return POINTL{paper.width, paper.length};
                      });
}

DWORD PaperNames(const Question& question)
{
    return AnswerList(PapersOfModel(question), question.output,
                      [](const PaperCache::Paper& paper) { return NameRecord<PaperName>(paper.displayName.View()); });
}

DWORD MediaReady(const Question& question)
{
    const CXString loaded[] = {LoadedPaper(question.product)};
    return AnswerList(loaded, question.output, [](const CXString& name) { return NameRecord<PaperName>(name.View()); });
}

DWORD MinExtent(const Question& question)
{
    return AnswerExtent(question.product.GetMinExtent());
}

DWORD MaxExtent(const Question& question)
{
    return AnswerExtent(question.product.GetMaxExtent());
}

DWORD Bins(const Question& question)
{
    return AnswerList(question.product.GetBins(), question.output,
                      [](const PrinterModel::Bin& bin) { return WORD{bin.id}; });
}

DWORD BinNames(const Question& question)
{
    return AnswerList(question.product.GetBins(), question.output,
                      [](const PrinterModel::Bin& bin) { return NameRecord<BinName>(bin.name); });
}

DWORD Resolutions(const Question& question)
{
    return AnswerList(question.product.GetResolutions(), question.output,
                      [](const PrinterModel::Resolution& resolution) {
                          return ResolutionRecord{resolution.x, resolution.y};
                      });
}

DWORD MediaTypes(const Question& question)
{
    return AnswerList(question.product.GetMediaTypes(), question.output,
                      [](const PrinterModel::MediaType& type) { return static_cast<DWORD>(type.id); });
}

DWORD MediaTypeNames(const Question& question)
{
    return AnswerList(question.product.GetMediaTypes(), question.output,
                      [](const PrinterModel::MediaType& type) { return NameRecord<MediaTypeName>(type.name); });
}

DWORD Copies(const Question& question)
{
    return question.product.GetMaxCopies();
}

DWORD PagesPerMinute(const Question& question)
{
    return question.product.GetPrintRate();
}

DWORD PrintRateUnit(const Question&)
{
    return PRINTRATEUNIT_PPM;
}

DWORD Memory(const Question& question)
{
    return static_cast<DWORD>(question.product.GetMemory());
}

DWORD Duplex(const Question& question)
{
    return (SupportedFields(question.product) & DM_DUPLEX) != 0 ? 1 : 0;
}

DWORD Collate(const Question& question)
{
    return (SupportedFields(question.product) & DM_COLLATE) != 0 ? 1 : 0;
}

DWORD Color(const Question& question)
{
    return IsColorProduct(question.product) ? 1 : 0;
}

// Finishing is a matter of the job ticket: no model describes a stapler that an application could ask for.
DWORD Staple(const Question&)
{
    return 0;
}

// Landscape is portrait turned by 90 degrees counterclockwise.
DWORD Orientation(const Question&)
{
    return 90;
}

DWORD TrueType(const Question& question)
{
    const bool isPostScript = question.product.GetCoreDriver().kind == PrinterModel::CoreDriverKind::PostScript;
    return static_cast<DWORD>(isPostScript ? DCTT_DOWNLOAD | DCTT_SUBDEV : DCTT_BITMAP | DCTT_DOWNLOAD);
}

DWORD PublicSize(const Question&)
{
    return sizeof(DEVMODEW);
}

DWORD ExtraSize(const Question& question)
{
    return static_cast<DWORD>(DefaultDevmodeSize(question.product) - sizeof(DEVMODEW));
}

DWORD SpecVersion(const Question&)
{
    return DM_SPECVERSION;
}

DWORD DriverVersion(const Question&)
{
    return kDriverDevmodeVersion;
}

DWORD FileDependencies(const Question& question)
{
    return AnswerList(DependentFileNames(question.printer), question.output,
                      [](const CXString& file) { return NameRecord<FileName>(file); });
}

struct Row
{
    WORD capability;
    DWORD (*answer)(const Question&);
};

constexpr Row kRows[] = {
    {DC_FIELDS, Fields},
    {DC_PAPERS, Papers},
    {DC_PAPERSIZE, PaperSizes},
    {DC_MINEXTENT, MinExtent},
    {DC_MAXEXTENT, MaxExtent},
    {DC_BINS, Bins},
    {DC_DUPLEX, Duplex},
    {DC_SIZE, PublicSize},
    {DC_EXTRA, ExtraSize},
    {DC_VERSION, SpecVersion},
    {DC_DRIVER, DriverVersion},
    {DC_BINNAMES, BinNames},
    {DC_ENUMRESOLUTIONS, Resolutions},
    {DC_FILEDEPENDENCIES, FileDependencies},
    {DC_TRUETYPE, TrueType},
    {DC_PAPERNAMES, PaperNames},
    {DC_ORIENTATION, Orientation},
    {DC_COPIES, Copies},
    {DC_COLLATE, Collate},
    {DC_PRINTRATE, PagesPerMinute},
    {DC_PRINTRATEUNIT, PrintRateUnit},
    {DC_PRINTERMEM, Memory},
    {DC_MEDIAREADY, MediaReady},
    {DC_STAPLE, Staple},
    {DC_PRINTRATEPPM, PagesPerMinute},
    {DC_COLORDEVICE, Color},
    {DC_MEDIATYPENAMES, MediaTypeNames},
    {DC_MEDIATYPES, MediaTypes},
};

const Row* FindRow(WORD capability) noexcept
{
    const auto* const row = std::find_if(std::begin(kRows), std::end(kRows),
                                         [capability](const Row& each) { return each.capability == capability; });
    return row != std::end(kRows) ? row : nullptr;
}

std::atomic<DWORD> g_questions{0};

} // namespace

DWORD CountCapabilityQuestions() noexcept
{
    return g_questions;
}

bool IsAnsweredCapability(WORD capability) noexcept
{
    return FindRow(capability) != nullptr;
}

DWORD AnswerCapability(WORD capability, const Printer& printer, void* output)
{
    ++g_questions;
    const Row* const row = FindRow(capability);
    if (row == nullptr)
        return static_cast<DWORD>(-1);
    const ProductData product(printer.GetPrinterHandle());
    return row->answer({printer, product, output});
}
