// The media type translator: feature 175 of the document's settings, where it lies in the collections 477 and 210, or
// of the data model while that is in use, and the feature "PageMediaType".
#include <tvcore/featurereferences.h>
#include <tvcore/featureservices.h>
#include <tvcore/standardmedia.h>
#include <tvutil/attributebytesindexedlist.h>
#include <tvutil/attributebytesreader.h>
#include <tvutil/crc32.h>

#include <algorithm>
#include <memory>

#include "complugins/mscacheddevicecapabilities.h"
#include "complugins/ptpcprovider/domhelpers.h"
#include "complugins/ptpcprovider/featuretranslation.h"
#include "complugins/ptpcprovider/mediatypetable.h"
#include "complugins/ptpcprovider/printcapabilitiesxmldocument.h"
#include "complugins/ptpcprovider/productstrings.h"
#include "complugins/ptpcprovider/spoolermediatypes.h"
#include "complugins/ptpcprovider/tavlenptprovider.h"
#include "complugins/xdevmode.h"

namespace Feature = DataModelIds::Feature;
namespace Value = DataModelIds::Value;

// A media type of the printer, and how documents name it.
struct TavlenPtProvider::MediaTypeDataEntry
{
    CXString displayName; // the printer's
    std::int32_t mediaTypeId;
    CXString optionName;
    MediaTypeTable::Namespace nameSpace;
    MediaTypeTable::PropertyValues properties;

    [[nodiscard]] bool IsNamedBy(const TicketOption& option) const
    {
        const OptionNamespace own =
            nameSpace == MediaTypeTable::kPublic ? OptionNamespace::Keywords : OptionNamespace::PrivateKeywords;
        return option.name == optionName && option.nameSpace == own;
    }
};

namespace
{

constexpr WCHAR kFeature[] = W("PageMediaType");
constexpr WCHAR kCustomType[] = W("CustomType_");
constexpr std::size_t kLongestName = 64; // characters

// What is set in a devmode, or is to be.
struct MediaChoice
{
    std::int32_t id = Value::Automatic;
    CXString name; // of a custom type
};

constexpr bool IsCustom(std::int32_t mediaTypeId) noexcept
{
    return mediaTypeId > Value::MediaLastReserved;
}

// A custom type has no name of its own in documents: it goes by the CRC of its name's UTF-16 bytes.
CXString CustomOptionName(const CXString& name)
{
    return CXString::Format(W("%s%u"), {kCustomType, Crc32::GetCrc(name.c_str(), name.Length() * sizeof(WCHAR))});
}

// ---- The settings: feature 175 in the collections 477 and 210 ----

AttributeBytesIndexedList CollectionOf(const AttributeBytesIndexedList& settings, AttributeBytesFeatureId feature)
{
    const std::unique_ptr<AttributeBytesIndexedList> collection = settings.GetCollection(feature);
    return collection ? *collection : AttributeBytesIndexedList();
}

// Without a setting, or with one that cannot be read, the printer chooses.
MediaChoice ReadChoice(const AttributeBytesIndexedList& settings)
{
    const AttributeBytesIndexedList media =
        CollectionOf(CollectionOf(settings, Feature::PageMediaCollection), Feature::MediaCollection);
    const auto option = AttributeBytesReader::GetOptionValueFromAttributeBytes(media, Feature::MediaType);
    return option ? MediaChoice{option->GetValueId(), option->GetValueName()} : MediaChoice();
}

// A media type that is chosen by the printer is stored as no real choice.
AttributeBytesOptionValue OptionValueOf(const MediaChoice& choice)
{
    if (IsCustom(choice.id))
        return {AttributeBytesNewValueId(choice.id, choice.name), true};
    return {AttributeBytesValueId(choice.id), choice.id != Value::Automatic};
}

// Both collections are rebuilt around the value; whatever else is in them stays. Something else in a collection's place
// gives way to it.
void WriteChoice(AttributeBytesIndexedList& settings, const MediaChoice& choice)
{
    AttributeBytesIndexedList pageMedia = CollectionOf(settings, Feature::PageMediaCollection);
    AttributeBytesIndexedList media = CollectionOf(pageMedia, Feature::MediaCollection);
    media.SetAttributeBytes(Feature::MediaType, OptionValueOf(choice));
    pageMedia.SetCollection(Feature::MediaCollection, media);
    settings.SetCollection(Feature::PageMediaCollection, pageMedia);
}

// ---- The data model: feature 175 in the context of 477 ----

OptionFeatureRef MediaTypeOf(FeatureServices& dataModel)
{
    return {dataModel, FeatureIdWithContext(Feature::MediaType).PushFeature(Feature::PageMediaCollection)};
}

MediaChoice ReadChoice(FeatureServices& dataModel)
{
    const std::optional<ValueId> value = MediaTypeOf(dataModel).GetValue();
    return value ? MediaChoice{value->GetValueEnum(), value->GetValueName()} : MediaChoice();
}

void WriteChoice(FeatureServices& dataModel, const MediaChoice& choice)
{
    MediaTypeOf(dataModel).SetValue(
        ValueId(static_cast<DataModelIds::tagValueEnum>(choice.id), IsCustom(choice.id) ? choice.name : CXString()));
}

template <class Settings>
bool ChangeChoice(Settings& settings, const MediaChoice& choice)
{
    if (ReadChoice(settings).id == choice.id)
        return false;
    WriteChoice(settings, choice);
    return true;
}

} // namespace

