#include <windows.h>

#include <tvutil/printer.h>

#include <cstddef>
#include <optional>

#include <tvutil/devmodebounds.h>
#include <tvutil/exceptions.h>
#include <tvutil/spoolerbuffer.h>
#include <tvutil/throwexception.h>

#include "devmodefirstlevelcache.h"

namespace
{

constexpr const WCHAR* kSourceFile = W("siblings\\tvutil\\src\\printer");
constexpr const WCHAR* kPrinterDataKey = W("PrinterDriverData");

bool IsUsable(HANDLE printer) noexcept
{
    return printer != nullptr && printer != INVALID_HANDLE_VALUE;
}

DWORD AskPrinter(HANDLE printer, DWORD level, SpoolerBuffer& answer)
{
    return answer.Fill([printer, level](LPBYTE room, DWORD size, LPDWORD needed)
                       { return ErrorOf(GetPrinterW(printer, level, room, size, needed)); });
}

// For messages: a printer that does not even tell its name must not hide the failure that is being reported.
CXString NameForMessages(HANDLE printer)
{
    SpoolerBuffer answer;
    if (AskPrinter(printer, 4, answer) != ERROR_SUCCESS || answer.Get<PRINTER_INFO_4W>() == nullptr)
        return W("(unknown)");
    return answer.Text(answer.Get<PRINTER_INFO_4W>()->pPrinterName).value_or(W("(unknown)"));
}

[[noreturn]] void ThrowFailure(ThrowSite site, WStringView operation, HANDLE printer, DWORD error)
{
    ThrowException<ExceptionPrinterFailure>(site, W("%s failed for the printer \"%s\": Win32 error %u"),
                                            {operation, NameForMessages(printer), error});
}

void CheckBound(ThrowSite site, HANDLE printer)
{
    if (!IsUsable(printer))
        ThrowException<ExceptionPrinterFailure>(site, W("no printer is bound"));
}

// One text of a PRINTER_INFO structure. The level is the cheapest that holds it: some levels ask remote servers.
template <class Info>
CXString TextOf(HANDLE printer, DWORD level, LPWSTR Info::*text, ThrowSite site)
{
    CheckBound(site, printer);
    SpoolerBuffer answer;
    if (const DWORD error = AskPrinter(printer, level, answer); error != ERROR_SUCCESS)
        ThrowFailure(site, W("GetPrinterW"), printer, error);
    const Info* const info = answer.Get<Info>();
    const std::optional<WStringView> found = info != nullptr ? answer.Text(info->*text) : std::nullopt;
    if (!found)
        ThrowFailure(site, W("GetPrinterW"), printer, ERROR_INVALID_DATA);
    return *found;
}

// What the driver makes; empty, with the last error, when it makes nothing or something that is no devmode.
ByteBuffer AskDriverForDevmode(HANDLE printer, const CXString& name, const DEVMODEW* input)
{
    WideString mutableName(name.View()); // the platform's parameter is not const
    SetLastError(ERROR_SUCCESS);
    const LONG size = DocumentPropertiesW(nullptr, printer, mutableName.data(), nullptr, nullptr, 0);
    if (size < 0)
        return ByteBuffer();
    constexpr LONG kLargest = 2 * 0xFFFF; // both parts of a devmode have 16-bit sizes
    SetLastError(ERROR_INVALID_DATA);
    if (size < LONG{sizeof(DEVMODEW)} || size > kLargest)
        return ByteBuffer();

    // Zeros: some spoolers tell the driver that the room is as large as the dmSize that lies there, and nothing for 0.
    ByteBuffer devmode(static_cast<std::size_t>(size));
    auto* const fields = reinterpret_cast<DEVMODEW*>(devmode.data()); // from the heap: aligned
    SetLastError(ERROR_SUCCESS);
    const DWORD mode = DM_OUT_BUFFER | (input != nullptr ? DWORD{DM_IN_BUFFER} : DWORD{0});
    auto* const mutableInput = const_cast<DEVMODEW*>(input); // as the name
    if (DocumentPropertiesW(nullptr, printer, mutableName.data(), fields, mutableInput, mode) != IDOK)
        return ByteBuffer();
    SetLastError(ERROR_INVALID_DATA);
    if (!DevmodeFitsIn(fields, devmode.size()))
        return ByteBuffer();
    devmode.resize(std::size_t{fields->dmSize} + fields->dmDriverExtra);
    return devmode;
}

} // namespace

