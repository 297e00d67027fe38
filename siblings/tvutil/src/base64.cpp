#include <tvutil/tavlenutilities.h>

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

namespace
{

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr int kLineLength = 76;
constexpr std::uint8_t kNoDigit = 0xFF;
constexpr std::uint32_t kLargest = std::numeric_limits<int>::max();

constexpr std::array<std::uint8_t, 128> MakeDigits()
{
    std::array<std::uint8_t, 128> digits{};
    digits.fill(kNoDigit);
    for (std::size_t index = 0; index < kAlphabet.size(); ++index)
        digits[static_cast<unsigned char>(kAlphabet[index])] = static_cast<std::uint8_t>(index);
    return digits;
}

constexpr std::array<std::uint8_t, 128> kDigits = MakeDigits();

std::uint8_t DigitOf(WCHAR character) noexcept
{
    return character < WCHAR(128) ? kDigits[static_cast<std::size_t>(character)] : kNoDigit;
}

bool IsBlank(WCHAR character) noexcept
{
    return character == W(' ') || character == W('\t') || character == W('\r') || character == W('\n');
}

// Nothing when the text would be longer than an int counts.
std::optional<int> EncodedLength(int sourceLength, DWORD flags) noexcept
{
    if (sourceLength < 0)
        return std::nullopt;
    const std::int64_t groups = sourceLength / 3;
    const std::int64_t rest = sourceLength % 3;
    std::int64_t length = groups * 4;
    if (rest != 0)
        length += (flags & TavlenUtilities::kBase64NoPadding) != 0 ? rest + 1 : 4;
    if ((flags & TavlenUtilities::kBase64NoLineBreaks) == 0 && length != 0)
        length += (length - 1) / kLineLength * 2;
    if (length > kLargest)
        return std::nullopt;
    return static_cast<int>(length);
}

// Writes characters and, where they are wanted, the line breaks between them. The room was measured before.
class LineWriter
{
public:
    LineWriter(WCHAR* destination, DWORD flags) noexcept
        : m_next(destination), m_breaks((flags & TavlenUtilities::kBase64NoLineBreaks) == 0)
    {
    }

    void Put(WCHAR character) noexcept
    {
        if (m_breaks && m_onLine == kLineLength)
        {
            *m_next++ = W('\r');
            *m_next++ = W('\n');
            m_onLine = 0;
        }
        *m_next++ = character;
        ++m_onLine;
    }

    // `count` of the group's four characters, the first being the highest six of its 24 bits.
    void PutDigits(std::uint32_t group, int count) noexcept
    {
        for (int shift = 18; count != 0; shift -= 6, --count)
            Put(static_cast<WCHAR>(kAlphabet[(group >> shift) & 0x3F]));
    }

private:
    WCHAR* m_next;
    bool m_breaks;
    int m_onLine = 0;
};

// Collects six bits a digit and hands out whole bytes, as far as there is room.
class BitCollector
{
public:
    BitCollector(BYTE* destination, int room) noexcept : m_destination(destination), m_room(room)
    {
    }

    bool Add(std::uint8_t digit) noexcept
    {
        m_bits = (m_bits << 6) | digit;
        m_count += 6;
        if (m_count < 8)
            return true;
        if (m_written == m_room)
            return false;
        m_count -= 8;
        m_destination[m_written++] = static_cast<BYTE>((m_bits >> m_count) & 0xFF);
        m_bits &= (1u << m_count) - 1;
        return true;
    }

    // Whether the text ended at a byte: no lone digit, and nothing in the bits that are left over.
    [[nodiscard]] bool IsComplete() const noexcept
    {
        return m_count < 6 && m_bits == 0;
    }

    // The '=' that bring the last group to four characters.
    [[nodiscard]] int Padding() const noexcept
    {
        return m_count / 2;
    }

    [[nodiscard]] int Written() const noexcept
    {
        return m_written;
    }

private:
    BYTE* m_destination;
    int m_room;
    int m_written = 0;
    std::uint32_t m_bits = 0;
    int m_count = 0;
};

bool Decode(WStringView text, BitCollector& bytes) noexcept
{
    int padding = 0;
    for (const WCHAR character : text)
    {
        if (IsBlank(character))
            continue;
        if (character == W('='))
        {
            ++padding;
            continue;
        }
        const std::uint8_t digit = DigitOf(character);
        if (padding != 0 || digit == kNoDigit || !bytes.Add(digit))
            return false;
    }
    return bytes.IsComplete() && (padding == 0 || padding == bytes.Padding());
}

} // namespace

// The exporting library emits a constant of its class only where it is defined out of line.
constexpr DWORD TavlenUtilities::kBase64Default;
constexpr DWORD TavlenUtilities::kBase64NoPadding;
constexpr DWORD TavlenUtilities::kBase64NoLineBreaks;

int TavlenUtilities::Base64EncodeGetRequiredLength(int sourceLength, DWORD flags) noexcept
{
    return EncodedLength(sourceLength, flags).value_or(0);
}

bool TavlenUtilities::Base64Encode(const BYTE* source, int sourceLength, WCHAR* destination, int* destinationLength,
                                   DWORD flags) noexcept
{
    if (destinationLength == nullptr)
        return false;
    const std::optional<int> required = EncodedLength(sourceLength, flags);
    const int room = *destinationLength;
    *destinationLength = required.value_or(0);
    if (!required || room < *required)
        return false;
    if (*required == 0)
        return true;
    if (source == nullptr || destination == nullptr)
        return false;

    LineWriter writer(destination, flags);
    int position = 0;
    for (; sourceLength - position >= 3; position += 3)
        writer.PutDigits(static_cast<std::uint32_t>(source[position]) << 16 |
                             static_cast<std::uint32_t>(source[position + 1]) << 8 | source[position + 2],
                         4);
    const int rest = sourceLength - position;
    if (rest == 0)
        return true;
    std::uint32_t group = static_cast<std::uint32_t>(source[position]) << 16;
    if (rest == 2)
        group |= static_cast<std::uint32_t>(source[position + 1]) << 8;
    writer.PutDigits(group, rest + 1);
    if ((flags & kBase64NoPadding) == 0)
        for (int missing = rest; missing < 3; ++missing)
            writer.Put(W('='));
    return true;
}

int TavlenUtilities::Base64DecodeGetRequiredLength(int sourceLength) noexcept
{
    return sourceLength > 0 ? static_cast<int>(static_cast<std::int64_t>(sourceLength) * 3 / 4) : 0;
}

bool TavlenUtilities::Base64Decode(const WCHAR* source, int sourceLength, BYTE* destination,
                                   int* destinationLength) noexcept
{
    if (destinationLength == nullptr)
        return false;
    const int room = destination != nullptr && *destinationLength > 0 ? *destinationLength : 0;
    *destinationLength = 0;
    if (sourceLength < 0 || (source == nullptr && sourceLength != 0))
        return false;
    BitCollector bytes(destination, room);
    if (!Decode(WStringView(source, static_cast<std::size_t>(sourceLength)), bytes))
        return false;
    *destinationLength = bytes.Written();
    return true;
}
