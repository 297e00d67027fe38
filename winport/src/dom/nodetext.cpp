#include "dom/nodetext.h"

#include <algorithm>

#include "dom/nodekinds.h"
#include "dom/strings.h"

namespace winport::dom
{

namespace
{

bool HasPreservedSpace(const xmlNode* node)
{
    for (; node != nullptr && IsElement(node); node = node->parent)
    {
        for (const xmlAttr* attribute = node->properties; attribute != nullptr; attribute = attribute->next)
        {
            if (HasQualifiedName(reinterpret_cast<const xmlNode*>(attribute), "xml:space"))
                return ValueOf(attribute) == "preserve";
        }
    }
    return false;
}

std::string CollectedText(xmlNode* root, bool trims)
{
    std::string text;
    std::size_t firstFixed = std::string::npos; // what lies in CDATA sections is not trimmed
    std::size_t lastFixed = 0;
    for (xmlNode* node = root; node != nullptr; node = NextInSubtree(node, root))
    {
        if (!text.empty() && node != root && FollowsDroppedBlanks(node))
            text += ' ';
        if (!IsText(node))
            continue;
        const std::size_t start = text.size();
        text += View(node->content);
        if (node->type == XML_CDATA_SECTION_NODE)
        {
            firstFixed = std::min(firstFixed, start);
            lastFixed = text.size();
        }
    }
    if (!trims)
        return text;
    std::size_t end = text.size();
    while (end > lastFixed && IsXmlSpace(text[end - 1]))
        --end;
    std::size_t start = 0;
    while (start < std::min(firstFixed, end) && IsXmlSpace(text[start]))
        ++start;
    return text.substr(start, end - start);
}

} // namespace

std::string TextOf(xmlNode* node, bool preservesWhiteSpace)
{
    switch (node->type)
    {
    case XML_ELEMENT_NODE:
        return CollectedText(node, !preservesWhiteSpace && !HasPreservedSpace(node));
    case XML_DOCUMENT_NODE:
    case XML_TEXT_NODE:
        return CollectedText(node, !preservesWhiteSpace);
    case XML_ATTRIBUTE_NODE:
    case kDeclarationType:
        return ValueOf(AsAttribute(node));
    default:
        return std::string(View(node->content));
    }
}

} // namespace winport::dom
