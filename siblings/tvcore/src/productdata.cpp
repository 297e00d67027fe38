#include <tvcore/productdata.h>

#include <utility>

#include <tvutil/printer.h>
#include <tvutil/textresourceloader.h>

#include "driverdatafile.h"

namespace
{

struct NamedModel
{
    CXString printerName; // empty when no printer is known
    PrinterModel model;
};

NamedModel ReadInstalledModel(HANDLE printer)
{
    // In this order: a handle that is no printer's is told as such.
    return {Printer(printer).GetPrinterName(), ReadPrinterModel(FindDriverDataFile(printer))};
}

} // namespace

struct ProductData::Content
{
    explicit Content(NamedModel named) : model(std::move(named.model))
    {
        if (!named.printerName.IsEmpty())
            texts = TextResourceLoader::Share(named.printerName, model.productStrings);
    }

    PrinterModel model;
    std::shared_ptr<const TextResourceLoader::Texts> texts; // keeps them known
};

ProductData::ProductData(HANDLE printer) : m_content(std::make_unique<Content>(ReadInstalledModel(printer)))
{
}

ProductData::ProductData(PrinterModel model, const CXString& printerName)
    : m_content(std::make_unique<Content>(NamedModel{printerName, std::move(model)}))
{
}

ProductData::~ProductData() = default;

const CXString& ProductData::GetName() const noexcept
{
    return m_content->model.name;
}

ULONGLONG ProductData::GetCapability() const noexcept
{
    return m_content->model.capability;
}

ProductData::ValueEnum ProductData::GetControllerFamily() const
{
    return static_cast<ValueEnum>(m_content->model.controllerFamily); // the model's reader knows them all
}

const PrinterModel::CoreDriver& ProductData::GetCoreDriver() const noexcept
{
    return m_content->model.coreDriver;
}

CXString ProductData::GetInfo(std::int32_t item) const
{
    const auto found = m_content->model.productInformation.find(item);
    return found != m_content->model.productInformation.end() ? found->second : CXString();
}

const std::vector<PrinterModel::Form>& ProductData::GetForms() const noexcept
{
    return m_content->model.forms;
}

const std::vector<PrinterModel::Resolution>& ProductData::GetResolutions() const noexcept
{
    return m_content->model.resolutions;
}

const std::vector<PrinterModel::MediaType>& ProductData::GetMediaTypes() const noexcept
{
    return m_content->model.mediaTypes;
}

const std::vector<PrinterModel::Bin>& ProductData::GetBins() const noexcept
{
    return m_content->model.bins;
}

PrinterModel::Margins ProductData::GetMargins(std::uint16_t paperId) const noexcept
{
    const auto found = m_content->model.margins.find(paperId);
    return found != m_content->model.margins.end() ? found->second : PrinterModel::Margins();
}

std::uint16_t ProductData::GetMaxCopies() const noexcept
{
    return m_content->model.maxCopies;
}

const PrinterModel::Extent& ProductData::GetMinExtent() const noexcept
{
    return m_content->model.minExtent;
}

const PrinterModel::Extent& ProductData::GetMaxExtent() const noexcept
{
    return m_content->model.maxExtent;
}

const PrinterModel::DefaultValue* ProductData::GetDefault(std::int32_t feature) const noexcept
{
    const auto found = m_content->model.defaults.find(feature);
    return found != m_content->model.defaults.end() ? &found->second : nullptr;
}
