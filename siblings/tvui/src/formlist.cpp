#include "formlist.h"

#include <algorithm>
#include <iterator>

#include <tvutil/driverloadedcontext.h>

std::vector<FormsInfoRecord> MakeFormList(const ProductData& product, std::span<const CustomForms::Size> customSizes)
{
    std::vector<FormsInfoRecord> list;
    for (const PrinterModel::Form& form : product.GetForms())
    {
        FormsInfoRecord& record = list.emplace_back();
        record.paperId = form.paperId;
        record.width = form.width;
        record.length = form.length;
        record.valueId = form.valueId;
        record.units = form.units;
        record.formType = form.formType;
        record.SetName(form.name);
    }
    std::transform(customSizes.begin(), customSizes.end(), std::back_inserter(list), CustomForms::FormOf);
    return list;
}

std::vector<FormsInfoRecord> MakeFormListOfUser(const ProductData& product)
{
    if (DriverLoadedContext::IsSpoolerOrFilterPipelineExeContext())
        return MakeFormList(product);
    return MakeFormList(product, CustomForms::WalkSizes().sizes);
}
