// What the spooler's and the registry's tests stand on: a driver whose configuration module is the sample, printers
// that remove themselves, and the growing buffer of the spooler's answers.
//
// Over winport the tests have a store of their own in a scratch folder; on Windows it is the machine's spooler.
#pragma once

#include <windows.h>
#include <winspool.h>

#include <filesystem>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "utilitiesstaticlib/wideliteral.h"

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

// The records of an answer, asked for with the size that a first call reports; none after a failure.
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

    const Record* begin() const
    {
        return reinterpret_cast<const Record*>(m_bytes.data());
    }
    const Record* end() const
    {
        return begin() + m_count;
    }
    const Record* operator->() const
    {
        return begin();
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

// Of all printers of the store, sorted.
std::vector<WideString> PrinterNames();

// Empty for a file that is not there.
std::string Content(const std::filesystem::path& file);

// Has a scratch folder that goes with the test, in which the store lies, and the sample driver.
class SpoolerTest : public testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    static std::filesystem::path Scratch();
    static std::filesystem::path Store();
    static void UseStore(const std::filesystem::path& folder);

    // Writes a source file of a driver and gives its name to the spooler.
    static WideString SourceFile(const char* name, const char* content);
    // A driver with the sample module as its configuration module.
    static BOOL InstallDriver(const WCHAR* name = kDriver, const WCHAR* dataFile = nullptr);
    // Removed, with the driver, at the end of the test.
    PrinterOwner InstallPrinter(const WCHAR* name = kPrinter);

private:
    std::vector<WideString> m_printers;
};
