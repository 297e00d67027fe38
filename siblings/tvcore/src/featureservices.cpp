#include <tvcore/featureservices.h>

#include <utility>

FeatureServices::FeatureServices() = default;
FeatureServices::~FeatureServices() = default;

const std::vector<PrinterModel::MediaType>& FeatureServices::GetMediaTypes() const
{
    return m_mediaTypes;
}

void FeatureServices::SetMediaTypes(std::vector<PrinterModel::MediaType> mediaTypes)
{
    m_mediaTypes = std::move(mediaTypes);
}