// ---- The printer's media types ----

std::vector<TavlenPtProvider::MediaTypeDataEntry>
TavlenPtProvider::GetMediaTypeCachedDeviceCapabilitiesAndPrintSchemaMappings(MsCachedDeviceCapabilities& capabilities)
{
    const FeatureServices* const dataModel = GetLiveDataModel();
    const std::vector<PrinterModel::MediaType> mediaTypes =
        dataModel != nullptr ? dataModel->GetMediaTypes()
                             : AskSpoolerMediaTypes(m_printer.GetPrinterName(), capabilities.GetCachedDevmode());
    std::vector<MediaTypeDataEntry> entries;
    for (const PrinterModel::MediaType& media : mediaTypes)
    {
        const CXString name = media.name.Mid(0, kLongestName);
        const std::int32_t id = FoldStandardMediaNumber(media.id);
        const MediaTypeTable::Row* row = MediaTypeTable::FindRow(id);
        if (id == Value::Automatic || IsCustom(id))
            row = MediaTypeTable::FindRow(Value::MediaAutoSelect);
        if (row == nullptr)
            continue; // nobody knows it
        MediaTypeDataEntry entry{name, row->mediaTypeId, row->optionName, row->nameSpace, row->properties};
        if (IsCustom(id))
        {
            entry.mediaTypeId = id;
            entry.optionName = CustomOptionName(name);
            entry.nameSpace = MediaTypeTable::kPrivate;
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

// ---- Capabilities ----

HRESULT TavlenPtProvider::AddOrReplacePageMediaTypeCapabilities(PrintCapabilitiesXmlDocument& document,
                                                                MsCachedDeviceCapabilities& capabilities)
{
    const std::vector<MediaTypeDataEntry> entries =
        GetMediaTypeCachedDeviceCapabilitiesAndPrintSchemaMappings(capabilities);
    if (entries.empty())
        return E_FAIL; // the document stays as it was
    ComPtr<IXMLDOMElement> feature;
    document.CreatePickOneFeature(kFeature, GetProductStringLoader().LoadStringW(ProductStrings::kMediaType),
                                  feature.Put());
    for (const MediaTypeDataEntry& entry : entries)
        AppendMediaTypeOption(document, feature.Get(), entry);
    ReplaceFeature(document, kFeature, feature.Get());
    return S_OK;
}

void TavlenPtProvider::AppendMediaTypeOption(const PrintCapabilitiesXmlDocument& document, IXMLDOMElement* feature,
                                             const MediaTypeDataEntry& entry)
{
    const CXString keywords = document.GetNsPrefix(PrintSchema::Keywords);
    const CXString prefix =
        entry.nameSpace == MediaTypeTable::kPublic ? keywords : document.GetNsPrefix(PrintSchema::PrivateKeywords);
    ComPtr<IXMLDOMElement> option;
    document.CreateOption(prefix, entry.optionName, TextForDocument(entry.displayName), PrintSchema::kUnconstrained,
                          option.Put());
    for (std::size_t at = 0; at < entry.properties.size(); ++at)
        if (const CXString value(entry.properties[at]); !value.IsEmpty())
            document.AppendChildQNameScoredProperty(option.Get(), keywords + MediaTypeTable::kPropertyNames[at],
                                                    keywords + value);
    document.AppendChild(feature, option.Get());
}

// ---- Devmode to ticket ----

HRESULT TavlenPtProvider::ConvertDevmodeToPageMediaType(PrintTicketXmlDocument& ticket, XDevmode& devmode,
                                                        MsCachedDeviceCapabilities& capabilities)
{
    FeatureServices* const dataModel = GetLiveDataModel();
    const MediaChoice current = dataModel != nullptr
                                    ? ReadChoice(*dataModel)
                                    : ReadChoice(*devmode.GetDataModelDocPropAttributeBytesIndexedList());
    const bool isNamed = IsCustom(current.id) && !current.name.IsEmpty();
    const CXString customKey = isNamed ? CustomOptionName(current.name) : CXString();
    const std::vector<MediaTypeDataEntry> entries =
        GetMediaTypeCachedDeviceCapabilitiesAndPrintSchemaMappings(capabilities);
    if (entries.empty())
        return E_FAIL; // the ticket stays as it was

    // A custom type is known by its name as well as by its number, whichever is found first.
    auto chosen = std::find_if(entries.begin(), entries.end(),
                               [&](const MediaTypeDataEntry& entry)
                               {
                                   return entry.mediaTypeId == current.id ||
                                          (isNamed && IsCustom(entry.mediaTypeId) && entry.optionName == customKey);
                               });
    if (chosen == entries.end())
        chosen = entries.begin(); // on purpose: a ticket always has a media type
    ReplaceTicketOption(ticket, kFeature, chosen->nameSpace == MediaTypeTable::kPublic, chosen->optionName);
    return S_OK;
}

// ---- Ticket to devmode ----

HRESULT TavlenPtProvider::ConvertPageMediaTypeToDevmode(PrintTicketXmlDocument& ticket,
                                                        MsCachedDeviceCapabilities& capabilities,
                                                        AttributeBytesIndexedList* settings, bool* changed)
{
    const std::optional<TicketOption> option = ReadTicketOption(ticket, kFeature);
    if (!option)
        return S_OK;
    const std::vector<MediaTypeDataEntry> entries =
        GetMediaTypeCachedDeviceCapabilitiesAndPrintSchemaMappings(capabilities);
    if (entries.empty())
        return S_OK; // there is nothing to choose from

    auto entry = std::find_if(entries.begin(), entries.end(),
                              [&option](const MediaTypeDataEntry& each) { return each.IsNamedBy(*option); });
    if (entry == entries.end())
        entry = entries.begin(); // on purpose, as for a devmode that has none of them
    const MediaChoice choice{entry->mediaTypeId, entry->displayName};
    FeatureServices* const dataModel = GetLiveDataModel();
    if (dataModel != nullptr ? ChangeChoice(*dataModel, choice)
                             : settings != nullptr && ChangeChoice(*settings, choice)) // null: nowhere to put it
        *changed = true;
    return S_OK;
}
