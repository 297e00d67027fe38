#include <tvutil/bytebuffer.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <new>

#include <tvutil/bytereader.h>

namespace
{

std::span<const std::byte> AsBytes(const void* data, std::size_t size) noexcept
{
    return data != nullptr ? std::span(static_cast<const std::byte*>(data), size) : std::span<const std::byte>();
}

WideString FromAnsi(std::string_view text)
{
    // The platform counts in int.
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw std::bad_alloc();
    const int length = static_cast<int>(text.size());
    const int needed = text.empty() ? 0 : MultiByteToWideChar(CP_ACP, 0, text.data(), length, nullptr, 0);
    WideString wide(static_cast<std::size_t>(std::max(needed, 0)), WCHAR());
    if (!wide.empty())
        MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide.data(), needed);
    return wide;
}

} // namespace

ByteBuffer::ByteBuffer() noexcept = default;

ByteBuffer::ByteBuffer(std::size_t size) : m_bytes(size)
{
}

ByteBuffer::ByteBuffer(std::span<const std::byte> bytes) : m_bytes(bytes.begin(), bytes.end())
{
}

ByteBuffer::ByteBuffer(const void* data, std::size_t size) : ByteBuffer(AsBytes(data, size))
{
}

ByteBuffer::ByteBuffer(const ByteBuffer& other) = default;
ByteBuffer::ByteBuffer(ByteBuffer&& other) noexcept = default;
ByteBuffer& ByteBuffer::operator=(const ByteBuffer& other) = default;
ByteBuffer& ByteBuffer::operator=(ByteBuffer&& other) noexcept = default;
ByteBuffer::~ByteBuffer() = default;

void ByteBuffer::setWithLpbyte(const BYTE* data, std::size_t size)
{
    *this = ByteBuffer(data, size);
}

DWORD ByteBuffer::getDword() const noexcept
{
    return ByteReader(bytes()).U32();
}

LONG ByteBuffer::getAsLongValue() const noexcept
{
    return ByteReader(bytes()).I32();
}

CXString ByteBuffer::getAsStringValue() const
{
    const WideString text = ByteReader(bytes()).String(m_bytes.size() / sizeof(WCHAR));
    return CXString(WStringView(text).substr(0, text.find(WCHAR())));
}

void ByteBuffer::getAsStringValue(CXString& text) const
{
    text = getAsStringValue();
}

CXString ByteBuffer::getAsStringValueFromAnsiBuffer() const
{
    const std::string_view text(reinterpret_cast<const char*>(m_bytes.data()), m_bytes.size());
    return CXString(FromAnsi(text.substr(0, text.find('\0'))));
}

void ByteBuffer::getAsStringValueFromAnsiBuffer(CXString& text) const
{
    text = getAsStringValueFromAnsiBuffer();
}

std::size_t ByteBuffer::size() const noexcept
{
    return m_bytes.size();
}

bool ByteBuffer::empty() const noexcept
{
    return m_bytes.empty();
}

BYTE* ByteBuffer::data() noexcept
{
    return reinterpret_cast<BYTE*>(m_bytes.data());
}

const BYTE* ByteBuffer::data() const noexcept
{
    return reinterpret_cast<const BYTE*>(m_bytes.data());
}

std::span<const std::byte> ByteBuffer::bytes() const noexcept
{
    return m_bytes;
}

std::span<std::byte> ByteBuffer::bytes() noexcept
{
    return m_bytes;
}

void ByteBuffer::clear() noexcept
{
    m_bytes.clear();
}

void ByteBuffer::reserve(std::size_t capacity)
{
    m_bytes.reserve(capacity);
}

void ByteBuffer::resize(std::size_t size)
{
    m_bytes.resize(size);
}

void ByteBuffer::append(const void* data, std::size_t size)
{
    append(AsBytes(data, size));
}

void ByteBuffer::append(std::span<const std::byte> bytes)
{
    const std::less<const std::byte*> before;
    const bool own = !bytes.empty() && !before(bytes.data(), m_bytes.data()) &&
                     before(bytes.data(), m_bytes.data() + m_bytes.size());
    if (own)
    {
        const std::vector<std::byte> copy(bytes.begin(), bytes.end());
        m_bytes.insert(m_bytes.end(), copy.begin(), copy.end());
    }
    else
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
}

void ByteBuffer::appendAscii(WStringView text)
{
    std::vector<std::byte> ascii(text.size()); // aside: the text may lie in this buffer
    std::transform(text.begin(), text.end(), ascii.begin(),
                   [](WCHAR unit)
                   { return static_cast<std::byte>(unit < WCHAR(0x80) ? static_cast<unsigned char>(unit) : '?'); });
    append(ascii);
}

void ByteBuffer::appendAscii(std::string_view text)
{
    append(text.data(), text.size());
}

void ByteBuffer::appendString(WStringView text)
{
    constexpr WCHAR kTerminator{};
    append(std::as_bytes(std::span(text)));
    append(&kTerminator, sizeof(kTerminator));
}

bool operator==(const ByteBuffer& left, const ByteBuffer& right) noexcept
{
    return left.m_bytes == right.m_bytes;
}
