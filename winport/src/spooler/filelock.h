// FileLock: an advisory lock on a file, between processes and between the locks of one process. The system opens it
// when its process ends.
#pragma once

#include <chrono>
#include <filesystem>

namespace winport::spooler
{

class FileLock
{
public:
    // Makes the file, not its folder, when it is missing; the lock is open. Throws Win32Error.
    explicit FileLock(const std::filesystem::path& file);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    void Lock() const; // waits; throws Win32Error
    // False when somebody else had it all the time.
    [[nodiscard]] bool LockWithin(std::chrono::milliseconds limit) const;
    void Unlock() const noexcept;

private:
    int m_file;
};

} // namespace winport::spooler
