#include "devmodereconcile.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "complugins/fixedtext.h"
#include "complugins/msdevicecapabilities.h"
#include "complugins/papermatching.h"
#include "complugins/reconciledevmodepapersize.h"
#include "errornames.h"
#include "failure.h"
#include "formsreport.h"

namespace
{

std::string NameOf(const DEVMODEW& fields)
{
    return OneLine(CXString(GetFixedText(fields.dmFormName)).ToUtf8());
}

std::string FieldLine(const char* field, const std::string& before, const std::string& after)
{
    return before == after ? std::string() : std::string(field) + ": " + before + " becomes " + after + "\n";
}

std::string NumberLine(const char* field, short before, short after)
{
    return FieldLine(field, std::to_string(static_cast<WORD>(before)), std::to_string(static_cast<WORD>(after)));
}

constexpr std::pair<DWORD, const char*> kPaperFlags[] = {
    {DM_PAPERSIZE, "DM_PAPERSIZE"},
    {DM_PAPERWIDTH, "DM_PAPERWIDTH"},
    {DM_PAPERLENGTH, "DM_PAPERLENGTH"},
    {DM_FORMNAME, "DM_FORMNAME"},
};

// The flags that came and went.
std::string FlagsLine(DWORD before, DWORD after)
{
    std::string flags;
    for (const auto& [flag, name] : kPaperFlags)
        if (((before ^ after) & flag) != 0)
            flags += (flags.empty() ? "" : ", ") + std::string((after & flag) != 0 ? "with " : "without ") + name;
    if (flags.empty())
        return flags;
    const bool goesByNumber = (after & DM_PAPERSIZE) != 0;
    return "dmFields: " + flags + ", since the " + (goesByNumber ? "number" : "size") + " says which paper it is\n";
}

std::string FieldLines(const DEVMODEW& before, const DEVMODEW& after)
{
    return FlagsLine(before.dmFields, after.dmFields) +
           NumberLine("dmPaperSize", before.dmPaperSize, after.dmPaperSize) +
           NumberLine("dmPaperWidth", before.dmPaperWidth, after.dmPaperWidth) +
           NumberLine("dmPaperLength", before.dmPaperLength, after.dmPaperLength) +
           FieldLine("dmFormName", "\"" + NameOf(before) + "\"", "\"" + NameOf(after) + "\"");
}

// Of a custom paper the devmode has the country's usual name, not its own.
std::string PaperName(const DEVMODEW& fields, const std::vector<FormsInfoRecord>& forms)
{
    if (!IsCustomPaper(fields))
        return "\"" + NameOf(fields) + "\"";
    const auto form = std::ranges::find_if(forms,
                                           [&fields](const FormsInfoRecord& candidate)
                                           {
                                               return candidate.paperId == static_cast<WORD>(fields.dmPaperSize) &&
                                                      candidate.width == static_cast<WORD>(fields.dmPaperWidth) &&
                                                      candidate.length == static_cast<WORD>(fields.dmPaperLength);
                                           });
    return form != forms.end() ? "\"" + OneLine(CXString(form->GetName()).ToUtf8()) + "\"" : "a custom one";
}

std::string PaperLine(const DEVMODEW& fields, const std::vector<FormsInfoRecord>& forms, bool isMatched)
{
    const auto number = std::to_string(static_cast<WORD>(fields.dmPaperSize));
    if (!isMatched)
        return "No form of the printer is this paper (" + number + ").\n";
    return "The paper is " + PaperName(fields, forms) + " (" + number + "), " +
           MillimetersText(static_cast<WORD>(fields.dmPaperWidth)) + " x " +
           MillimetersText(static_cast<WORD>(fields.dmPaperLength)) + " mm.\n";
}

} // namespace

std::string ReconcilePaper(const PrinterHandle& printer, const std::string& printerName, Devmode& devmode)
{
    MSDeviceCapabilities capabilities;
    capabilities.Initialize(printer.Get());
    std::vector<FormsInfoRecord> forms;
    const HRESULT listed =
        capabilities.GetPaperDatabaseCachedDeviceCapabilitiesVector(printer.Get(), devmode.Raw(), forms);
    if (FAILED(listed))
        FailWithHresult("reading the printer's form list", printerName, listed,
                        "its cache is missing or stale; \"tvpt printer refresh\" renews it");
    const DEVMODEW before = devmode.Public();
    const bool isMatched = ReconcileDevmodePaperSize(printer.Get(), devmode.Raw(), capabilities);
    const std::string changes = FieldLines(before, devmode.Public());
    return (changes.empty() ? "Nothing changes.\n" : changes) + PaperLine(devmode.Public(), forms, isMatched);
}