Printer::Printer() noexcept = default;

Printer::Printer(HANDLE printer) noexcept : m_printer(printer)
{
}

Printer::Printer(const CXString& name)
{
    WideString mutableName(name.View()); // the platform's parameter is not const
    if (OpenPrinterW(mutableName.data(), &m_printer, nullptr))
    {
        m_owned = true;
        return;
    }
    const DWORD error = ErrorOf(FALSE);
    m_printer = nullptr;
    ThrowException<ExceptionPrinterFailure>({W("Printer::Printer"), kSourceFile},
                                            W("OpenPrinterW failed for the printer \"%s\": Win32 error %u"),
                                            {name, error});
}

Printer::~Printer()
{
    SetPrinterHandle(nullptr, false);
}

void Printer::SetPrinterHandle(HANDLE printer, bool own) noexcept
{
    if (m_owned && m_printer != printer && IsUsable(m_printer))
        ClosePrinter(m_printer);
    m_printer = printer;
    m_owned = own;
}

HANDLE Printer::GetPrinterHandle() const noexcept
{
    return m_printer;
}

CXString Printer::GetPrinterName() const
{
    return TextOf(m_printer, 4, &PRINTER_INFO_4W::pPrinterName, {W("Printer::GetPrinterName"), kSourceFile});
}

CXString Printer::GetPortName() const
{
    return TextOf(m_printer, 5, &PRINTER_INFO_5W::pPortName, {W("Printer::GetPortName"), kSourceFile});
}

CXString Printer::GetDriverName() const
{
    return TextOf(m_printer, 2, &PRINTER_INFO_2W::pDriverName, {W("Printer::GetDriverName"), kSourceFile});
}

bool Printer::GetPrinterDataW(const CXString& valueName, DWORD& type, ByteBuffer& data) const
{
    const ThrowSite site{W("Printer::GetPrinterDataW"), kSourceFile};
    CheckBound(site, m_printer);
    SpoolerBuffer answer;
    DWORD answeredType = REG_NONE;
    const DWORD error = answer.Fill(
        [&](LPBYTE room, DWORD size, LPDWORD needed) {
            return GetPrinterDataExW(m_printer, kPrinterDataKey, valueName.c_str(), &answeredType, room, size, needed);
        });
    if (error == ERROR_FILE_NOT_FOUND)
        return false;
    if (error != ERROR_SUCCESS)
        ThrowFailure(site, CXString::Format(W("reading the printer data \"%s\""), {valueName}), m_printer, error);
    data = ByteBuffer(answer.Bytes());
    type = answeredType;
    return true;
}

void Printer::SetPrinterDataW(const CXString& valueName, DWORD type, const void* data, DWORD size) const
{
    const ThrowSite site{W("Printer::SetPrinterDataW"), kSourceFile};
    CheckBound(site, m_printer);
    ByteBuffer copy(data, size); // the platform's parameter is not const
    const DWORD error = SetPrinterDataExW(m_printer, kPrinterDataKey, valueName.c_str(), type, copy.data(),
                                          static_cast<DWORD>(copy.size()));
    if (error != ERROR_SUCCESS)
        ThrowFailure(site, CXString::Format(W("writing the printer data \"%s\""), {valueName}), m_printer, error);
}

ByteBuffer Printer::GetDriverDevmode(const DEVMODEW* input) const
{
    ByteBuffer devmode = AskDriverForDevmode(m_printer, GetPrinterName(), input);
    if (devmode.empty())
        ThrowFailure({W("Printer::GetDriverDevmode"), kSourceFile}, W("DocumentPropertiesW"), m_printer,
                     ErrorOf(FALSE));
    return devmode;
}

ByteBuffer Printer::GetUserDefaultDevmode() const
{
    const CXString name = GetPrinterName();
    DevmodeFirstLevelCache& cache = DevmodeFirstLevelCache::Instance();
    if (std::optional<ByteBuffer> known = cache.Find(name))
        return *std::move(known);
    const std::uint64_t stage = cache.Stage();
    ByteBuffer devmode = GetDriverDevmode(nullptr);
    cache.Add(name, devmode, stage);
    return devmode;
}

void Printer::ClearDevmode1stLevelCache() const
{
    DevmodeFirstLevelCache::Instance().Remove(GetPrinterName());
}
