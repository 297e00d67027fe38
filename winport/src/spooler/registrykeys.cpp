#include "spooler/registrykeys.h"

#include <vector>

#include "spooler/handletable.h"
#include "spooler/names.h"

namespace winport::spooler
{

namespace
{

using KeyHandles = HandleTable<RegistryKey, HandleKind::RegistryKey>;

constexpr std::size_t kLongestName = 255;

KeyHandles& Handles()
{
    static KeyHandles handles;
    return handles;
}

struct Root
{
    HKEY key;
    std::int64_t row; // as the schema numbers them
};

std::optional<std::int64_t> RootRow(HKEY key)
{
    const Root roots[] = {
        {HKEY_CLASSES_ROOT, 1},
        {HKEY_CURRENT_USER, 2},
        {HKEY_LOCAL_MACHINE, 3},
        {HKEY_USERS, 4},
    };
    for (const Root& root : roots)
    {
        if (root.key == key)
            return root.row;
    }
    return std::nullopt;
}

// Backslashes in a row count as one, and one at the end as none.
std::vector<std::u16string_view> NamesOf(std::u16string_view path)
{
    Require(path.empty() || path.front() != u'\\', ERROR_BAD_PATHNAME);
    std::vector<std::u16string_view> names;
    while (!path.empty())
    {
        const std::u16string_view name = path.substr(0, path.find(u'\\'));
        Require(name.size() <= kLongestName, ERROR_INVALID_PARAMETER);
        if (!name.empty())
            names.push_back(name);
        path.remove_prefix(name.size() == path.size() ? name.size() : name.size() + 1);
    }
    return names;
}

std::optional<std::int64_t> FindChild(Store& store, std::int64_t parent, std::u16string_view name)
{
    Statement row = store.Prepare("SELECT id FROM registry_keys WHERE parent = ? AND folded = ?");
    row.Bind(parent).Bind(FoldCase(name));
    if (!row.Step())
        return std::nullopt;
    return row.Integer();
}

} // namespace

std::shared_ptr<const RegistryKey> FindKey(HKEY key)
{
    if (const auto root = RootRow(key))
        return std::make_shared<const RegistryKey>(RegistryKey{StoreFolder(), *root, KEY_ALL_ACCESS, true});
    return Handles().Find(reinterpret_cast<std::uintptr_t>(key));
}

std::shared_ptr<const RegistryKey> FindKey(HKEY key, REGSAM needed)
{
    auto found = FindKey(key);
    Require((found->access & needed) == needed, ERROR_ACCESS_DENIED);
    return found;
}

HKEY MakeKeyHandle(RegistryKey key)
{
    return reinterpret_cast<HKEY>(Handles().Add(std::make_shared<const RegistryKey>(std::move(key))));
}

void CloseKeyHandle(HKEY key)
{
    if (!RootRow(key)) // closing a predefined key does nothing
        Handles().Remove(reinterpret_cast<std::uintptr_t>(key));
}

void RequireRow(Store& store, const RegistryKey& key)
{
    Require(store.Prepare("SELECT 1 FROM registry_keys WHERE id = ?").Bind(key.row).Step(), ERROR_KEY_DELETED);
}

std::optional<std::int64_t> FindBelow(Store& store, std::int64_t row, std::u16string_view path)
{
    std::optional<std::int64_t> found = row;
    for (const std::u16string_view name : NamesOf(path))
    {
        if (found)
            found = FindChild(store, *found, name);
    }
    return found;
}

std::int64_t MakeBelow(Store& store, std::int64_t row, std::u16string_view path, bool& created)
{
    created = false;
    for (const std::u16string_view name : NamesOf(path))
    {
        if (const auto child = FindChild(store, row, name))
        {
            row = *child;
            continue;
        }
        store.Prepare("INSERT INTO registry_keys(parent, name, folded) VALUES (?, ?, ?)")
            .Bind(row)
            .Bind(name)
            .Bind(FoldCase(name))
            .Execute();
        row = store.LastRow();
        created = true;
    }
    return row;
}

bool HasChildren(Store& store, std::int64_t row)
{
    return store.Prepare("SELECT 1 FROM registry_keys WHERE parent = ?").Bind(row).Step();
}

} // namespace winport::spooler
