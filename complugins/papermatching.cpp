#include "complugins/papermatching.h"

#include <algorithm>
#include <utility>

#include <tvcore/datamodelids.h>
#include <tvutil/cxstring.h>
#include <tvutil/operatingsystem.h>

#include "complugins/fixedtext.h"

namespace
{

using Forms = std::span<const FormsInfoRecord>;

constexpr std::uint16_t kFirstCustomNumber = 10000;
constexpr DWORD kDimensions = DM_PAPERWIDTH | DM_PAPERLENGTH;

template <class Matches>
const FormsInfoRecord* FindForm(Forms forms, Matches matches)
{
    const auto found = std::find_if(forms.begin(), forms.end(), matches);
    return found != forms.end() ? &*found : nullptr;
}

std::uint16_t PaperNumber(const DEVMODEW& devmode) noexcept
{
    return static_cast<std::uint16_t>(devmode.dmPaperSize);
}

bool HasSizeOf(const DEVMODEW& devmode, const FormsInfoRecord& form) noexcept
{
    return form.width == static_cast<WORD>(devmode.dmPaperWidth) &&
           form.length == static_cast<WORD>(devmode.dmPaperLength);
}

bool IsDriverForm(const FormsInfoRecord& form) noexcept
{
    return form.formType == DataModelIds::PageSizeDriverForm;
}

bool HasNameOf(const CXString& name, const FormsInfoRecord& form)
{
    return name.CompareNoCase(form.GetDevmodeName()) == 0;
}

void TakeSize(DEVMODEW& devmode, const FormsInfoRecord& form) noexcept
{
    devmode.dmPaperWidth = static_cast<short>(form.width);
    devmode.dmPaperLength = static_cast<short>(form.length);
}

void TakeNumber(DEVMODEW& devmode, const FormsInfoRecord& form) noexcept
{
    devmode.dmPaperSize = static_cast<short>(form.paperId);
}

void TakeName(DEVMODEW& devmode, const FormsInfoRecord& form) noexcept
{
    SetFixedText(devmode.dmFormName, form.GetName());
}

// Signed, on purpose, unlike every other comparison here.
void MakePortrait(DEVMODEW& devmode) noexcept
{
    if (devmode.dmPaperWidth > devmode.dmPaperLength)
        std::swap(devmode.dmPaperWidth, devmode.dmPaperLength);
}

// First pass: the paper that the devmode names, by its number or else by its form name, supplies the rest.
bool MatchNamedPaper(DEVMODEW& devmode, Forms forms)
{
    if ((devmode.dmFields & DM_PAPERSIZE) != 0)
    {
        const FormsInfoRecord* const form =
            FindForm(forms, [number = PaperNumber(devmode)](const FormsInfoRecord& candidate)
                     { return candidate.paperId == number && number != DMPAPER_USER && number != DMPAPER_TABLOID; });
        if (form == nullptr)
            return false;
        TakeSize(devmode, *form);
        TakeName(devmode, *form);
        return true;
    }
    if ((devmode.dmFields & DM_FORMNAME) == 0)
        return false;
    const FormsInfoRecord* const form =
        FindForm(forms, [name = CXString(GetFixedText(devmode.dmFormName))](const FormsInfoRecord& candidate)
                 { return candidate.paperId != DMPAPER_USER && HasNameOf(name, candidate); });
    if (form == nullptr)
        return false;
    TakeSize(devmode, *form);
    TakeNumber(devmode, *form);
    return true;
}

// Second pass: the driver's own form of that size supplies the number, on purpose even for a paper that was named by
// another one. Null when there is none.
const FormsInfoRecord* TakeNumberOfDriverForm(DEVMODEW& devmode, Forms forms)
{
    const FormsInfoRecord* const form = FindForm(
        forms, [&devmode](const FormsInfoRecord& candidate)
        { return IsDriverForm(candidate) && HasSizeOf(devmode, candidate) && candidate.paperId != DMPAPER_TABLOID; });
    if (form != nullptr)
        TakeNumber(devmode, *form);
    return form;
}

// A form name that the first pass did not take, that of a user-defined paper, is good where its size is the devmode's.
bool NameAgreesWithSize(const DEVMODEW& devmode, Forms forms)
{
    if ((devmode.dmFields & DM_FORMNAME) == 0)
        return false;
    const FormsInfoRecord* const form =
        FindForm(forms, [name = CXString(GetFixedText(devmode.dmFormName))](const FormsInfoRecord& candidate)
                 { return HasNameOf(name, candidate); });
    return form != nullptr && HasSizeOf(devmode, *form);
}

// Third and fourth pass: a form of that size supplies the name, the driver's own before any other.
bool MatchSize(DEVMODEW& devmode, Forms forms)
{
    const FormsInfoRecord* form = FindForm(forms, [&devmode](const FormsInfoRecord& candidate)
                                           { return IsDriverForm(candidate) && HasSizeOf(devmode, candidate); });
    if (form == nullptr)
        form = FindForm(forms, [&devmode](const FormsInfoRecord& candidate) { return HasSizeOf(devmode, candidate); });
    if (form == nullptr)
        return false;
    TakeName(devmode, *form);
    return true;
}

bool MatchPaper(DEVMODEW& devmode, Forms forms)
{
    const bool isNamed = MatchNamedPaper(devmode, forms);
    const FormsInfoRecord* const driverForm = TakeNumberOfDriverForm(devmode, forms);
    if (isNamed)
        return true;
    if (driverForm != nullptr && (devmode.dmFields & DM_PAPERSIZE) != 0)
    {
        TakeName(devmode, *driverForm);
        return true;
    }
    return NameAgreesWithSize(devmode, forms) || MatchSize(devmode, forms);
}

bool ClaimsSize(const DEVMODEW& devmode) noexcept
{
    return (devmode.dmFields & kDimensions) == kDimensions;
}

// A custom paper bears the name of the country's paper: whoever went on by that name would have another paper the next
// time. The number tells instead, where it is one of this size, or else the size does.
void StopGoingByName(DEVMODEW& devmode, Forms forms)
{
    if ((devmode.dmFields & DM_FORMNAME) == 0)
        return;
    const std::uint16_t number = PaperNumber(devmode);
    const FormsInfoRecord* const form = FindForm(forms, [number](const FormsInfoRecord& candidate)
                                                 { return number != DMPAPER_USER && candidate.paperId == number; });
    devmode.dmFields &= ~DWORD{DM_FORMNAME};
    devmode.dmFields |= form != nullptr && HasSizeOf(devmode, *form) ? DWORD{DM_PAPERSIZE} : kDimensions;
}

void TakeDefaultName(DEVMODEW& devmode) noexcept
{
    SetFixedText(devmode.dmFormName, OperatingSystem::UseEnglishPaperSizes() ? W("Letter") : W("A4"));
}

} // namespace

bool IsCustomPaper(const DEVMODEW& devmode) noexcept
{
    return PaperNumber(devmode) == DMPAPER_USER || PaperNumber(devmode) >= kFirstCustomNumber;
}

bool MatchPaperWithForms(DEVMODEW& devmode, std::span<const FormsInfoRecord> forms)
{
    bool isMatched = false;
    if (!forms.empty())
    {
        MakePortrait(devmode);
        isMatched = MatchPaper(devmode, forms);
    }
    if (IsCustomPaper(devmode) && (isMatched || ClaimsSize(devmode)))
        StopGoingByName(devmode, forms);
    if (!isMatched || IsCustomPaper(devmode))
        TakeDefaultName(devmode);
    return isMatched;
}
