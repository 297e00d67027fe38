#include "complugins/documentsettings.h"

#include <tvutil/persistentattributes.h>

#include "complugins/oemdevmode.h"
#include "complugins/xdevmode.h"

namespace
{

constexpr auto kDocument = PersistentAttributes::GetDataModelDocPropNameSpaceId();
constexpr auto kCapabilities = PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId();

} // namespace

std::unique_ptr<AttributeBytesIndexedList> ReadDocumentSettings(XDevmode& devmode)
{
    const ByteBuffer* const state = devmode.GetPropertyBagEntry(OemDevmodeFormat::kPersistentAttributesKey);
    if (state == nullptr)
        return nullptr;
    auto settings = std::make_unique<AttributeBytesIndexedList>();
    settings->ImportFromRawList(PersistentAttributes(*state).GetAttributeBytesListForNameSpace(kDocument));
    return settings;
}

bool CommitDocumentSettings(XDevmode& devmode, const AttributeBytesIndexedList& settings)
{
    const ByteBuffer* const stored = devmode.GetPropertyBagEntry(OemDevmodeFormat::kPersistentAttributesKey);
    if (stored == nullptr)
        return false;
    PersistentAttributes attributes(*stored);
    AttributeBytesNameSpaces nameSpaces;
    nameSpaces.SetAttributeBytesList(kDocument, AttributeBytesRawList(settings));
    nameSpaces.SetAttributeBytesList(kCapabilities, attributes.GetAttributeBytesListForNameSpace(kCapabilities));
    if (!attributes.SetAttributeBytesNameSpaces(nameSpaces))
        return false; // a state of a later format, which is not ours to rewrite

    // The part has no room for a longer state: the change is dropped without a word, deliberately.
    const ByteBuffer& state = attributes.GetPersistentAttributesState();
    if (state.getDword() > OemDevmodeFormat::kMaxPersistentAttributesSize)
        return false;
    devmode.SetPropertyBagEntry(OemDevmodeFormat::kPersistentAttributesKey, state);
    return devmode.CommitToDevmode();
}
