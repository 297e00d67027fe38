#include "complugins/ptpcprovider/pagemediasizeforms.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <unordered_set>

#include <tvcore/datamodelids.h>
#include <tvutil/dimension.h>

#include "complugins/ptpcprovider/pagemediasizeoptions.h"

namespace
{

using PageMediaSize::Forms;
using PaperIds = std::unordered_set<std::uint16_t>;

bool IsSame(std::int32_t tenths, const Dimension& asked)
{
    return Dimension::IsEquivalent(Dimension(tenths, Dimension::TenthsOfAMillimeter), asked, Dimension::Millimeters, 0,
                                   Number::RoundingConstant());
}

FormsInfoRecord MakeUpCustomForm(std::int32_t width, std::int32_t length)
{
    FormsInfoRecord form;
    form.paperId = DMPAPER_USER;
    form.width = width;
    form.length = length;
    return form;
}

template <class Matches>
const FormsInfoRecord* FindForm(Forms forms, Matches matches)
{
    const auto found = std::find_if(forms.begin(), forms.end(), matches);
    return found != forms.end() ? &*found : nullptr;
}

const FormsInfoRecord* FindPaper(Forms forms, WORD paperId)
{
    return FindForm(forms, [paperId](const FormsInfoRecord& form) { return form.paperId == paperId; });
}

// A driver's custom size is taken only when no other form of its size follows.
const FormsInfoRecord* FindSize(Forms forms, WORD width, WORD length)
{
    const FormsInfoRecord* taken = nullptr;
    for (const FormsInfoRecord& form : forms)
    {
        if (form.formType == DataModelIds::PageSizeUnlisted || form.width != width || form.length != length)
            continue;
        taken = &form;
        if (form.formType != DataModelIds::PageSizeDriverCustom)
            break;
    }
    return taken;
}

PaperIds PaperIdsOfSeveralTypes(Forms forms)
{
    std::unordered_map<std::uint16_t, std::int32_t> typeOf;
    PaperIds several;
    for (const FormsInfoRecord& form : forms)
        if (typeOf.emplace(form.paperId, form.formType).first->second != form.formType)
            several.insert(form.paperId);
    return several;
}

bool YieldsToOthers(const FormsInfoRecord& form) noexcept
{
    return form.formType == DataModelIds::PageSizeDriverForm || form.formType == DataModelIds::PageSizeDriverCustom;
}

bool IsOffered(const FormsInfoRecord& form, const PaperIds& severalTypes, bool offersCustomSize)
{
    if (form.formType == DataModelIds::PageSizeUnlisted)
        return false;
    if (form.paperId == DMPAPER_USER)
        return offersCustomSize;
    return !YieldsToOthers(form) || !severalTypes.contains(form.paperId);
}

} // namespace

std::vector<FormsInfoRecord> PageMediaSize::ReadForms(MsCachedDeviceCapabilities& capabilities)
{
    std::vector<FormsInfoRecord> forms;
    if (FAILED(capabilities.GetForms(forms)))
        forms.clear();
    return forms;
}

FormsInfoRecord PageMediaSize::FormForTicket(const AskedSize& asked, Forms forms)
{
    const Dimension width(asked.width, Dimension::Microns);
    const Dimension length(asked.height, Dimension::Microns);
    const bool hasSize = asked.width > 0 && asked.height > 0;
    const FormsInfoRecord* chosen = nullptr;
    for (const FormsInfoRecord& form : asked.isCustom ? Forms() : forms)
    {
        if (asked.valueId && form.valueId == *asked.valueId)
            return form;
        const bool isWanted = chosen == nullptr || form.formType == DataModelIds::PageSizeUserForm;
        if (hasSize && isWanted && IsSame(form.width, width) && IsSame(form.length, length))
            chosen = &form;
    }
    return chosen != nullptr ? *chosen : MakeUpCustomForm(TenthsOf(asked.width), TenthsOf(asked.height));
}

FormsInfoRecord PageMediaSize::FormForDevmode(const DEVMODEW& devmode, Forms forms)
{
    const auto number = static_cast<WORD>(devmode.dmPaperSize);
    const auto width = static_cast<WORD>(devmode.dmPaperWidth);
    const auto length = static_cast<WORD>(devmode.dmPaperLength);
    const FormsInfoRecord* form = nullptr;
    if (number == DMPAPER_USER)
        form = FindSize(forms, width, length);
    else if ((devmode.dmFields & DM_PAPERSIZE) != 0)
        form = FindPaper(forms, number);
    if (form != nullptr)
        return *form;

    const FormsInfoRecord* const custom = FindPaper(forms, DMPAPER_USER);
    FormsInfoRecord taken = custom != nullptr ? *custom : MakeUpCustomForm(0, 0);
    taken.width = width;
    taken.length = length;
    return taken;
}

std::uint16_t PageMediaSize::DevmodeNumberOf(const FormsInfoRecord& form) noexcept
{
    switch (form.formType)
    {
    case DataModelIds::PageSizeDriverCustom:
    case DataModelIds::PageSizeUserForm:
    case DataModelIds::PageSizeUnlisted:
        return DMPAPER_USER;
    default:
        return form.paperId;
    }
}

std::vector<FormsInfoRecord> PageMediaSize::OfferedForms(Forms forms, bool offersCustomSize)
{
    const PaperIds severalTypes = PaperIdsOfSeveralTypes(forms);
    std::vector<FormsInfoRecord> offered;
    std::copy_if(forms.begin(), forms.end(), std::back_inserter(offered),
                 [&](const FormsInfoRecord& form) { return IsOffered(form, severalTypes, offersCustomSize); });
    return offered;
}
