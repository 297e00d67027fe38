#include "paperdisplayname.h"

#include <tvcore/datamodelids.h>

namespace
{

constexpr std::size_t kLongest = 64; // of the platform's list of names

// "8.5 x 13", "4x6", "5 1/2 x 8-1/2"
bool IsNothingButASize(WStringView name) noexcept
{
    return name.find_first_not_of(W("0123456789.,/- xX\u00D7")) == WStringView::npos &&
           name.find_first_of(W("xX\u00D7")) != WStringView::npos &&
           name.find_first_of(W("0123456789")) != WStringView::npos;
}

} // namespace

CXString PaperDisplayName(const FormsInfoRecord& form)
{
    CXString name = form.GetName();
    const bool needsUnit = form.units == DataModelIds::Value::UnitsInches && IsNothingButASize(name.View());
    name.ReplaceAll(W("Envelope"), W("Env."));
    if (needsUnit)
        name += W(" inches");
    return name.Mid(0, kLongest);
}
