// BufferWriter: an answer in a caller's buffer, records in front, what they point to behind them.
//
// An answer is composed twice by the same code: first to measure it, then, if it fits, to write it. Nothing is written
// outside the buffer, and nothing at all unless all of it fits.
#pragma once

#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>

#include <windef.h>

namespace winport::spooler
{

class BufferWriter
{
public:
    // Measures when the buffer is null.
    BufferWriter(LPBYTE buffer, std::size_t recordBytes) noexcept : m_buffer(buffer), m_end(recordBytes)
    {
    }

    // Copies a record to its place among the records in front.
    template <typename Record>
    void Put(std::size_t index, const Record& record) noexcept
    {
        static_assert(std::is_trivially_copyable_v<Record>);
        if (m_buffer != nullptr)
            std::memcpy(m_buffer + index * sizeof(Record), &record, sizeof(Record));
    }

    // Copies a text with its terminator.
    LPWSTR Text(std::u16string_view text) noexcept
    {
        constexpr WCHAR terminator = 0;
        BYTE* const place = Append(text.data(), text.size() * sizeof(WCHAR), alignof(WCHAR));
        Append(&terminator, sizeof(terminator), alignof(WCHAR));
        return reinterpret_cast<LPWSTR>(place);
    }

    // Copies bytes to a place fit for any structure. No bytes give null.
    LPBYTE Bytes(std::span<const BYTE> bytes) noexcept
    {
        return bytes.empty() ? nullptr : Append(bytes.data(), bytes.size(), alignof(std::uint64_t));
    }

    [[nodiscard]] std::size_t Size() const noexcept
    {
        return m_end;
    }

private:
    BYTE* Append(const void* bytes, std::size_t size, std::size_t alignment) noexcept
    {
        m_end = (m_end + alignment - 1) / alignment * alignment;
        BYTE* const place = m_buffer == nullptr ? nullptr : m_buffer + m_end;
        if (place != nullptr && size != 0)
            std::memcpy(place, bytes, size);
        m_end += size;
        return place;
    }

    LPBYTE m_buffer;
    std::size_t m_end;
};

// Where a caller wants an answer, and how large it may be.
struct CallerBuffer
{
    LPBYTE bytes;
    DWORD size;
    LPDWORD needed;
};

// ERROR_INVALID_PARAMETER for a null `needed`, and for a null buffer that is said to have a size.
void RequireUsable(const CallerBuffer& buffer);
// The same for a number of records, which starts as 0.
void RequireUsable(const CallerBuffer& buffer, LPDWORD returned);
// Reports the size; throws `tooSmall` unless the buffer can hold it.
void RequireRoom(const CallerBuffer& buffer, std::size_t size, DWORD tooSmall);

// Writes what `compose(writer)` composes.
template <typename Compose>
void Answer(const CallerBuffer& buffer, std::size_t recordBytes, DWORD tooSmall, Compose&& compose)
{
    BufferWriter measure(nullptr, recordBytes);
    compose(measure);
    RequireRoom(buffer, measure.Size(), tooSmall);
    BufferWriter writer(buffer.bytes, recordBytes);
    compose(writer);
}

// One record for each element, made by `record(element, writer)`. `returned`, if given, becomes their number.
template <typename Record, typename Elements, typename Make>
void AnswerRecords(const CallerBuffer& buffer, LPDWORD returned, DWORD tooSmall, const Elements& elements, Make&& make)
{
    Answer(buffer, elements.size() * sizeof(Record), tooSmall,
           [&](BufferWriter& writer)
           {
               std::size_t index = 0;
               for (const auto& element : elements)
               {
                   const Record record = make(element, writer);
                   writer.Put(index++, record);
               }
           });
    if (returned != nullptr)
        *returned = static_cast<DWORD>(elements.size());
}

} // namespace winport::spooler
