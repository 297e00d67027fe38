#include "corehelper.h"

#include <objbase.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

#include <tvcore/datamodelids.h>
#include <tvutil/devmodebounds.h>

#include "complugins/msdevmodeusingreverseengineering.h"

namespace
{

namespace Features = DataModelIds::Feature;

constexpr DWORD kNoConflict = 1; // SETOPTIONS_RESULT_NO_CONFLICT
constexpr char kBooklet[] = "Booklet";

// A copy of a devmode, in which its settings are looked up and changed.
class DevmodeCopy
{
public:
    DevmodeCopy(const DEVMODEW* devmode, const MsDriverKind& driver)
        : m_bytes(std::size_t{devmode->dmSize} + devmode->dmDriverExtra)
    {
        std::memcpy(m_bytes.data(), devmode, m_bytes.size());
        m_settings =
            std::make_unique<MsDevmodeUsingReverseEngineering>(driver, reinterpret_cast<DEVMODEW*>(m_bytes.data()));
        m_settings->Initialize();
    }

    [[nodiscard]] MsDevmodeUsingReverseEngineering& Settings() noexcept
    {
        return *m_settings;
    }

    // Not when it lies in a private part of which nobody knows what it is.
    [[nodiscard]] bool CanReach(const MsDevmodeBase::Feature& feature) const
    {
        const MsDriverKind& driver = m_settings->GetDriverKind();
        const MsDevmodeCell cell = MsDevmodeOffsets::FindPlace(feature.feature, driver).cell;
        const bool isRotatedByBit = (driver.kind & MsDriverKind::kPostScript) != 0;
        return m_settings->IsLayoutRecognized() || cell == MsDevmodeCell::Public ||
               (cell == MsDevmodeCell::PublicRotated && !isRotatedByBit);
    }

    void WriteTo(DEVMODEW* devmode) const noexcept
    {
        std::memcpy(devmode, m_bytes.data(), m_bytes.size());
    }

private:
    std::vector<std::byte> m_bytes;
    std::unique_ptr<MsDevmodeUsingReverseEngineering> m_settings;
};

// Pages per sheet and booklet are one feature to the core driver.
bool IsSheet(const MsDevmodeBase::Feature& feature)
{
    return feature.feature == Features::MsPagesPerSheet;
}

std::string ReadOption(MsDevmodeBase& settings, const MsDevmodeBase::Feature& feature)
{
    if (IsSheet(feature) && settings.GetMsFeatureValue(Features::MsBooklet, MsDevmodeBase::Raw) != 0)
        return kBooklet;
    return settings.GetIPrintCoreHelperValueFromFeatureValue_Helper(
        feature.feature, settings.GetMsFeatureValue(feature.feature, MsDevmodeBase::Raw));
}

void WriteOption(MsDevmodeUsingReverseEngineering& settings, const MsDevmodeBase::Feature& feature, const char* option)
{
    const std::uint32_t value =
        settings.GetFeatureValueFromIPrintCoreHelperValue_Helper(feature.feature, option, MsDevmodeBase::Raw);
    if (IsSheet(feature))
        settings.SetMsFeatureValue(Features::MsBooklet, std::string_view(option) == kBooklet ? 1 : 0,
                                   MsDevmodeBase::Raw);
    // The colour printing mode is a matter of the driver's data file: the core driver knows nothing of what it means.
    const auto offset = MsDevmodeOffsets::FindDriverOffset(feature.feature, settings.GetDriverKind());
    if (feature.feature == Features::MsColorPrintingMode && offset)
        return settings.SetMsPrivateDmFeatureValue_Helper(*offset, 0, value);
    settings.SetMsFeatureValue(feature.feature, value, MsDevmodeBase::Raw);
}

// Whether the core driver knows the feature by a keyword, and has a place for it.
bool IsKnown(const MsDevmodeBase::Feature& feature, const MsDriverKind& driver)
{
    const MsDevmodeCell cell = MsDevmodeOffsets::FindPlace(feature.feature, driver).cell;
    return feature.keyword != nullptr && !feature.values.empty() && cell != MsDevmodeCell::NotAvailable &&
           cell != MsDevmodeCell::NoOffset;
}

const MsDevmodeBase::Feature* FindKeyword(const std::vector<MsDevmodeBase::Feature>& features, std::string_view keyword)
{
    const auto found = std::find_if(features.begin(), features.end(),
                                    [keyword](const auto& feature) { return feature.keyword == keyword; });
    return found != features.end() ? &*found : nullptr;
}

// No exception leaves a COM object.
template <class Operation>
HRESULT Guarded(Operation operation) noexcept
{
    try
    {
        return operation();
    }
    catch (const std::bad_alloc&)
    {
        return E_OUTOFMEMORY;
    }
    catch (...)
    {
        return E_FAIL;
    }
}

} // namespace

