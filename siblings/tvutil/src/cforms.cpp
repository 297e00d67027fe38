#include <windows.h>

#include <winspool.h>

#include <tvutil/cforms.h>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <vector>

#include <tvutil/exceptions.h>
#include <tvutil/printer.h>
#include <tvutil/spoolerbuffer.h>
#include <tvutil/throwexception.h>

namespace
{

constexpr const WCHAR* kSourceFile = W("siblings\\tvutil\\src\\cforms");

using PaperName = std::array<WCHAR, 64>; // terminated only where it is shorter

constexpr int kMostPapers = 0x10000; // their numbers have 16 bits

bool FindSpoolerForm(HANDLE printer, DWORD paperNumber, CFormRecord& form)
{
    SpoolerBuffer answer;
    DWORD count = 0;
    const DWORD error = answer.Fill([printer, &count](LPBYTE room, DWORD size, LPDWORD needed)
                                    { return ErrorOf(EnumFormsW(printer, 1, room, size, needed, &count)); });
    const auto fail = [printer](DWORD reason)
    {
        ThrowException<ExceptionPrinterFailure>({W("CForms::GetFormW"), kSourceFile},
                                                W("EnumFormsW failed for the printer \"%s\": Win32 error %u"),
                                                {Printer(printer).GetPrinterName(), reason});
    };
    if (error != ERROR_SUCCESS)
        fail(error);
    const auto forms = answer.List<FORM_INFO_1W>(count);
    if (paperNumber == 0 || paperNumber > forms.size())
        return false;
    const FORM_INFO_1W& found = forms[paperNumber - 1];
    const std::optional<WStringView> name = answer.Text(found.pName);
    if (!name)
        fail(ERROR_INVALID_DATA);
    form = {paperNumber, found.Flags, found.Size.cx, found.Size.cy, *name};
    return true;
}

// The list that a driver answers a capability with. A driver cannot be told how much room there is: papers that come
// to be between the two questions find some. Empty when it answers none.
template <class Record>
std::vector<Record> AskDriver(const CXString& printerName, const CXString& portName, WORD capability)
{
    constexpr int kSpareRecords = 256;
    const auto ask = [&](Record* records)
    {
        return DeviceCapabilitiesW(printerName.c_str(), portName.c_str(), capability, reinterpret_cast<LPWSTR>(records),
                                   nullptr);
    };
    const int expected = ask(nullptr);
    if (expected <= 0 || expected > kMostPapers)
        return {};
    std::vector<Record> records(static_cast<std::size_t>(expected + kSpareRecords));
    const int answered = ask(records.data());
    if (answered < 0 || static_cast<std::size_t>(answered) > records.size())
        return {};
    records.resize(static_cast<std::size_t>(answered));
    return records;
}

LONG ThousandthsOf(LONG tenths) noexcept
{
    constexpr LONG kMost = std::numeric_limits<LONG>::max() / 100;
    return std::clamp<LONG>(tenths, 0, kMost) * 100;
}

bool FindDriverPaper(HANDLE printer, DWORD paperNumber, CFormRecord& form)
{
    const Printer names(printer);
    const CXString printerName = names.GetPrinterName();
    const CXString portName = names.GetPortName();
    const auto numbers = AskDriver<WORD>(printerName, portName, DC_PAPERS);
    const auto found =
        static_cast<std::size_t>(std::find(numbers.begin(), numbers.end(), paperNumber) - numbers.begin());
    if (found == numbers.size())
        return false;
    const auto sizes = AskDriver<POINTL>(printerName, portName, DC_PAPERSIZE);
    const auto paperNames = AskDriver<PaperName>(printerName, portName, DC_PAPERNAMES);
    if (found >= sizes.size() || found >= paperNames.size())
        return false;
    const WStringView name(paperNames[found].data(), paperNames[found].size());
    form = {paperNumber, FORM_PRINTER, ThousandthsOf(sizes[found].x), ThousandthsOf(sizes[found].y),
            name.substr(0, name.find(WCHAR()))};
    return true;
}

} // namespace

CForms::CForms(HANDLE printer) noexcept : m_printer(printer)
{
}

bool CForms::GetFormW(DWORD paperNumber, CFormRecord& form) const
{
    return FindSpoolerForm(m_printer, paperNumber, form) || FindDriverPaper(m_printer, paperNumber, form);
}
