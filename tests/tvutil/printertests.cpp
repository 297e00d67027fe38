// Linux only: Wine keeps no access rights.
#include <windows.h>

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include <tvutil/exceptions.h>
#include <tvutil/printdriver.h>
#include <tvutil/printer.h>

#include "tests/common/testprinter.h"

namespace
{

// Its handle may change the printer.
class InstalledPrinter : public testing::Test
{
protected:
    const TestPrinter m_test{{std::nullopt, {}, {"tvptpc_B.dll", "tvwftu_B.dll"}}};
    HANDLE const m_handle = m_test.Handle();
    const CXString m_name = TestPrinter::Name();
};

// The message of the failure that a call throws; empty when it throws none.
template <class Failure, class Call>
std::string FailureOf(Call call)
{
    try
    {
        call();
    }
    catch (const Failure& failure)
    {
        return failure.what();
    }
    return {};
}

bool Mentions(const std::string& message, std::initializer_list<const char*> parts)
{
    return std::all_of(parts.begin(), parts.end(),
                       [&](const char* part) { return message.find(part) != std::string::npos; });
}

TEST_F(InstalledPrinter, FailuresNameTheOperationThePrinterAndTheError)
{
    const Printer reader{m_name}; // its handle may not change the printer
    const std::string refused = FailureOf<ExceptionPrinterFailure>(
        [&reader]() { reader.SetPrinterDataW(W("XWorkflowDLL"), REG_DWORD, "1234", 4); });
    EXPECT_TRUE(
        Mentions(refused, {"writing the printer data \"XWorkflowDLL\"", "Tavlen t\xC3\xA9st printer", "error 5"}))
        << refused;
}

TEST_F(InstalledPrinter, OwnedHandlesAreClosedOnceAndOthersNever)
{
    const auto isOpen = [](HANDLE handle)
    {
        DWORD needed = 0;
        return GetPrinterW(handle, 4, nullptr, 0, &needed) || GetLastError() == ERROR_INSUFFICIENT_BUFFER;
    };
    HANDLE owned = nullptr;
    ASSERT_TRUE(OpenPrinterW(WideString(m_name.View()).data(), &owned, nullptr));
    {
        Printer printer;
        printer.SetPrinterHandle(owned, true);
        printer.SetPrinterHandle(owned, true); // the same again
        EXPECT_TRUE(isOpen(owned));
        printer.SetPrinterHandle(m_handle, false);
        EXPECT_FALSE(isOpen(owned));
    }
    EXPECT_TRUE(isOpen(m_handle));
}

TEST_F(InstalledPrinter, AnswersTheCapabilityWordMasked)
{
    const auto capability = [&](ULONGLONG mask)
    {
        return PrintDriver().GetDriverCapability(m_handle, mask);
    };
    const auto failure = [&]
    {
        return FailureOf<ExceptionPrintDriverFailure>([&] { capability(1); });
    };
    EXPECT_TRUE(Mentions(failure(), {"set-up has not run"}));
    EXPECT_THROW(static_cast<void>(PrintDriver().GetDriverCapability(nullptr, 1)), ExceptionPrintDriverFailure);

    const Printer printer(m_handle);
    constexpr BYTE kWord[] = {0x02, 0x0E, 0, 0, 0, 0, 0, 0x80, 0xFF};
    printer.SetPrinterDataW(PrintDriver::kDriverCapabilityValueName, REG_BINARY, kWord, 8);
    EXPECT_EQ(capability(1984), 0x600u);
    EXPECT_EQ(capability(~0ull), 0x8000000000000E02u);
    for (const auto& [type, size] : {std::pair<DWORD, DWORD>{REG_BINARY, 7}, {REG_BINARY, 9}, {REG_QWORD, 8}})
    {
        printer.SetPrinterDataW(PrintDriver::kDriverCapabilityValueName, type, kWord, size);
        EXPECT_TRUE(Mentions(failure(), {"of another kind"})) << type << ", " << size << " bytes";
    }
}

TEST_F(InstalledPrinter, ListsEveryFileOfItsDriver)
{
    const char* const names[] = {"tvtestdriver", "tvtestdata",   "tvtestconfig",
                                 "tvtesthelp",   "tvptpc_B.dll", "tvwftu_B.dll"};
    for (const DWORD level : {3u, 6u, 9u})
    {
        const std::vector<CXString> files = PrintDriver().GetDriverFiles(m_handle, level, CXString());
        ASSERT_EQ(files.size(), std::size(names)) << "level " << level;
        for (std::size_t index = 0; index < files.size(); ++index)
            EXPECT_TRUE(Mentions(files[index].ToUtf8(), {names[index]})) << files[index].ToUtf8();
    }
    EXPECT_EQ(FailureOf<ExceptionPrintDriverFailure>(
                  [&] { static_cast<void>(PrintDriver().GetDriverFiles(m_handle, 2, CXString())); }),
              "level 2 does not name a driver's files");
}

} // namespace
