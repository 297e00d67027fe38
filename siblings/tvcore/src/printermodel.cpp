#include <tvcore/printermodel.h>

#include <algorithm>

#include <tvcore/productinformation.h>

bool PrinterModel::IsColor() const
{
    const auto item = productInformation.find(ProductInformation::kColor);
    return item != productInformation.end() && ProductInformation::SaysColor(item->second);
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
