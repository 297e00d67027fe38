#include <tvutil/attributebytesnamespaces.h>

#include <algorithm>

AttributeBytesNameSpaces::AttributeBytesNameSpaces() noexcept = default;

void AttributeBytesNameSpaces::SetAttributeBytesList(AttributeBytesNameSpacesId id, AttributeBytesRawList list)
{
    const auto found =
        std::find_if(m_lists.begin(), m_lists.end(), [id](const auto& entry) { return entry.first == id; });
    if (found != m_lists.end())
        found->second = std::move(list);
    else
        m_lists.emplace_back(id, std::move(list));
}

const std::vector<std::pair<AttributeBytesNameSpacesId, AttributeBytesRawList>>&
AttributeBytesNameSpaces::GetAttributeBytesLists() const noexcept
{
    return m_lists;
}
