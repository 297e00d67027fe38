// NamespacePool: the namespace names that the nodes of one tree point at.
//
// A node's `ns` is one half of its name (prefix and URI), no declaration: declarations are attributes like any other
// (nodekinds.h). Records live as long as the tree, so no node's name can dangle, whatever is removed around it.
#pragma once

#include <libxml/tree.h>

#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace winport::dom
{

inline constexpr std::string_view kXmlnsUri = "http://www.w3.org/2000/xmlns/";
inline constexpr std::string_view kXmlUri = "http://www.w3.org/XML/1998/namespace";

class NamespacePool
{
public:
    NamespacePool() = default;
    NamespacePool(const NamespacePool&) = delete;
    NamespacePool& operator=(const NamespacePool&) = delete;

    // The record of this name, made on first use; null for a name without prefix and URI.
    xmlNs* Get(std::string_view prefix, std::string_view uri);

private:
    using Key = std::pair<std::string, std::string>;
    using KeyView = std::pair<std::string_view, std::string_view>;

    struct Less
    {
        using is_transparent = void;

        template <class Left, class Right>
        bool operator()(const Left& left, const Right& right) const
        {
            return KeyView(left.first, left.second) < KeyView(right.first, right.second);
        }
    };

    std::map<Key, xmlNs, Less> m_records;
};

} // namespace winport::dom
