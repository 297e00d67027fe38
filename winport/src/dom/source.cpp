#include "dom/source.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <string_view>

#include "core/utf.h"

namespace winport::dom
{

namespace
{

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
