#include "devmodereconcile.h"

#include <vector>

#include "complugins/fixedtext.h"
#include "complugins/msdevicecapabilities.h"
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

std::string FieldLines(const DEVMODEW& before, const DEVMODEW& after)
{
    const bool isNameCleared = (before.dmFields & DM_FORMNAME) != 0 && (after.dmFields & DM_FORMNAME) == 0;
    return std::string(isNameCleared ? "dmFields: without DM_FORMNAME, since the number says which paper it is\n"
                                     : "") +
           NumberLine("dmPaperSize", before.dmPaperSize, after.dmPaperSize) +
           NumberLine("dmPaperWidth", before.dmPaperWidth, after.dmPaperWidth) +
           NumberLine("dmPaperLength", before.dmPaperLength, after.dmPaperLength) +
           FieldLine("dmFormName", "\"" + NameOf(before) + "\"", "\"" + NameOf(after) + "\"");
}

std::string PaperLine(const DEVMODEW& fields, bool isMatched)
{
    const auto number = std::to_string(static_cast<WORD>(fields.dmPaperSize));
    if (!isMatched)
        return "No form of the printer is this paper (" + number + ").\n";
    return "The paper is \"" + NameOf(fields) + "\" (" + number + "), " +
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
    return (changes.empty() ? "Nothing changes.\n" : changes) + PaperLine(devmode.Public(), isMatched);
}
