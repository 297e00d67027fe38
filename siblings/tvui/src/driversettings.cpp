#include "driversettings.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <vector>

#include <tvcore/featurevalues.h>
#include <tvui/defaultdevmode.h>
#include <tvutil/attributebytesindexedlist.h>
#include <tvutil/persistentattributes.h>

#include "complugins/devicepaperlist.h"
#include "complugins/fixedtext.h"
#include "complugins/xdevmode.h"
#include "formlist.h"

namespace
{

constexpr auto kDocument = PersistentAttributes::GetDataModelDocPropNameSpaceId();
constexpr auto kCapabilities = PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId();

// What the model's reader grants to the defaults fits beside the longest paper list: the state's header, two
// namespaces' headers and one attribute's are 12 + 2 * 8 + 8 bytes.
static_assert(12 + 2 * 8 + 8 + PrinterModel::kMaxDocumentDefaults + DevicePaperList::kMaxSize <=
              OemDevmodeFormat::kMaxPersistentAttributesSize);

// The devmode's name is cut where a form's is longer.
bool IsNamed(const FormsInfoRecord& form, const DEVMODEW& devmode)
{
    return form.GetName().substr(0, CCHFORMNAME - 1) == GetFixedText(devmode.dmFormName);
}

// Two forms may share a number; then the name tells which it is.
std::size_t FindOwnForm(std::span<const FormsInfoRecord> forms, const DEVMODEW& devmode)
{
    const auto hasNumber = [&devmode](const FormsInfoRecord& form)
    {
        return form.paperId == static_cast<WORD>(devmode.dmPaperSize);
    };
    auto own = std::find_if(forms.begin(), forms.end(),
                            [&](const FormsInfoRecord& form) { return hasNumber(form) && IsNamed(form, devmode); });
    if (own == forms.end())
        own = std::find_if(forms.begin(), forms.end(), hasNumber);
    return static_cast<std::size_t>(own - forms.begin());
}

// The stored settings with this paper list, or new ones; nothing when they are not ours to rewrite or become too long.
std::optional<ByteBuffer> WithPaperList(const ProductData& product, const ByteBuffer& stored, const ByteBuffer& papers)
{
    PersistentAttributes settings(stored, kDriverDevmodeVersion);
    AttributeBytesIndexedList capabilities; // empty, and replaced, when they cannot be read: only drivers write them
    capabilities.ImportFromRawList(settings.GetAttributeBytesListForNameSpace(kCapabilities));
    const AttributeBytesValue list{AttributeBytesKind::Binary, 0, papers};
    const auto* const before = capabilities.GetAttributeBytes(DataModelIds::Feature::DevicePaperList);
    if (before != nullptr && *before == list)
        return settings.GetPersistentAttributesState(); // as it was, without what stood behind the state
    capabilities.SetAttributeBytes(DataModelIds::Feature::DevicePaperList, list);

    AttributeBytesNameSpaces nameSpaces;
    if (!settings.IsReadable())
        nameSpaces.SetAttributeBytesList(kDocument, AttributeBytesRawList(FeatureCatalogue::MakeSettings(
                                                        product.GetDefaults(), FeatureCatalogue::Scope::Document)));
    nameSpaces.SetAttributeBytesList(kCapabilities, AttributeBytesRawList(capabilities));
    if (!settings.SetAttributeBytesNameSpaces(nameSpaces) ||
        settings.GetPersistentAttributesState().size() > OemDevmodeFormat::kMaxPersistentAttributesSize)
        return std::nullopt;
    return settings.GetPersistentAttributesState();
}

} // namespace

void CompleteDriverSettings(const ProductData& product, ByteBuffer& devmode)
{
    DEVMODEW fields{};
    std::memcpy(&fields, devmode.data(), sizeof fields);
    const std::vector<FormsInfoRecord> forms = MakeFormListOfUser(product);
    const std::size_t own = FindOwnForm(forms, fields);
    const auto onlyOwn = std::span(forms).subspan(own, own < forms.size() ? 1 : 0);

    XDevmode wrapper(reinterpret_cast<DEVMODEW*>(devmode.data()));
    const ByteBuffer* const entry = wrapper.GetPropertyBagEntry(OemDevmodeFormat::kPersistentAttributesKey);
    const ByteBuffer stored = entry != nullptr ? *entry : ByteBuffer(); // setting the entry below ends its life
    for (const ByteBuffer& papers : {DevicePaperList::Write(forms, own), DevicePaperList::Write(onlyOwn, 0)})
    {
        const std::optional<ByteBuffer> settings = WithPaperList(product, stored, papers);
        if (!settings)
            continue;
        if (*settings == stored)
            return;
        wrapper.SetPropertyBagEntry(OemDevmodeFormat::kPersistentAttributesKey, *settings);
        if (wrapper.CommitToDevmode())
            return;
    }
}