void CoreHelper::Keywords::Assign(const std::vector<std::string>& keywords)
{
    m_texts.clear();
    m_pointers.clear();
    for (const std::string& keyword : keywords)
        m_texts.emplace_back(keyword.c_str(), keyword.c_str() + keyword.size() + 1);
    for (const std::vector<char>& text : m_texts)
        m_pointers.push_back(text.data());
}

PCSTR* CoreHelper::Keywords::Get() noexcept
{
    return m_pointers.data();
}

DWORD CoreHelper::Keywords::Count() const noexcept
{
    return static_cast<DWORD>(m_pointers.size());
}

ComPtr<CoreHelper> CoreHelper::Make(const PrinterModel& model)
{
    ComPtr<CoreHelper> helper;
    helper.Attach(new CoreHelper(model));
    return helper;
}

CoreHelper::CoreHelper(const PrinterModel& model)
    : m_driver(MsDriverKind::FromCapabilityWord(model.capability)), m_isColor(model.IsColor())
{
    DEVMODEW none{};
    none.dmSize = sizeof none;
    const MsDevmodeUsingReverseEngineering settings(m_driver, &none);
    for (const MsDevmodeBase::Feature& feature : settings.GetFeatures())
        if (IsKnown(feature, m_driver) && FindKeyword(m_features, feature.keyword) == nullptr)
            m_features.push_back(feature);
    for (const PrinterModel::Resolution& resolution : model.resolutions)
        m_resolutions.push_back(MsDevmodeValues::Resolution(resolution.x, resolution.y));
}

CoreHelper::~CoreHelper() = default;

HRESULT STDMETHODCALLTYPE CoreHelper::QueryInterface(REFIID riid, void** object)
{
    if (object == nullptr)
        return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(riid, IID_IUnknown) && !IsEqualIID(riid, IID_IPrintCoreHelper))
        return E_NOINTERFACE;
    *object = static_cast<IPrintCoreHelper*>(this);
    AddRef();
    return S_OK;
}

ULONG STDMETHODCALLTYPE CoreHelper::AddRef()
{
    return ++m_references;
}

ULONG STDMETHODCALLTYPE CoreHelper::Release()
{
    const ULONG left = --m_references;
    if (left == 0)
        delete this;
    return left;
}

HRESULT STDMETHODCALLTYPE CoreHelper::GetOption(const DEVMODEW* devmode, DWORD devmodeSize, PCSTR featureKeyword,
                                                PCSTR* optionKeyword)
{
    if (optionKeyword == nullptr || featureKeyword == nullptr)
        return E_POINTER;
    *optionKeyword = nullptr;
    return Guarded(
        [&]
        {
            const MsDevmodeBase::Feature* const feature = FindKeyword(m_features, featureKeyword);
            if (feature == nullptr || !DevmodeFitsIn(devmode, devmodeSize))
                return E_INVALIDARG;
            DevmodeCopy copy(devmode, m_driver);
            if (!copy.CanReach(*feature))
                return E_FAIL;
            m_answer.Assign({ReadOption(copy.Settings(), *feature)});
            *optionKeyword = *m_answer.Get();
            return S_OK;
        });
}

HRESULT STDMETHODCALLTYPE CoreHelper::SetOptions(DEVMODEW* devmode, DWORD devmodeSize, BOOL,
                                                 const PRINT_FEATURE_OPTION* pairs, DWORD pairCount,
                                                 DWORD* pairsWritten, DWORD* result)
{
    if (pairsWritten == nullptr || result == nullptr || (pairs == nullptr && pairCount != 0))
        return E_POINTER;
    *pairsWritten = 0;
    *result = kNoConflict;
    return Guarded(
        [&]
        {
            const std::span<const PRINT_FEATURE_OPTION> wanted(pairs, pairCount);
            if (!DevmodeFitsIn(devmode, devmodeSize) ||
                !std::all_of(wanted.begin(), wanted.end(), [this](const auto& pair) { return HasOption(pair); }))
                return E_INVALIDARG;
            DevmodeCopy changed(devmode, m_driver);
            for (const PRINT_FEATURE_OPTION& pair : wanted)
            {
                const MsDevmodeBase::Feature& feature = *FindKeyword(m_features, pair.pszFeature);
                if (!changed.CanReach(feature))
                    return E_FAIL;
                WriteOption(changed.Settings(), feature, pair.pszOption);
            }
            changed.WriteTo(devmode);
            *pairsWritten = pairCount;
            return S_OK;
        });
}

