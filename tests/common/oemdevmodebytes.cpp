#include "tests/common/oemdevmodebytes.h"

#include <algorithm>
#include <iterator>

#include <tvcore/datamodelids.h>
#include <tvutil/attributebytesindexedlist.h>
#include <tvutil/attributebytesreader.h>
#include <tvutil/bytewriter.h>
#include <tvutil/crc32.h>
#include <tvutil/persistentattributes.h>

#include "complugins/devicepaperlist.h"
#include "complugins/oemdevmode.h"

namespace Format = OemDevmodeFormat;

OemDevmodeBytes::Bytes OemDevmodeBytes::Make(CoreDriverLayout layout, const Entries& entries)
{
    Bytes devmode(kPartOffset + Format::kSize);
    DEVMODEW fields{};
    std::fill(std::begin(fields.dmDeviceName), std::end(fields.dmDeviceName), W('n'));
    std::fill(std::begin(fields.dmFormName), std::end(fields.dmFormName), W('f'));
    fields.dmSpecVersion = DM_SPECVERSION;
    fields.dmSize = sizeof(fields);
    fields.dmDriverExtra = static_cast<WORD>(devmode.size() - sizeof(fields));
    const std::span<std::byte> bytes(devmode);
    ByteWriter(bytes).Bytes(std::as_bytes(std::span(&fields, 1)));
    const bool isPostScript = layout == CoreDriverLayout::PostScript;
    ByteWriter core(bytes.subspan(sizeof(fields)));
    core.Zeros(isPostScript ? Format::kPostScriptSizeOffset : Format::kUnidrvSizeOffset);
    core.U16(kCoreSize);
    ByteWriter part(bytes.subspan(kPartOffset));
    part.U32(Format::kSize);
    part.U32(Format::kSignature);
    part.U32(1);
    for (std::size_t at = Format::kHeaderSize; at < Format::kCrcOffset; ++at)
        part.U8(0xAB); // left as found, whatever it is
    part.U32(0);
    part.U16(static_cast<std::uint16_t>(entries.size()));
    for (const auto& [key, value] : entries)
    {
        part.U16(key);
        part.U16(static_cast<std::uint16_t>(value.size()));
        part.Bytes(value.bytes());
    }
    if (!entries.empty())
        StampCrc(PartOf(devmode));
    return devmode;
}

ByteBuffer OemDevmodeBytes::Text(WStringView text)
{
    ByteBuffer buffer;
    buffer.appendString(text);
    return buffer;
}

std::span<std::byte> OemDevmodeBytes::PartOf(std::span<std::byte> devmode)
{
    return devmode.subspan(kPartOffset, Format::kSize);
}

void OemDevmodeBytes::StampCrc(std::span<std::byte> part)
{
    ByteWriter(part.subspan(Format::kCrcOffset)).U32(Crc32::GetCrc(&part[Format::kCountOffset], Format::kCheckedSize));
}

ByteBuffer OemDevmodeBytes::MakeState(bool flag, std::span<const FormsInfoRecord> forms)
{
    const auto toRaw = [](AttributeBytesFeatureId feature, AttributeBytesValue value)
    {
        AttributeBytesIndexedList list;
        list.SetAttributeBytes(feature, std::move(value));
        AttributeBytesRawList raw;
        raw.ImportFromIndexedList(list);
        return raw;
    };
    AttributeBytesNameSpaces nameSpaces;
    nameSpaces.SetAttributeBytesList(PersistentAttributes::GetDataModelDocPropNameSpaceId(),
                                     toRaw(kFlagFeature, MakeBooleanAttributeBytes(flag)));
    const AttributeBytesValue papers{AttributeBytesKind::Binary, 0, DevicePaperList::Write(forms, forms.size())};
    nameSpaces.SetAttributeBytesList(PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId(),
                                     toRaw(DataModelIds::Feature::DevicePaperList, papers));
    PersistentAttributes state;
    state.SetAttributeBytesNameSpaces(nameSpaces);
    return state.GetPersistentAttributesState();
}

FormsInfoRecord OemDevmodeBytes::MakeForm(int paperId, WStringView name, int width, int length, int formType)
{
    FormsInfoRecord form;
    form.paperId = static_cast<std::uint16_t>(paperId);
    form.width = width;
    form.length = length;
    form.valueId = DataModelIds::Value::PageSizeFirst;
    form.units = DataModelIds::Value::UnitsMetric;
    form.formType = formType;
    form.SetName(name);
    return form;
}

ByteBuffer OemDevmodeBytes::StateOf(const AttributeBytesRawList& list, int nameSpace)
{
    AttributeBytesNameSpaces nameSpaces;
    nameSpaces.SetAttributeBytesList(AttributeBytesNameSpacesId(nameSpace), list);
    PersistentAttributes state;
    state.SetAttributeBytesNameSpaces(nameSpaces);
    return state.GetPersistentAttributesState();
}
