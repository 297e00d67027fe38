#include "devmodesettings.h"

#include <charconv>
#include <optional>
#include <stdexcept>

#include <tvcore/featurevalues.h>
#include <tvutil/persistentattributes.h>
#include <tvutil/singleline.h>

#include "complugins/xdevmode.h"
#include "corefeatures.h"
#include "devmodefields.h"
#include "failure.h"
#include "oempart.h"

namespace
{

namespace Format = OemDevmodeFormat;

constexpr char kSetting[] = "setting a field";
constexpr std::string_view kFeaturePrefix = "feature.";
constexpr std::size_t kMaxApplicationName = 255; // characters; as long as file names are

struct Setting
{
    std::string key;
    std::string value;
};

Setting ParseSetting(const std::string& text)
{
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0)
        throw UsageFailure("--set: \"" + text + "\" is not KEY=VALUE");
    return {text.substr(0, equals), text.substr(equals + 1)};
}

void SetPublicField(const Setting& setting, Devmode& devmode)
{
    DEVMODEW fields = devmode.Public();
    const DevmodeField* const field = FindDevmodeField(setting.key);
    if (field == nullptr)
        Fail(kSetting, setting.key, "no field has this name");
    if (field->offset + DevmodeFieldWidth(*field) > fields.dmSize)
        Fail(kSetting, setting.key, "the devmode's public part ends before this field");
    SetDevmodeField(fields, *field, setting.value);
    devmode.SetPublic(fields);
}

// "feature.46"
const FeatureCatalogue::Row& DocumentFeature(const std::string& key)
{
    const std::string_view digits = std::string_view(key).substr(kFeaturePrefix.size());
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool isNumber = error == std::errc() && end == digits.data() + digits.size();
    const FeatureCatalogue::Row* const row = isNumber ? FeatureCatalogue::Find(number) : nullptr;
    if (row == nullptr)
        Fail(kSetting, key, "the feature catalogue has no such feature");
    if (row->scope == FeatureCatalogue::Scope::Device)
        Fail(kSetting, key, "is a setting of the printer, not of a document");
    return *row;
}

bool IsFileName(const CXString& name)
{
    return IsSingleLine(name.View()) && !IsBlank(name.View()) &&
           name.View().find_first_of(W("/\\:*?\"<>|")) == WStringView::npos;
}

// The maker's part of a devmode while its settings are edited.
class OemEditor
{
public:
    // `key` is the setting that wants the part.
    OemEditor(Devmode& devmode, const std::string& key) : m_wrapper(devmode.Raw())
    {
        const auto parts = LocateDriverParts(devmode.DriverExtra());
        if (!parts)
            Fail(kSetting, key, "the devmode has no maker's part (" + ExplainNoOemPart(devmode.DriverExtra()) + ")");
        const OemContent content = ReadOemPart(*parts->oem);
        if (!content.fault.empty())
            Fail(kSetting, key,
                 "the maker's part is damaged (" + content.fault + "): an edit would lose what it holds");
        if (!content.repeatedKeys.empty())
            Fail(kSetting, key,
                 "the maker's part has more than one entry of key " + std::to_string(*content.repeatedKeys.begin()) +
                     ": an edit would keep the first only");
        m_settings = ReadStoredSettings(content);
    }

    void SetFeature(const Setting& setting)
    {
        const FeatureCatalogue::Row& row = DocumentFeature(setting.key);
        if (!m_settings.fault.empty())
            Fail(kSetting, setting.key, m_settings.fault + ": an edit would lose what they hold");
        try
        {
            FeatureCatalogue::StoreValue(m_settings.features, row,
                                         FeatureCatalogue::ParseValue(row, setting.value, true));
        }
        catch (const std::invalid_argument& limit)
        {
            Fail(kSetting, setting.key, limit.what());
        }
        StoreFeatures(setting.key);
    }

    void SetApplication(const Setting& setting)
    {
        const CXString name = CXString::FromUtf8(setting.value);
        if (!IsFileName(name) || name.Length() > kMaxApplicationName || name.ToUtf8() != setting.value)
            Fail(kSetting, setting.key,
                 "must be a file name without a folder, in UTF-8, of 1 to " + std::to_string(kMaxApplicationName) +
                     " characters");
        ByteBuffer entry;
        entry.appendString(name);
        StoreEntry(Format::kApplicationNameKey, entry, setting.key);
    }

private:
    void StoreFeatures(const std::string& key)
    {
        const ByteBuffer* const stored = m_wrapper.GetPropertyBagEntry(Format::kPersistentAttributesKey);
        PersistentAttributes settings(stored != nullptr ? *stored : ByteBuffer());
        AttributeBytesNameSpaces nameSpaces;
        nameSpaces.SetAttributeBytesList(PersistentAttributes::GetDataModelDocPropNameSpaceId(),
                                         AttributeBytesRawList(m_settings.features));
        settings.SetAttributeBytesNameSpaces(nameSpaces); // readable, so ours to rewrite
        const std::size_t size = settings.GetPersistentAttributesState().size();
        if (size > Format::kMaxPersistentAttributesSize)
            Fail(kSetting, key,
                 "the settings would take " + std::to_string(size) + " bytes, a devmode has room for " +
                     std::to_string(Format::kMaxPersistentAttributesSize));
        StoreEntry(Format::kPersistentAttributesKey, settings.GetPersistentAttributesState(), key);
    }

    void StoreEntry(std::uint16_t entry, const ByteBuffer& value, const std::string& key)
    {
        m_wrapper.SetPropertyBagEntry(entry, value);
        if (!m_wrapper.CommitToDevmode())
            Fail(kSetting, key,
                 "the maker's part would take " + std::to_string(m_wrapper.GetOemDevmodeDataSize()) +
                     " bytes, it has " + std::to_string(Format::kSize));
    }

    XDevmode m_wrapper;
    StoredSettings m_settings;
};

} // namespace

void ApplySettings(const std::vector<std::string>& settings, Devmode& devmode, const PrinterModel* model)
{
    Devmode changed = devmode;
    std::optional<OemEditor> oem; // made for the first setting that wants it
    for (const std::string& text : settings)
    {
        const Setting setting = ParseSetting(text);
        const bool isFeature = setting.key.starts_with(kFeaturePrefix);
        if (setting.key.starts_with(kCoreFeaturePrefix))
        {
            SetCoreFeature(setting.key, setting.value, changed, model);
            continue;
        }
        if (!isFeature && setting.key != "app")
        {
            SetPublicField(setting, changed);
            continue;
        }
        if (!oem)
            oem.emplace(changed, setting.key);
        if (isFeature)
            oem->SetFeature(setting);
        else
            oem->SetApplication(setting);
    }
    devmode = std::move(changed);
}
