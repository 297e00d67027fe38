// Printer models: the data file of an installed driver, as a GPD or PPD is for the core drivers.
//
// A model is a JSON document (docs/printer-models.md, models/schema.json). The reader checks all of it: fields,
// types, ranges and what must agree between them; a model that it returns needs no further checks. In every list the
// first item is the printer's default.
#pragma once

#include <tvcore/featurevalues.h>
#include <tvutil/cxstring.h>
#include <tvutil/tavlenexception.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <string_view>
#include <vector>

struct PrinterModel
{
    // The layout of the core driver's private part of a devmode.
    enum class CoreDriverKind
    {
        PostScript,
        Unidrv,
    };

    struct CoreDriver
    {
        CoreDriverKind kind = CoreDriverKind::Unidrv;
        std::uint16_t privateSize = 0; // bytes
    };

    struct Form
    {
        std::uint16_t paperId = 0; // below 49152: the rest is for named custom sizes
        CXString name;             // at most 63 characters
        std::int32_t width = 0;    // tenths of a millimetre
        std::int32_t length = 0;
        std::int32_t units = 0;    // 7491 metric, 7492 inches
        std::int32_t formType = 0; // 25001 to 25005, 25007
        std::int32_t valueId = 0;  // the page-size value; 0 for sizes that no dictionary knows
    };

    struct Resolution
    {
        std::uint16_t x = 0; // dots per inch
        std::uint16_t y = 0;
        CXString name; // at most 31 characters
    };

    struct MediaType
    {
        std::int32_t id = 0; // the data model's media value
        CXString name;       // at most 64 characters
    };

    struct Bin
    {
        std::uint16_t id = 0;
        CXString name; // at most 23 characters
    };

    struct Margins
    {
        std::int32_t left = 0; // microns
        std::int32_t top = 0;
        std::int32_t right = 0;
        std::int32_t bottom = 0;
    };

    struct Extent
    {
        std::uint16_t width = 0; // tenths of a millimetre
        std::uint16_t length = 0;
    };

    // Bytes that the defaults of the document's features may take: so much room has a devmode beside the paper list.
    static constexpr std::size_t kMaxDocumentDefaults = 2900;

    // Bytes that a model's file may have.
    static constexpr std::size_t kMaxFileSize = 4u << 20;

    CXString name;
    std::uint64_t capability = 0;
    std::int32_t controllerFamily = 0;
    CoreDriver coreDriver;
    CXString workflowModule; // one of tvcore/workflowmodulenames.h, in its spelling; empty: the driver has none
    std::map<std::int32_t, CXString> productInformation;
    std::map<std::int32_t, CXString> productStrings;
    std::vector<Form> forms;
    std::vector<Resolution> resolutions;
    std::vector<MediaType> mediaTypes;
    std::vector<Bin> bins;
    std::map<std::uint16_t, Margins> margins; // by paper id
    std::uint16_t maxCopies = 1;
    std::uint16_t printRate = 0; // pages a minute
    std::int32_t memory = 0;     // kilobytes, of the printer
    Extent minExtent;
    Extent maxExtent;
    FeatureCatalogue::DefaultValues defaults; // checked against the catalogue; none of them is somebody's choice

    // Product information item 13 says "Color", whatever the case of its letters.
    [[nodiscard]] bool IsColor() const;
    // The first form of that paper id, or null. Valid as long as the model.
    [[nodiscard]] const Form* FindForm(std::uint16_t paperId) const noexcept;
};

// What is wrong with a model, on one line: "FILE: /json/pointer: what is wrong", or "FILE: what is wrong"
// of the document itself.
class ExceptionInvalidPrinterModel : public TavlenException
{
public:
    static constexpr const WCHAR* kClassName = W("ExceptionInvalidPrinterModel");
    using TavlenException::TavlenException;
    [[nodiscard]] const WCHAR* GetClassName() const noexcept override;
};

// Both throw ExceptionInvalidPrinterModel. `fileName` (UTF-8) is for messages.
[[nodiscard]] PrinterModel ReadPrinterModel(const std::filesystem::path& file);
[[nodiscard]] PrinterModel ParsePrinterModel(std::string_view text, std::string_view fileName);
