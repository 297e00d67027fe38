// AttributeBytesNameSpaces: raw lists by namespace, on their way into persistent attributes.
#pragma once

#include <utility>
#include <vector>

#include <tvutil/attributebytesids.h>
#include <tvutil/attributebytesrawlist.h>

class TVUTIL_API AttributeBytesNameSpaces
{
public:
    AttributeBytesNameSpaces() noexcept;

    // Replaces the list of a namespace that is there already.
    void SetAttributeBytesList(AttributeBytesNameSpacesId id, AttributeBytesRawList list);

    // In the order in which they were set.
    [[nodiscard]] const std::vector<std::pair<AttributeBytesNameSpacesId, AttributeBytesRawList>>&
    GetAttributeBytesLists() const noexcept;

private:
    std::vector<std::pair<AttributeBytesNameSpacesId, AttributeBytesRawList>> m_lists;
};
