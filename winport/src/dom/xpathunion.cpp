#include "dom/xpathunion.h"

#include <algorithm>
#include <unordered_set>

#include "dom/links.h"
#include "dom/nodekinds.h"

namespace winport::dom
{

namespace
{

using NodeSet = std::unordered_set<const xmlNode*>;

// The nodes of the set that are in the tree below (and with) the root, attributes before children.
void CollectInOrder(xmlNode* root, const NodeSet& set, std::vector<xmlNode*>& nodes)
{
    for (xmlNode* node = root; node != nullptr; node = NextInSubtree(node, root))
    {
        if (set.contains(node))
            nodes.push_back(node);
        for (xmlAttr* attribute = IsElement(node) ? node->properties : nullptr; attribute != nullptr;
             attribute = attribute->next)
        {
            if (set.contains(AsNode(attribute)))
                nodes.push_back(AsNode(attribute));
        }
    }
}

} // namespace

std::vector<std::string> SplitUnion(std::string_view expression)
{
    std::vector<std::string> parts;
    std::size_t start = 0;
    int depth = 0;
    char quote = 0;
    for (std::size_t at = 0; at < expression.size(); ++at)
    {
        const char character = expression[at];
        if (quote != 0)
            quote = character == quote ? static_cast<char>(0) : quote;
        else if (character == '"' || character == '\'')
            quote = character;
        else if (character == '(' || character == '[')
            ++depth;
        else if (character == ')' || character == ']')
            --depth;
        else if (character == '|' && depth == 0)
        {
            parts.emplace_back(expression.substr(start, at - start));
            start = at + 1;
        }
    }
    parts.emplace_back(expression.substr(start));
    return parts;
}

std::vector<xmlNode*> UniteInDocumentOrder(const std::vector<std::vector<xmlNode*>>& lists)
{
    NodeSet set;
    std::vector<xmlNode*> roots; // one, unless a detached node was asked for nodes of the document too
    const std::vector<xmlNode*>* only = nullptr;
    std::size_t filled = 0;
    for (const std::vector<xmlNode*>& list : lists)
    {
        if (list.empty())
            continue;
        ++filled;
        only = &list;
        set.insert(list.begin(), list.end());
        xmlNode* const root = TopOf(list.front());
        if (std::find(roots.begin(), roots.end(), root) == roots.end())
            roots.push_back(root);
    }
    if (filled == 1)
        return *only;
    std::vector<xmlNode*> nodes;
    for (xmlNode* const root : roots)
        CollectInOrder(root, set, nodes);
    return nodes;
}

} // namespace winport::dom
