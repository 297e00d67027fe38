#include "complugins/papercache.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include <tvutil/bytereader.h>
#include <tvutil/bytewriter.h>

namespace
{

void WriteForm(ByteWriter& writer, const FormsInfoRecord& form) noexcept
{
    writer.U16(form.paperId);
    writer.U16(form.reserved);
    writer.I32(form.width);
    writer.I32(form.length);
    writer.I32(form.valueId);
    writer.I32(form.units);
    writer.I32(form.formType);
    writer.String({form.name, FormsInfoRecord::kNameCapacity});
}

FormsInfoRecord ReadForm(ByteReader& reader) noexcept
{
    FormsInfoRecord form;
    form.paperId = reader.U16();
    form.reserved = reader.U16();
    form.width = reader.I32();
    form.length = reader.I32();
    form.valueId = reader.I32();
    form.units = reader.I32();
    form.formType = reader.I32();
    if (const auto name = reader.Bytes(sizeof form.name); !name.empty())
        std::memcpy(form.name, name.data(), name.size());
    *std::rbegin(form.name) = WCHAR(); // whoever wrote it may not have terminated it
    return form;
}

void WritePaper(ByteWriter& writer, const PaperCache::Paper& paper) noexcept
{
    const WStringView name = paper.displayName.View().substr(0, PaperCache::kDisplayNameCapacity);
    writer.U16(paper.paperId);
    writer.U16(0);
    writer.I32(paper.width);
    writer.I32(paper.length);
    writer.String(name);
    writer.Zeros((PaperCache::kDisplayNameCapacity - name.size()) * sizeof(WCHAR));
}

PaperCache::Paper ReadPaper(ByteReader& reader)
{
    PaperCache::Paper paper;
    paper.paperId = reader.U16();
    reader.Skip(sizeof(std::uint16_t));
    paper.width = reader.I32();
    paper.length = reader.I32();
    const WideString name = reader.String(PaperCache::kDisplayNameCapacity);
    paper.displayName = WStringView(name).substr(0, name.find(WCHAR()));
    return paper;
}

} // namespace

ByteBuffer PaperCache::Write(DWORD fields, DWORD customFormsCrc, std::span<const FormsInfoRecord> forms,
                             std::span<const Paper> papers)
{
    ByteBuffer content(kHeaderSize + forms.size() * kFormSize + papers.size() * kPaperSize);
    ByteWriter writer(content.bytes());
    writer.U32(fields);
    writer.U32(static_cast<std::uint32_t>(papers.size()));
    writer.U32(customFormsCrc);
    writer.U32(static_cast<std::uint32_t>(forms.size()));
    for (const FormsInfoRecord& form : forms)
        WriteForm(writer, form);
    for (const Paper& paper : papers)
        WritePaper(writer, paper);
    return content;
}

PaperCache::Header PaperCache::ReadHeader(std::span<const std::byte> content) noexcept
{
    ByteReader reader(content);
    Header header;
    header.fields = reader.U32();
    header.paperCount = reader.U32();
    header.customFormsCrc = reader.U32();
    header.formCount = reader.U32();
    return header;
}

bool PaperCache::IsWhole(std::span<const std::byte> content) noexcept
{
    const Header header = ReadHeader(content);
    const std::uint64_t promised =
        kHeaderSize + std::uint64_t{header.formCount} * kFormSize + std::uint64_t{header.paperCount} * kPaperSize;
    return promised <= content.size();
}

std::optional<std::vector<FormsInfoRecord>> PaperCache::ReadForms(std::span<const std::byte> content)
{
    if (!IsWhole(content))
        return std::nullopt;
    std::vector<FormsInfoRecord> forms(ReadHeader(content).formCount);
    ByteReader reader(content.subspan(kHeaderSize));
    std::generate(forms.begin(), forms.end(), [&reader] { return ReadForm(reader); });
    return forms;
}

std::optional<std::vector<PaperCache::Paper>> PaperCache::ReadPapers(std::span<const std::byte> content)
{
    if (!IsWhole(content))
        return std::nullopt;
    const Header header = ReadHeader(content);
    std::vector<Paper> papers(header.paperCount);
    ByteReader reader(content.subspan(kHeaderSize + std::size_t{header.formCount} * kFormSize));
    std::generate(papers.begin(), papers.end(), [&reader] { return ReadPaper(reader); });
    return papers;
}
