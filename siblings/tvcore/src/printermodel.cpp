#include <tvcore/printermodel.h>

#include <algorithm>

bool PrinterModel::IsColor() const
{
    constexpr std::int32_t kColorItem = 13;
    const auto item = productInformation.find(kColorItem);
    return item != productInformation.end() && item->second.CompareNoCase(W("color")) == 0;
}

const PrinterModel::Form* PrinterModel::FindForm(std::uint16_t paperId) const noexcept
{
    const auto found =
        std::find_if(forms.begin(), forms.end(), [paperId](const Form& form) { return form.paperId == paperId; });
    return found != forms.end() ? &*found : nullptr;
}

const WCHAR* ExceptionInvalidPrinterModel::GetClassName() const noexcept
{
    return kClassName;
}
