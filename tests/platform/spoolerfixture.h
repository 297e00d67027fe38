// What the spooler's tests stand on: a driver whose configuration module is the sample, printers that remove
// themselves, and the growing buffer of the spooler's answers.
//
// Over winport the tests have a store of their own in a scratch folder; on Windows it is the machine's spooler.
#pragma once

#include <windows.h>
#include <winspool.h>

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "utilitiesstaticlib/wideliteral.h"

namespace spoolertests
{

// Texts go into structures whose fields are not const.
inline LPWSTR Mutable(const WCHAR* text)
{
    return const_cast<LPWSTR>(text);
}

inline const WCHAR* const kEnvironment = W("Windows x64");
inline const WCHAR* const kDriver = W("Tavlen Platform Driver");
inline const WCHAR* const kPrinter = W("Tavlen Platform Printer");

struct PrinterCloser
{
    void operator()(HANDLE printer) const
    {
        ClosePrinter(printer);
    }
};
// An open printer handle.
using PrinterOwner = std::unique_ptr<std::remove_pointer_t<HANDLE>, PrinterCloser>;

// Null when it does not open.
PrinterOwner Open(const WCHAR* name, ACCESS_MASK access = 0);
// A printer of the sample driver, before it is added.
PRINTER_INFO_2W PrinterInfo(const WCHAR* name = kPrinter);
// Adds it; null with the last error when it is refused.
PrinterOwner Add(PRINTER_INFO_2W info);
bool SetInfo(HANDLE printer, PRINTER_INFO_2W info);

inline DWORD ErrorOf(BOOL done)
{
    return done ? ERROR_SUCCESS : GetLastError();
}

// The whole of an answer, asked for with the size that a first call reports.
template <class Record>
class Answer
{
public:
    // `call(buffer, size, needed, count)`; calls that answer one record leave the count alone.
    template <class Call>
    explicit Answer(Call call)
    {
        DWORD needed = 0;
        call(nullptr, 0, &needed, &m_count);
        m_bytes.resize(needed);
        m_count = 1;
        if (!call(m_bytes.data(), needed, &needed, &m_count) || needed != m_bytes.size())
            m_count = 0;
    }

    // 0 after a failure.
    [[nodiscard]] DWORD Count() const
    {
        return m_count;
    }
    const Record& operator[](std::size_t index) const
    {
        return reinterpret_cast<const Record*>(m_bytes.data())[index];
    }
    const Record* operator->() const
    {
        return &(*this)[0];
    }

private:
    std::vector<BYTE> m_bytes;
    DWORD m_count = 0;
};

template <class Record>
Answer<Record> PrinterAnswer(HANDLE printer, DWORD level)
{
    return Answer<Record>([&](LPBYTE bytes, DWORD size, LPDWORD needed, LPDWORD)
                          { return GetPrinterW(printer, level, bytes, size, needed); });
}

template <class Record>
Answer<Record> DriverAnswer(HANDLE printer, DWORD level)
{
    return Answer<Record>([&](LPBYTE bytes, DWORD size, LPDWORD needed, LPDWORD)
                          { return GetPrinterDriverW(printer, nullptr, level, bytes, size, needed); });
}

// The names of all printers of the store, sorted.
std::vector<WideString> PrinterNames();

// Empty for a file that is not there.
std::string Content(const std::filesystem::path& file);

// A folder that goes with the test; over winport the store is its folder "store".
class StoreTest : public testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    [[nodiscard]] const std::filesystem::path& Scratch() const noexcept
    {
        return m_scratch;
    }
    [[nodiscard]] std::filesystem::path Store() const
    {
        return m_scratch / "store";
    }
    static void UseStore(const std::filesystem::path& folder);

private:
    std::filesystem::path m_scratch;
};

class SpoolerTest : public StoreTest
{
protected:
    void SetUp() override;
    void TearDown() override;

    // Writes a source file of a driver and gives its name to the spooler.
    WideString SourceFile(const char* name, const char* content) const;
    // A driver with the sample module as its configuration module.
    BOOL InstallDriver(const WCHAR* name = kDriver, const WCHAR* dataFile = nullptr) const;
    // Removed, with the driver, at the end of the test.
    PrinterOwner InstallPrinter(const WCHAR* name = kPrinter);

private:
    std::vector<WideString> m_printers;
};

} // namespace spoolertests
