#include "dependentfiles.h"

#include <tvutil/printdriver.h>

std::vector<CXString> DependentFileNames(const Printer& printer)
{
    std::vector<CXString> files = PrintDriver().GetDriverFiles(printer.GetPrinterHandle(), 3, CXString());
    if (!files.empty())
        files.erase(files.begin()); // the driver file itself, which the spooler names first
    for (CXString& file : files)
        file = file.Mid(file.View().find_last_of(W("/\\")) + 1); // npos + 1 is 0
    return files;
}
