#include "complugins/devicepaperlist.h"

#include <tvcore/datamodelids.h>
#include <tvutil/bytereader.h>
#include <tvutil/bytewriter.h>

namespace
{

constexpr std::uint16_t kFormat = 1;
constexpr std::size_t kHeaderSize = 4;
constexpr std::size_t kRecordSize = 20; // without the name
constexpr std::size_t kLongestName = FormsInfoRecord::kNameCapacity - 1;

// A record that nobody terminated is cut, as SetName cuts.
WStringView NameOf(const FormsInfoRecord& form) noexcept
{
    return form.GetName().substr(0, kLongestName);
}

std::size_t SizeOf(const FormsInfoRecord& form) noexcept
{
    return kRecordSize + NameOf(form).size() * sizeof(WCHAR);
}

// The forms that fit, in their order. Room for the own one is kept until its turn has come.
std::vector<const FormsInfoRecord*> Choose(std::span<const FormsInfoRecord> forms, std::size_t own)
{
    std::vector<const FormsInfoRecord*> chosen;
    std::size_t room = DevicePaperList::kMaxSize - kHeaderSize;
    for (std::size_t at = 0; at < forms.size(); ++at)
    {
        const std::size_t kept = own > at && own < forms.size() ? SizeOf(forms[own]) : 0;
        if (SizeOf(forms[at]) + kept > room)
        {
            if (kept != 0)
                chosen.push_back(&forms[own]);
            break;
        }
        room -= SizeOf(forms[at]);
        chosen.push_back(&forms[at]);
    }
    return chosen;
}

void WriteForm(ByteWriter& writer, const FormsInfoRecord& form) noexcept
{
    const WStringView name = NameOf(form);
    writer.U16(form.paperId);
    writer.U16(static_cast<std::uint16_t>(form.formType));
    writer.U16(static_cast<std::uint16_t>(form.units));
    writer.U16(static_cast<std::uint16_t>(name.size()));
    writer.I32(form.width);
    writer.I32(form.length);
    writer.I32(form.valueId);
    writer.String(name);
}

FormsInfoRecord ReadForm(ByteReader& reader)
{
    FormsInfoRecord form;
    form.paperId = reader.U16();
    form.formType = reader.U16();
    form.units = reader.U16();
    const std::size_t nameLength = reader.U16();
    form.width = reader.I32();
    form.length = reader.I32();
    form.valueId = reader.I32();
    if (nameLength > kLongestName)
        reader.Fail();
    form.SetName(reader.String(nameLength));
    return form;
}

} // namespace

ByteBuffer DevicePaperList::Write(std::span<const FormsInfoRecord> forms, std::size_t own)
{
    const std::vector<const FormsInfoRecord*> chosen = Choose(forms, own);
    ByteBuffer list(kMaxSize);
    ByteWriter writer(list.bytes());
    writer.U16(kFormat);
    writer.U16(static_cast<std::uint16_t>(chosen.size()));
    for (const FormsInfoRecord* form : chosen)
        WriteForm(writer, *form);
    list.resize(writer.Position());
    return list;
}

std::optional<std::vector<FormsInfoRecord>> DevicePaperList::Read(std::span<const std::byte> bytes)
{
    ByteReader reader(bytes);
    const auto format = reader.U16();
    const auto count = reader.U16();
    std::vector<FormsInfoRecord> forms;
    for (std::size_t at = 0; at < count && reader.Ok(); ++at)
        forms.push_back(ReadForm(reader));
    if (!reader.Ok() || format != kFormat || reader.Remaining() != 0)
        return std::nullopt;
    return forms;
}

std::optional<std::vector<FormsInfoRecord>> DevicePaperList::ReadFrom(const AttributeBytesIndexedList& capabilities)
{
    const AttributeBytesValue* const list = capabilities.GetAttributeBytes(DataModelIds::Feature::DevicePaperList);
    if (list == nullptr || list->kind != AttributeBytesKind::Binary)
        return std::nullopt;
    return Read(list->data.bytes());
}
