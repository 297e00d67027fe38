// A program of its own for a test: refreshes a printer over and over, or reads its caches as a conversion does. A
// reader fails at the first form list that is not whole. The first failure ends the program, with its line on standard
// error.
//
//     caches_loop refresh|read PRINTER FORMS ROUNDS
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include "complugins/mscacheddevicecapabilities.h"
#include "printerhandle.h"
#include "printerinstall.h"

namespace
{

void Require(bool condition, const std::string& what)
{
    if (!condition)
        throw std::runtime_error(what);
}

void ReadOnce(const std::string& printerName, std::size_t expectedForms)
{
    const PrinterHandle printer = PrinterHandle::Open(printerName, PrinterHandle::Access::Use);
    MSDeviceCapabilities shared;
    MsCachedDeviceCapabilities capabilities(shared, printer.Get(), nullptr);
    std::vector<FormsInfoRecord> forms;
    const HRESULT result = capabilities.GetForms(forms);
    Require(result == S_OK, "the forms: " + std::to_string(result));
    Require(forms.size() == expectedForms, std::to_string(forms.size()) + " forms");
    for (const DeviceCapabilityTable::Row& row : DeviceCapabilityTable::kRows)
    {
        const auto found = shared.DescribeCache(row.cache);
        Require(found && found->state == MSDeviceCapabilities::CacheState::Valid,
                "the cache " + CXString(row.name).ToUtf8());
    }
}

} // namespace

int main(int argc, char** argv)
try
{
    if (argc != 5)
        return 2;
    const std::string printer = argv[2];
    const auto forms = static_cast<std::size_t>(std::atoi(argv[3]));
    for (int round = 0; round < std::atoi(argv[4]); ++round)
        if (std::string(argv[1]) == "read")
            ReadOnce(printer, forms);
        else
            Require(RefreshPrinter(printer), "the device settings stay");
    return 0;
}
catch (const std::exception& failure)
{
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
}
