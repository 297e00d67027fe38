#include "dom/characterdata.h"

#include <algorithm>

#include "core/utf.h"
#include "dom/failure.h"
#include "dom/strings.h"

namespace winport::dom
{

std::u16string DataOf(const xmlNode* node)
{
    return ToUtf16(View(node->content));
}

DataRange CheckedRange(const std::u16string& data, LONG offset, LONG count)
{
    if (offset < 0 || count < 0 || static_cast<std::size_t>(offset) > data.size())
        throw Failure{E_INVALIDARG};
    const auto start = static_cast<std::size_t>(offset);
    return {start, std::min(static_cast<std::size_t>(count), data.size() - start)};
}

std::string EditedText(const std::u16string& data)
{
    std::string utf8;
    if (!ToUtf8Strict(data, utf8) || !HasOnlyXmlCharacters(utf8))
        throw Failure{E_INVALIDARG};
    return utf8;
}

std::pair<std::string, std::string> SplitAt(const std::u16string& data, LONG offset)
{
    const DataRange range = CheckedRange(data, offset, 0);
    return {EditedText(data.substr(0, range.offset)), EditedText(data.substr(range.offset))};
}

} // namespace winport::dom