HRESULT STDMETHODCALLTYPE CoreHelper::EnumConstrainedOptions(const DEVMODEW*, DWORD, PCSTR featureKeyword,
                                                             PCSTR** optionKeywords, DWORD* optionCount)
{
    if (featureKeyword == nullptr || optionKeywords == nullptr || optionCount == nullptr)
        return E_POINTER;
    *optionKeywords = nullptr; // nothing constrains anything
    *optionCount = 0;
    return FindKeyword(m_features, featureKeyword) != nullptr ? S_OK : E_INVALIDARG;
}

HRESULT STDMETHODCALLTYPE CoreHelper::WhyConstrained(const DEVMODEW*, DWORD, PCSTR featureKeyword, PCSTR optionKeyword,
                                                     const PRINT_FEATURE_OPTION** constraints, DWORD* constraintCount)
{
    if (featureKeyword == nullptr || optionKeyword == nullptr || constraints == nullptr || constraintCount == nullptr)
        return E_POINTER;
    *constraints = nullptr;
    *constraintCount = 0;
    return HasOption({featureKeyword, optionKeyword}) ? S_OK : E_INVALIDARG;
}

HRESULT STDMETHODCALLTYPE CoreHelper::EnumFeatures(PCSTR** featureKeywords, DWORD* featureCount)
{
    if (featureKeywords == nullptr || featureCount == nullptr)
        return E_POINTER;
    return Guarded(
        [&]
        {
            m_answer.Assign(FeatureKeywords());
            *featureKeywords = m_answer.Get();
            *featureCount = m_answer.Count();
            return S_OK;
        });
}

HRESULT STDMETHODCALLTYPE CoreHelper::EnumOptions(PCSTR featureKeyword, PCSTR** optionKeywords, DWORD* optionCount)
{
    if (featureKeyword == nullptr || optionKeywords == nullptr || optionCount == nullptr)
        return E_POINTER;
    return Guarded(
        [&]
        {
            const std::vector<std::string> options = OptionsOf(featureKeyword);
            if (options.empty())
                return E_INVALIDARG;
            m_answer.Assign(options);
            *optionKeywords = m_answer.Get();
            *optionCount = m_answer.Count();
            return S_OK;
        });
}

HRESULT STDMETHODCALLTYPE CoreHelper::GetFontSubstitution(PCWSTR, PCWSTR*)
{
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE CoreHelper::SetFontSubstitution(PCWSTR, PCWSTR)
{
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE CoreHelper::CreateInstanceOfMSXMLObject(REFCLSID classId, IUnknown* outer, DWORD context,
                                                                  REFIID riid, PVOID* object)
{
    return CoCreateInstance(classId, outer, context, riid, object);
}

std::vector<std::string> CoreHelper::FeatureKeywords() const
{
    std::vector<std::string> keywords;
    for (const MsDevmodeBase::Feature& feature : m_features)
        keywords.emplace_back(feature.keyword);
    return keywords;
}

// Empty for a feature that the driver does not have.
std::vector<std::string> CoreHelper::OptionsOf(std::string_view featureKeyword) const
{
    std::vector<std::string> options;
    if (const MsDevmodeBase::Feature* const feature = FindKeyword(m_features, featureKeyword))
        for (const MsDevmodeValueRow& row : feature->values)
            if (HasOption(*feature, row))
                options.emplace_back(row.keyword);
    return options;
}

bool CoreHelper::HasOption(const MsDevmodeBase::Feature& feature, const MsDevmodeValueRow& row) const
{
    switch (feature.feature)
    {
    case Features::MsResolution:
        return std::find(m_resolutions.begin(), m_resolutions.end(), row.devmodeValue) != m_resolutions.end();
    case Features::MsColorPrintingMode:
        return m_isColor || row.valueId == DataModelIds::Value::ColorModeMonochrome;
    default:
        return true;
    }
}

bool CoreHelper::HasOption(const PRINT_FEATURE_OPTION& pair) const
{
    if (pair.pszFeature == nullptr || pair.pszOption == nullptr)
        return false;
    const std::vector<std::string> options = OptionsOf(pair.pszFeature);
    return std::find(options.begin(), options.end(), pair.pszOption) != options.end();
}
