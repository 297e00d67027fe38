// Registry keys: handles, and the rows they stand for.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include <winreg.h>

#include "spooler/store.h"

namespace winport::spooler
{

// Where an enumeration of sub-keys stands: they are asked for one by one, and counted each time it would take for ever.
struct SubKeyCursor
{
    std::mutex mutex;
    DWORD next = 0;        // the index behind the one that was given last
    std::u16string folded; // and that one's name
};

struct RegistryKey
{
    std::filesystem::path folder; // of the store in which it was opened
    std::int64_t row;
    REGSAM access;
    bool isRoot; // a predefined key
    std::shared_ptr<SubKeyCursor> cursor = std::make_shared<SubKeyCursor>();
};

// Throws ERROR_INVALID_HANDLE. A predefined key is in the store of the moment and may do everything.
std::shared_ptr<const RegistryKey> FindKey(HKEY key);
// ... ERROR_ACCESS_DENIED when the key was opened without that access.
std::shared_ptr<const RegistryKey> FindKey(HKEY key, REGSAM needed);

HKEY MakeKeyHandle(RegistryKey key);
void CloseKeyHandle(HKEY key);

// Throws ERROR_KEY_DELETED.
void RequireRow(Store& store, const RegistryKey& key);

// The key at a path below; an empty path is the key itself. Nothing when there is none. ERROR_BAD_PATHNAME for a path
// that begins with a backslash, ERROR_INVALID_PARAMETER for a name of more than 255 characters.
std::optional<std::int64_t> FindBelow(Store& store, std::int64_t row, std::u16string_view path);
// The same, with the missing keys made. `created` tells whether the last one was.
std::int64_t MakeBelow(Store& store, std::int64_t row, std::u16string_view path, bool& created);
bool HasChildren(Store& store, std::int64_t row);

} // namespace winport::spooler
