#include "formlist.h"

#include <algorithm>
#include <iterator>

#include <tvcore/datamodelids.h>
#include <tvutil/driverloadedcontext.h>
#include <tvutil/tavlencomexception.h>

#include "paperdisplayname.h"

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

CustomForms::Walk WalkCustomSizes()
{
    CustomForms::Walk walk = CustomForms::WalkSizes();
    if (walk.isCutOff) // a list that lacks some would pass for whole
        ThrowComException(E_FAIL, {W("WalkCustomSizes"), W("siblings\\tvui\\src\\formlist")},
                          W("the custom paper sizes cannot be read"));
    return walk;
}

std::vector<FormsInfoRecord> MakeFormListOfUser(const ProductData& product)
{
    if (DriverLoadedContext::IsSpoolerOrFilterPipelineExeContext())
        return MakeFormList(product);
    return MakeFormList(product, WalkCustomSizes().sizes);
}

std::vector<PaperCache::Paper> ListPapers(std::span<const FormsInfoRecord> forms)
{
    std::vector<PaperCache::Paper> papers;
    for (const FormsInfoRecord& form : forms)
        if (form.formType != DataModelIds::PageSizeUnlisted)
            papers.push_back({form.paperId, form.width, form.length, PaperDisplayName(form)});
    return papers;
}

CXString LoadedPaper(const ProductData& product)
{
    return PaperDisplayName(MakeFormList(product).front());
}
