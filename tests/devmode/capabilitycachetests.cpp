// The contents of the capability caches: by the bytes that the format says, whatever anybody else has written there.
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tvutil/bytewriter.h>

#include "complugins/capabilitycaches.h"
#include "complugins/papercache.h"

namespace
{

using DeviceCapabilityTable::Cache;
using Bytes = std::vector<std::uint8_t>;

void Put(Bytes& bytes, std::uint64_t value, int size)
{
    for (int at = 0; at < size; ++at)
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * at)));
}

void PutText(Bytes& bytes, const std::string& ascii, std::size_t characters)
{
    for (std::size_t at = 0; at < characters; ++at)
        Put(bytes, at < ascii.size() ? static_cast<std::uint8_t>(ascii[at]) : 0, 2);
}

std::span<const std::byte> Span(const Bytes& bytes)
{
    return std::as_bytes(std::span(bytes));
}

// One form and two papers.
Bytes MakePapers()
{
    Bytes bytes;
    for (const std::uint32_t word : {0xF00DU, 2U, 0xC0FFEEU, 1U})
        Put(bytes, word, 4);
    Put(bytes, 0xC123, 2);
    Put(bytes, 0, 2);
    for (const std::uint32_t word : {2100U, 40000U, 6436U, 7492U, 25003U})
        Put(bytes, word, 4);
    PutText(bytes, std::string(64, 'n'), 64); // not terminated
    for (const int paper : {1, 2})
    {
        Put(bytes, static_cast<std::uint64_t>(paper), 4);
        Put(bytes, 100, 4);
        Put(bytes, 200, 4);
        PutText(bytes, paper == 1 ? "Short" : std::string(64, 'd'), 64);
    }
    return bytes;
}

TEST(PaperCaches, HaveTheirFieldsWhereTheFormatSays)
{
    const Bytes bytes = MakePapers();
    ASSERT_EQ(bytes.size(), 16U + 152 + 2 * 140);
    const PaperCache::Header header = PaperCache::ReadHeader(Span(bytes));
    EXPECT_EQ(header.fields, 0xF00DU);
    EXPECT_EQ(header.customFormsCrc, 0xC0FFEEU);
    EXPECT_EQ(CapabilityCaches::AnswerOf(Cache::Papers, Span(bytes)), 2U) << "the number of papers, not of records";
    const auto forms = PaperCache::ReadForms(Span(bytes));
    ASSERT_TRUE(forms);
    ASSERT_EQ(forms->size(), 1U);
    const FormsInfoRecord& form = forms->front();
    EXPECT_EQ(form.paperId, 0xC123);
    EXPECT_EQ(form.width, 2100);
    EXPECT_EQ(form.length, 40000);
    EXPECT_EQ(form.valueId, 6436);
    EXPECT_EQ(form.units, 7492);
    EXPECT_EQ(form.formType, 25003);
    EXPECT_EQ(form.GetName(), WideString(63, W('n')));
    const auto papers = PaperCache::ReadPapers(Span(bytes));
    ASSERT_TRUE(papers);
    EXPECT_EQ(papers->at(0).displayName, W("Short"));
    EXPECT_EQ(papers->at(1).paperId, 2);
    EXPECT_EQ(papers->at(1).displayName.Length(), 64U);

    // What is read is written as it was, but for the name's missing terminator.
    Bytes terminated = bytes;
    terminated[16 + 150] = 0;
    const ByteBuffer written = PaperCache::Write(header.fields, header.customFormsCrc, *forms, *papers);
    EXPECT_TRUE(std::ranges::equal(written.bytes(), Span(terminated)));
}

struct Content
{
    const char* name;
    Cache cache;
    Bytes bytes;
    std::size_t least;               // that are whole
    std::vector<std::size_t> counts; // where they stand
};

std::vector<Content> MakeContents()
{
    const auto list = [](std::uint32_t count, std::uint32_t recordSize, std::size_t headerSize)
    {
        Bytes bytes;
        Put(bytes, count, 4);
        Put(bytes, recordSize, 4);
        bytes.resize(headerSize + std::size_t{count} * recordSize);
        return bytes;
    };
    const Bytes papers = MakePapers();
    return {
        {"papers", Cache::Papers, papers, papers.size(), {4, 12}},
        {"no papers", Cache::Papers, Bytes(30), 16, {4, 12}},
        {"bins", Cache::Bins, list(3, 52, 8), 8 + 3 * 52, {0}},
        {"resolutions", Cache::Resolutions, list(2, 76, 12), 12 + 2 * 76, {0}},
        {"no resolutions", Cache::Resolutions, list(0, 76, 12), 12, {0}},
        {"files", Cache::DependentFiles, list(2, 128, 8), 8 + 2 * 128, {0}},
        {"media", Cache::MediaTypes, list(2, 132, 8), 8 + 2 * 132, {0}},
        {"staple", Cache::Staple, Bytes(8), 8, {}},
        {"device", Cache::Device, Bytes(50), 48, {}},
        {"flags", Cache::Flags, Bytes(13), 12, {}},
    };
}

TEST(CapabilityCacheContents, AreWholeOnlyWithWhatTheyPromise)
{
    for (const Content& content : MakeContents())
    {
        SCOPED_TRACE(content.name);
        for (std::size_t size = 0; size <= content.bytes.size(); ++size)
            EXPECT_EQ(CapabilityCaches::IsWhole(content.cache, Span(content.bytes).first(size)), size >= content.least)
                << size << " bytes";
        Bytes longer = content.bytes;
        longer.resize(longer.size() + 7);
        EXPECT_TRUE(CapabilityCaches::IsWhole(content.cache, Span(longer)));
        for (const std::size_t at : content.counts)
            for (const std::uint32_t count : {0xFFFFFFFFU, 0x80000000U, 0x10000000U}) // more than anybody could hold
            {
                Bytes changed = content.bytes;
                ByteWriter(std::as_writable_bytes(std::span(changed)).subspan(at)).U32(count);
                EXPECT_FALSE(CapabilityCaches::IsWhole(content.cache, Span(changed))) << at;
            }
    }
    Bytes otherRecords = MakeContents()[2].bytes; // of a driver whose records are larger
    otherRecords[4] = 60;
    otherRecords.resize(1000);
    EXPECT_FALSE(CapabilityCaches::IsWhole(Cache::Bins, Span(otherRecords)));
}

} // namespace
