#include "formlist.h"

std::vector<FormsInfoRecord> MakeFormList(const ProductData& product)
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
    return list;
}
