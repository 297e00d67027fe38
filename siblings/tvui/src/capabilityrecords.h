// The records of the platform's capability lists, and how they come into the caller's memory.
#pragma once

#include <windows.h>

#include <tvcore/printermodel.h>
#include <tvutil/cxstring.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <iterator>

// Names have this much room in the platform's lists, and no terminator where they fill it.
using PaperName = std::array<WCHAR, 64>;
using BinName = std::array<WCHAR, 24>;
using MediaTypeName = std::array<WCHAR, 64>;
using FileName = std::array<WCHAR, 64>;

struct ResolutionRecord
{
    LONG x;
    LONG y;
};

template <class Record>
[[nodiscard]] Record NameRecord(WStringView name)
{
    Record record{};
    std::copy_n(name.begin(), std::min(name.size(), record.size()), record.begin());
    return record;
}

// The number of records; a null output asks for it only. The caller's memory is written as bytes: nobody has promised
// that it is aligned.
template <class List, class MakeRecord>
DWORD AnswerList(const List& list, void* output, MakeRecord makeRecord)
{
    auto* to = static_cast<std::byte*>(output);
    for (const auto& item : list)
    {
        if (to == nullptr)
            break;
        const auto record = makeRecord(item);
        std::memcpy(to, &record, sizeof record);
        to += sizeof record;
    }
    return static_cast<DWORD>(std::size(list));
}

[[nodiscard]] inline DWORD AnswerExtent(const PrinterModel::Extent& extent)
{
    return static_cast<DWORD>(extent.length) << 16 | extent.width; // dmPaperLength over dmPaperWidth
}
