#include "faultlist.h"

#include <algorithm>
#include <utility>

#include "failure.h"

std::string ElementPath::Text() const
{
    std::string text = above != nullptr ? above->Text() : std::string();
    text += "/" + Shortened(element.writtenName);
    const std::string name = element.WrittenNameAttribute();
    return name.empty() ? text : text + "[" + Shortened(name) + "]";
}

void FaultList::Add(std::string_view rule, const ElementPath& place, std::string message)
{
    if (m_faults.size() < kMost)
        m_faults.push_back({place.element.line, place.Text(), rule, std::move(message)});
    else if (m_faults.size() == kMost)
        m_faults.push_back({place.element.line, place.Text(), rules::kTooMany,
                            "more than " + std::to_string(kMost) + " faults; the others are left out"});
}

std::vector<Fault> FaultList::ByLine() const
{
    std::vector<Fault> faults = m_faults;
    std::ranges::stable_sort(faults, {},
                             [](const Fault& fault) { return std::pair(fault.rule == rules::kTooMany, fault.line); });
    return faults;
}
