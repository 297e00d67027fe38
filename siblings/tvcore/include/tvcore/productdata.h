// ProductData: what is known of the bound printer's product.
//
// Read once, from the printer model that is the installed driver's data file; it does not change afterwards. The
// product strings are handed to the utility library (tvutil/textresourceloader.h), where they stay known as long as
// this object lives.
//
// Everything returned by reference is valid as long as the object. Reading is safe on every thread. The library is
// delay-loaded (tvcore/tvcoreapi.h).
#pragma once

#include <windows.h>

#include <tvcore/printermodel.h>
#include <tvcore/tvcoreapi.h>
#include <tvutil/cxstring.h>

#include <cstdint>
#include <memory>
#include <vector>

class TVCORE_API ProductData
{
public:
    // Values of the feature data model that describe a product.
    enum ValueEnum : ULONG
    {
        ControllerFamilyUnknown = 5001, // until a product is known
        ControllerFamilyXps = 8430,
        ControllerFamilyMonochrome = 8431,
        ControllerFamilyColor = 8434,
    };

    // The product of an installed printer; the handle is used during the call only. Throws ExceptionPrinterFailure or
    // ExceptionPrintDriverFailure when the spooler does not answer, and ExceptionInvalidPrinterModel, which names the
    // file and the place in it, when the model cannot be read.
    explicit ProductData(HANDLE printer);
    // A product that is known by its model alone. A printer name makes the texts known for that printer.
    explicit ProductData(PrinterModel model, const CXString& printerName = CXString());
    ~ProductData();
    ProductData(const ProductData&) = delete;
    ProductData& operator=(const ProductData&) = delete;

    // This product's texts become those that the calling thread's ProductStringLoaders load.
    void PutTextsInForce() const;

    [[nodiscard]] const CXString& GetName() const;
    [[nodiscard]] ULONGLONG GetCapability() const;
    [[nodiscard]] ValueEnum GetControllerFamily() const;
    [[nodiscard]] const PrinterModel::CoreDriver& GetCoreDriver() const;

    // Product information as text; empty when the product has no such item.
    [[nodiscard]] CXString GetInfo(std::int32_t item) const;

    // In each list the first item is the printer's default.
    [[nodiscard]] const std::vector<PrinterModel::Form>& GetForms() const;
    [[nodiscard]] const std::vector<PrinterModel::Resolution>& GetResolutions() const;
    [[nodiscard]] const std::vector<PrinterModel::MediaType>& GetMediaTypes() const;
    [[nodiscard]] const std::vector<PrinterModel::Bin>& GetBins() const;

    // Microns; all 0 when the product says nothing of that paper.
    [[nodiscard]] PrinterModel::Margins GetMargins(std::uint16_t paperId) const;

    [[nodiscard]] std::uint16_t GetMaxCopies() const;
    [[nodiscard]] std::uint16_t GetPrintRate() const; // pages a minute
    [[nodiscard]] std::int32_t GetMemory() const;     // kilobytes
    [[nodiscard]] const PrinterModel::Extent& GetMinExtent() const;
    [[nodiscard]] const PrinterModel::Extent& GetMaxExtent() const;

    // The defaults of data-model features, by feature number; others are left to the catalogue.
    [[nodiscard]] const FeatureCatalogue::DefaultValues& GetDefaults() const;

private:
    struct Content;
    const std::unique_ptr<const Content> m_content;
};
