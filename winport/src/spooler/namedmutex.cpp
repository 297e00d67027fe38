// Named mutexes: each is a lock on a file of its name in the store's folder.
#include <winbase.h>

#include <chrono>
#include <memory>
#include <mutex>
#include <string_view>

#include "core/utf.h"
#include "spooler/filelock.h"
#include "spooler/handletable.h"
#include "spooler/names.h"
#include "spooler/store.h"

namespace winport::spooler
{

namespace
{

using Mutexes = HandleTable<FileLock, HandleKind::Mutex>;

// Never destroyed: handles may be used until the process ends.
Mutexes& Table()
{
    static auto& table = *std::make_unique<Mutexes>().release();
    return table;
}

std::filesystem::path FileOf(std::u16string_view name)
{
    std::u16string file = u"mutex ";
    file += name;
    for (char16_t& character : file)
        if (character == u'\\' || character == u'/' || character == u'\0')
            character = u'_';
    return StoreFolder() / ToUtf8(file);
}

std::uintptr_t ValueOf(HANDLE handle)
{
    return reinterpret_cast<std::uintptr_t>(handle);
}

} // namespace

} // namespace winport::spooler

using namespace winport::spooler;

HANDLE WINAPI CreateMutexExW(LPSECURITY_ATTRIBUTES, LPCWSTR name, DWORD flags, DWORD)
{
    HANDLE made = nullptr;
    Succeeds(
        [&]
        {
            Require(flags == 0 && !ViewOf(name).empty(), ERROR_INVALID_PARAMETER);
            const Store store(StoreFolder()); // makes the folder
            made = reinterpret_cast<HANDLE>(Table().Add(std::make_shared<const FileLock>(FileOf(ViewOf(name)))));
        });
    return made;
}

DWORD WINAPI WaitForSingleObject(HANDLE handle, DWORD milliseconds)
{
    bool isOwned = true;
    const BOOL waited = Succeeds(
        [&]
        {
            const auto mutex = Table().Find(ValueOf(handle));
            if (milliseconds == INFINITE)
                mutex->Lock();
            else
                isOwned = mutex->LockWithin(std::chrono::milliseconds(milliseconds));
        });
    if (!waited)
        return WAIT_FAILED;
    return isOwned ? WAIT_OBJECT_0 : WAIT_TIMEOUT;
}

BOOL WINAPI ReleaseMutex(HANDLE mutex)
{
    return Succeeds([&] { Table().Find(ValueOf(mutex))->Unlock(); });
}

BOOL WINAPI CloseHandle(HANDLE handle)
{
    return Succeeds([&] { Table().Remove(ValueOf(handle)); });
}
