#include "dom/namespacepool.h"

#include "dom/strings.h"

namespace winport::dom
{

xmlNs* NamespacePool::Get(std::string_view prefix, std::string_view uri)
{
    if (prefix.empty() && uri.empty())
        return nullptr;
    auto place = m_records.find(KeyView(prefix, uri));
    if (place == m_records.end())
    {
        place = m_records.try_emplace(Key(prefix, uri)).first;
        xmlNs& record = place->second;
        record.type = XML_LOCAL_NAMESPACE;
        record.prefix = prefix.empty() ? nullptr : XmlChars(place->first.first);
        record.href = XmlChars(place->first.second);
    }
    return &place->second;
}

} // namespace winport::dom
