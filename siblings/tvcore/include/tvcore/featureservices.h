// FeatureServices: the feature data model of one devmode on one printer: its settings, and what the printer offers.
//
// Made and filled by a DataModelManager, which owns it. One thread at a time. The library is delay-loaded
// (tvcore/tvcoreapi.h).
#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <vector>

#include <tvcore/attributebyteslisttranslator.h>
#include <tvcore/datamodelcontext.h>
#include <tvcore/featuresettings.h>
#include <tvcore/printermodel.h>
#include <tvcore/tvcoreapi.h>

class TVCORE_API FeatureServices : public FeatureSettings
{
public:
    FeatureServices();
    ~FeatureServices();
    FeatureServices(const FeatureServices&) = delete;
    FeatureServices& operator=(const FeatureServices&) = delete;

    // The printer's media types, its default first.
    [[nodiscard]] const std::vector<PrinterModel::MediaType>& GetMediaTypes() const;
    void SetMediaTypes(std::vector<PrinterModel::MediaType> mediaTypes);

    // The paper; nothing when the devmode's is none of the printer's.
    using PageSize = DataModelContext::PageSize;
    [[nodiscard]] const std::optional<PageSize>& GetPageSize() const;
    void SetPageSize(const PageSize& pageSize);

    // By TranslatorIds; other numbers throw std::invalid_argument. The translator borrows the services.
    [[nodiscard]] AttributeBytesListTranslator GetTranslator(LONG translator, LONG format, LONG scope);

    // ---- Population, in this order; a DataModelManager knows the rest of it.

    // Settings and paper are gone; the printer's media types and the defaults stay.
    void ForgetSettings();
    // Asks the source that is connected, if any, for the core driver's settings. `use` is what the model is for (3: the
    // settings of a print ticket) and accepted only: all uses have the same sources.
    void PopulateFromSource(LONG use);
    // Every feature that has no value gets its default.
    void CompleteFromDefaults();
    // What there is now is what the devmode and the printer say: changes are counted from here on.
    void KeepAsUnchanged();

    [[nodiscard]] bool IsChanged(const FeatureIdWithContext& feature) const;
    [[nodiscard]] bool PageSizeIsChanged() const;

    void SetDefaults(const FeatureSettings& defaults);
    // None: the former one is gone.
    void SetSource(std::function<void()> source);

private:
    std::vector<PrinterModel::MediaType> m_mediaTypes;
    std::optional<PageSize> m_pageSize;
    FeatureSettings m_defaults;
    FeatureSettings m_unchanged;
    std::optional<PageSize> m_unchangedPageSize;
    std::function<void()> m_source;
};
