#include "spooler/registrytext.h"

#include <algorithm>

#include "spooler/win32error.h"

namespace winport::spooler
{

void GiveText(std::u16string_view text, LPWSTR target, DWORD& size)
{
    Require(text.size() < size, ERROR_MORE_DATA);
    *std::copy(text.begin(), text.end(), target) = 0;
    size = static_cast<DWORD>(text.size());
}

void GiveNoClass(LPWSTR keyClass, LPDWORD classSize)
{
    if (keyClass != nullptr && classSize != nullptr)
        GiveText({}, keyClass, *classSize);
    else if (classSize != nullptr)
        *classSize = 0;
}

std::size_t LongestText(Store& store, const char* sql, std::int64_t key)
{
    std::size_t longest = 0;
    Statement row = store.Prepare(sql);
    row.Bind(key);
    while (row.Step())
        longest = std::max(longest, row.Text().size());
    return longest;
}

} // namespace winport::spooler
