#include <tvcore/productdata.h>

#include <utility>

#include <tvutil/executioncontext.h>
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
    const ExecutionContextLifetime context({W("ProductData::ProductData"), W("siblings\\tvcore\\src\\productdata")});
    // In this order: a handle that is no printer's is told as such.
    return {Printer(printer).GetPrinterName(), ReadPrinterModel(FindDriverDataFile(printer))};
}

} // namespace

struct ProductData::Content
{
    explicit Content(NamedModel named)
        : model(std::move(named.model)), texts(TextResourceLoader::Share(named.printerName, model.productStrings))
    {
    }

    PrinterModel model;
    std::shared_ptr<const TextResourceLoader::Texts> texts; // keeps them known; the model's, so behind it
};

ProductData::ProductData(HANDLE printer) : m_content(std::make_unique<Content>(ReadInstalledModel(printer)))
{
}

ProductData::ProductData(PrinterModel model, const CXString& printerName)
    : m_content(std::make_unique<Content>(NamedModel{printerName, std::move(model)}))
{
}

ProductData::~ProductData() = default;

void ProductData::PutTextsInForce() const
{
    TextResourceLoader::Initialize(m_content->texts);
}

const CXString& ProductData::GetName() const
{
    return m_content->model.name;
}

ULONGLONG ProductData::GetCapability() const
{
    return m_content->model.capability;
}

ProductData::ValueEnum ProductData::GetControllerFamily() const
{
    return static_cast<ValueEnum>(m_content->model.controllerFamily); // the model's reader knows them all
}

const PrinterModel::CoreDriver& ProductData::GetCoreDriver() const
{
    return m_content->model.coreDriver;
}

CXString ProductData::GetInfo(std::int32_t item) const
{
    const auto found = m_content->model.productInformation.find(item);
    return found != m_content->model.productInformation.end() ? found->second : CXString();
}

const std::vector<PrinterModel::Form>& ProductData::GetForms() const
{
    return m_content->model.forms;
}

const std::vector<PrinterModel::Resolution>& ProductData::GetResolutions() const
{
    return m_content->model.resolutions;
}

const std::vector<PrinterModel::MediaType>& ProductData::GetMediaTypes() const
{
    return m_content->model.mediaTypes;
}

const std::vector<PrinterModel::Bin>& ProductData::GetBins() const
{
    return m_content->model.bins;
}

PrinterModel::Margins ProductData::GetMargins(std::uint16_t paperId) const
{
    const auto found = m_content->model.margins.find(paperId);
    return found != m_content->model.margins.end() ? found->second : PrinterModel::Margins();
}

std::uint16_t ProductData::GetMaxCopies() const
{
    return m_content->model.maxCopies;
}

std::uint16_t ProductData::GetPrintRate() const
{
    return m_content->model.printRate;
}

std::int32_t ProductData::GetMemory() const
{
    return m_content->model.memory;
}

const PrinterModel::Extent& ProductData::GetMinExtent() const
{
    return m_content->model.minExtent;
}

const PrinterModel::Extent& ProductData::GetMaxExtent() const
{
    return m_content->model.maxExtent;
}

const FeatureCatalogue::DefaultValues& ProductData::GetDefaults() const
{
    return m_content->model.defaults;
}
