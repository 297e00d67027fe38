#include "complugins/mediahandler.h"

namespace
{

bool IsSame(const Dimension& left, std::int32_t tenths)
{
    return Dimension::IsEquivalent(left, Dimension(Number(tenths), Dimension::TenthsOfAMillimeter),
                                   Dimension::Millimeters, 0, Number::RoundingConstant());
}

enum Likeness
{
    OtherSize,
    SameSize,
    SameName,
    SameNumber,
};

} // namespace

const FormsInfoRecord* MediaHandler::GetBestMatchPageSize(std::span<const FormsInfoRecord> forms,
                                                          const Dimension& width, const Dimension& length,
                                                          std::uint16_t paperId, const CXString& name)
{
    const FormsInfoRecord* best = nullptr;
    Likeness bestLikeness = OtherSize;
    for (const FormsInfoRecord& form : forms)
    {
        if (!IsSame(width, form.width) || !IsSame(length, form.length))
            continue;
        const Likeness likeness = form.paperId == paperId                          ? SameNumber
                                  : name.CompareNoCase(form.GetDevmodeName()) == 0 ? SameName
                                                                                   : SameSize;
        if (likeness <= bestLikeness)
            continue;
        best = &form;
        bestLikeness = likeness;
    }
    return best;
}
