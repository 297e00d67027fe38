// FeatureServices: the feature data model of one devmode on one printer: its settings, and what the printer offers.
//
// Made and filled by a DataModelManager, which owns it. One thread at a time. The library is delay-loaded
// (tvcore/tvcoreapi.h).
#pragma once

#include <vector>

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

private:
    std::vector<PrinterModel::MediaType> m_mediaTypes;
};
