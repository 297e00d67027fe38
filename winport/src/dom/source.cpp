#include "dom/source.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <bit>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "core/utf.h"
#include "dom/serializer.h"
#include "utilitiesstaticlib/documentlimits.h"

namespace winport::dom
{

namespace
{

using namespace documentlimits;

class File
{
public:
    explicit File(int descriptor) : m_descriptor(descriptor)
    {
    }

    File(const File&) = delete;
    File& operator=(const File&) = delete;

    ~File()
    {
        if (IsOpen())
            ::close(m_descriptor);
    }

    bool IsOpen() const
    {
        return m_descriptor >= 0;
    }

    int Get() const
    {
        return m_descriptor;
    }

private:
    int m_descriptor;
};

SourceText Refused(std::string reason, HRESULT code = E_FAIL)
{
    SourceText source;
    source.error.emplace();
    source.error->code = code;
    source.error->reason = std::move(reason);
    return source;
}

// False when the file has more bytes than any document may have.
bool ReadAll(const File& file, std::string& bytes, bool& isTooLarge)
{
    char buffer[64 * 1024];
    for (;;)
    {
        const ssize_t count = ::read(file.Get(), buffer, sizeof buffer);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return count == 0;
        bytes.append(buffer, static_cast<std::size_t>(count));
        isTooLarge = bytes.size() > kMaximumFileBytes;
        if (isTooLarge)
            return true;
    }
}

std::u16string Utf16Units(std::string_view bytes, bool isBigEndian)
{
    std::u16string units(bytes.size() / 2, u'\0');
    for (std::size_t at = 0; at < units.size(); ++at)
    {
        const auto first = static_cast<unsigned char>(bytes[2 * at]);
        const auto second = static_cast<unsigned char>(bytes[2 * at + 1]);
        units[at] = static_cast<char16_t>(isBigEndian ? first << 8 | second : second << 8 | first);
    }
    return units;
}

bool IsUtf8Name(std::string_view encoding)
{
    std::string name(encoding);
    for (char& letter : name)
        letter = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    return name.empty() || name == "utf-8" || name == "utf8" || name == "us-ascii";
}

SourceText TextOfUtf16(std::string_view bytes, bool isBigEndian)
{
    SourceText source;
    if (bytes.size() % 2 != 0)
        return Refused("The file ends within a UTF-16 character.");
    if (!ToUtf8Strict(Utf16Units(bytes, isBigEndian), source.utf8))
        return Refused(kLoneSurrogate);
    return source;
}

SourceText TextOfUtf8(std::string_view bytes)
{
    if (!IsWellFormedUtf8(bytes))
        return Refused("The file is not well-formed UTF-8.");
    if (bytes.starts_with("<?xml"))
    {
        const std::string_view encoding = DeclaredEncoding(bytes.substr(0, bytes.find("?>")));
        if (!IsUtf8Name(encoding))
            return Refused("The encoding '" + std::string(encoding.substr(0, 40)) +
                           "' is not supported; UTF-8 is, and UTF-16 with a byte-order mark.");
    }
    SourceText source;
    source.utf8 = bytes;
    return source;
}

SourceText TextOf(std::string_view bytes)
{
    if (bytes.starts_with("\xFF\xFE"))
        return TextOfUtf16(bytes.substr(2), false);
    if (bytes.starts_with("\xFE\xFF"))
        return TextOfUtf16(bytes.substr(2), true);
    return TextOfUtf8(bytes.starts_with("\xEF\xBB\xBF") ? bytes.substr(3) : bytes);
}

std::string Utf16Bytes(const std::string& utf8)
{
    std::string bytes = "\xFF\xFE";
    for (const char16_t unit : ToUtf16(utf8))
    {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

bool WriteAll(const File& file, std::string_view bytes)
{
    while (!bytes.empty())
    {
        const ssize_t count = ::write(file.Get(), bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            return false;
        bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return ::fsync(file.Get()) == 0;
}

// Beside the target, so that renaming stays within one file system.
std::string TemporaryName(const std::string& path)
{
    static std::atomic<unsigned> counter = 0;
    return path + "." + std::to_string(::getpid()) + "." + std::to_string(++counter) + ".tmp";
}

} // namespace

SourceText ReadDocumentFile(const std::string& path)
{
    const HRESULT notFound = HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
    const File file(path.find('\0') == std::string::npos ? ::open(path.c_str(), O_RDONLY | O_CLOEXEC) : -1);
    if (!file.IsOpen())
        return Refused("The file cannot be opened.", notFound);
    std::string bytes;
    bool isTooLarge = false;
    if (!ReadAll(file, bytes, isTooLarge))
        return Refused("The file cannot be read.", notFound);
    return isTooLarge ? Refused(kTooLarge) : TextOf(bytes);
}

HRESULT WriteDocumentFile(const std::string& path, const std::string& utf8, bool asUtf16)
{
    if (path.empty() || path.find('\0') != std::string::npos)
        return E_FAIL;
    const std::string temporary = TemporaryName(path);
    bool isWritten = false;
    {
        const File file(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
        if (!file.IsOpen())
            return E_FAIL;
        isWritten = WriteAll(file, asUtf16 ? Utf16Bytes(utf8) : utf8);
    }
    if (isWritten && ::rename(temporary.c_str(), path.c_str()) == 0)
        return S_OK;
    ::unlink(temporary.c_str());
    return E_FAIL;
}

} // namespace winport::dom
