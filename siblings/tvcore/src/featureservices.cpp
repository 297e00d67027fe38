#include <tvcore/featureservices.h>

#include <stdexcept>
#include <utility>

namespace
{

bool IsSame(const FeatureValue* left, const FeatureValue* right)
{
    return left != nullptr && right != nullptr ? *left == *right : left == right;
}

} // namespace

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

const std::optional<FeatureServices::PageSize>& FeatureServices::GetPageSize() const
{
    return m_pageSize;
}

void FeatureServices::SetPageSize(const PageSize& pageSize)
{
    m_pageSize = pageSize;
}

AttributeBytesListTranslator FeatureServices::GetTranslator(LONG translator, LONG format, LONG scope)
{
    using FeatureCatalogue::Scope;
    const bool isKnown = translator == TranslatorIds::kSettings && format == TranslatorIds::kAttributeBytes &&
                         (scope == TranslatorIds::kDocument || scope == TranslatorIds::kDevice);
    if (!isKnown)
        throw std::invalid_argument("the data model has no such translator");
    return {scope == TranslatorIds::kDocument ? Scope::Document : Scope::Device, *this, m_defaults};
}

void FeatureServices::ForgetSettings()
{
    Clear();
    m_pageSize.reset();
}

void FeatureServices::PopulateFromSource(LONG /*use*/)
{
    if (m_source)
        m_source();
}

void FeatureServices::CompleteFromDefaults()
{
    AddMissing(m_defaults);
}

void FeatureServices::KeepAsUnchanged()
{
    m_unchanged = static_cast<const FeatureSettings&>(*this);
    m_unchangedPageSize = m_pageSize;
}

bool FeatureServices::IsChanged(const FeatureIdWithContext& feature) const
{
    return !IsSame(FindValue(feature), m_unchanged.FindValue(feature));
}

bool FeatureServices::PageSizeIsChanged() const
{
    return m_pageSize != m_unchangedPageSize;
}

void FeatureServices::SetDefaults(const FeatureSettings& defaults)
{
    m_defaults = defaults;
}

void FeatureServices::SetSource(std::function<void()> source)
{
    m_source = std::move(source);
}
