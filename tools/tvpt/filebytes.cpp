#include "filebytes.h"

#include <cerrno>
#include <fstream>
#include <memory>
#include <system_error>

#include "failure.h"
#include "platform.h"

namespace
{

namespace fs = std::filesystem;

constexpr char kReading[] = "reading";
constexpr char kWriting[] = "writing";

std::string ReadAll(std::istream& stream, const std::string& name, std::size_t limit)
{
    std::string bytes;
    char block[16384];
    while (stream.read(block, sizeof block), stream.gcount() > 0)
    {
        bytes.append(block, static_cast<std::size_t>(stream.gcount()));
        if (bytes.size() > limit)
            Fail(kReading, name, "larger than " + std::to_string(limit) + " bytes");
    }
    if (stream.bad())
        Fail(kReading, name, "the file cannot be read");
    return bytes;
}

// Removes what was begun, unless it became the output.
class TemporaryFile
{
public:
    explicit TemporaryFile(fs::path path) : m_path(std::move(path))
    {
    }

    ~TemporaryFile()
    {
        std::error_code ignored;
        if (!m_path.empty())
            fs::remove(m_path, ignored);
    }

    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    void BecomesOutput() noexcept
    {
        m_path.clear();
    }

private:
    fs::path m_path;
};

struct FileCloser
{
    void operator()(std::FILE* file) const noexcept
    {
        std::fclose(file);
    }
};

bool WriteAndClose(std::FILE* file, std::string_view bytes)
{
    std::unique_ptr<std::FILE, FileCloser> owner(file);
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() && std::fflush(file) == 0;
    return std::fclose(owner.release()) == 0 && written;
}

std::string LastReason()
{
    return std::generic_category().message(errno);
}

void WriteByRename(const fs::path& target, const std::string& name, std::string_view bytes)
{
    fs::path temporary = target;
    temporary += ".tvpt" + std::to_string(GetCurrentProcessId()) + ".tmp";

    errno = 0;
    std::FILE* const file = platform::CreateNewFile(temporary);
    if (file == nullptr)
        Fail(kWriting, name, LastReason());
    TemporaryFile begun(temporary);
    if (!WriteAndClose(file, bytes))
        Fail(kWriting, name, LastReason());

    std::error_code error;
    if (const fs::file_status before = fs::status(target, error); fs::exists(before))
        fs::permissions(temporary, before.permissions(), error);
    fs::rename(temporary, target, error);
    if (error)
        Fail(kWriting, name, error.message());
    begun.BecomesOutput();
}

void WriteToStream(std::ostream& stream, const std::string& name, std::string_view bytes)
{
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.flush();
    if (!stream)
        Fail(kWriting, name, "the output cannot be written");
}

// A link stays a link: its target is what is replaced, or made where the link points at nothing yet.
fs::path TargetOf(const fs::path& path)
{
    std::error_code error;
    if (fs::exists(path, error))
        return fs::canonical(path, error);
    return fs::is_symlink(path, error) ? path.parent_path() / fs::read_symlink(path, error) : path;
}

} // namespace

std::filesystem::path PathFromUtf8(std::string_view name)
{
    return fs::path(std::u8string(name.begin(), name.end()));
}

std::string Utf8FromPath(const std::filesystem::path& path)
{
    const std::u8string name = path.u8string();
    return std::string(name.begin(), name.end());
}

std::string ReadFileBytes(const std::filesystem::path& path, std::size_t limit)
{
    const std::string name = Utf8FromPath(path);
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::exists(status))
        FailWithWin32Error(kReading, name, ERROR_FILE_NOT_FOUND);
    if (fs::is_directory(status))
        Fail(kReading, name, "is a folder");
    std::ifstream stream(path, std::ios::binary);
    if (!stream)
        Fail(kReading, name, "the file cannot be opened");
    return ReadAll(stream, name, limit);
}

std::string ReadInput(const std::string& name, std::size_t limit, const StandardStreams& streams)
{
    if (name == kStandardStream)
        return ReadAll(streams.in, "standard input", limit);
    return ReadFileBytes(PathFromUtf8(name), limit);
}

void WriteOutput(const std::string& name, std::string_view bytes, const StandardStreams& streams)
{
    if (name.empty() || name == kStandardStream)
        return WriteToStream(streams.out, "standard output", bytes);

    std::error_code error;
    const fs::path target = TargetOf(PathFromUtf8(name));
    const fs::file_status status = fs::status(target, error);
    if (fs::is_directory(status))
        Fail(kWriting, name, "is a folder");
    if (!fs::exists(status) || fs::is_regular_file(status))
        return WriteByRename(target, name, bytes);

    std::ofstream device(target, std::ios::binary); // a device or pipe can only be written to
    WriteToStream(device, name, bytes);
}

void WriteNote(std::string_view note, const StandardStreams& streams)
{
    streams.errors << "tvpt: note: " << OneLine(note) << '\n';
}
