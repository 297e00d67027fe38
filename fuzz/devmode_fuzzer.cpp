// A devmode from outside, on its way through the devmode layer.
//
// The first byte of the input says what the others are: a devmode as it stands; changes to a whole one; or what one
// holds, with the right CRC: the content of the maker's part, the settings, the paper list. Beside what the sanitizers
// see: a commit changes nothing but the maker's part, what it stores reads back, form names end, the core driver's
// settings of any driver are read and written without touching the maker's part, and whatever a devmode holds can be
// reported.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string_view>
#include <vector>

#include <tvutil/bytereader.h>
#include <tvutil/bytewriter.h>
#include <tvutil/devmodebounds.h>
#include <tvutil/globalcaches.h>
#include <tvutil/tavlenexception.h>

#include "complugins/devicepaperlist.h"
#include "complugins/msdevicecapabilities.h"
#include "complugins/msdevmodeusingreverseengineering.h"
#include "complugins/papermatching.h"
#include "complugins/xdevmode.h"
#include "devmode.h"
#include "devmodereport.h"
#include "failure.h"
#include "jsonoutput.h"
#include "tests/common/oemdevmodebytes.h"

namespace
{

namespace Format = OemDevmodeFormat;
using OemDevmodeBytes::Bytes;

void Require(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

DEVMODEW* FieldsOf(Bytes& devmode)
{
    return reinterpret_cast<DEVMODEW*>(devmode.data());
}

void ReadEverything(XDevmode& devmode)
{
    for (const int id : {1, 2, 3, -1})
    {
        const AttributeBytesIndexedList& list = *devmode.GetAttributeBytesIndexedList(AttributeBytesNameSpacesId(id));
        for (std::size_t at = 0; at < list.GetCount(); ++at)
        {
            const AttributeBytesFeatureId feature = list.GetFeature(at);
            static_cast<void>(list.GetCollection(feature));
            static_cast<void>(AttributeBytesReader::GetStringValueFromAttributeBytes(list, feature));
            static_cast<void>(AttributeBytesReader::GetOptionValueFromAttributeBytes(list, feature));
        }
    }
    CXString application;
    devmode.GetPropertyBagString(Format::kApplicationNameKey, application);
    Require(devmode.GetOemDevmodeDataSize() <= static_cast<int>(Format::kSize), "a used size beyond the part");
}

void EditAndCommit(Bytes& devmode)
{
    const ByteBuffer value("value", 5);
    XDevmode wrapper(FieldsOf(devmode)); // terminates the names
    ReadEverything(wrapper);
    wrapper.SetPropertyBagEntry(0x7654, value);
    const Bytes before = devmode;
    const bool isWritten = wrapper.CommitToDevmode();
    Bytes after = devmode;
    if (isWritten)
    {
        const auto* const part =
            reinterpret_cast<const std::byte*>(XDevmode::GetOemDevmodeFromDevmode(FieldsOf(devmode)));
        const auto content = part - devmode.data() + std::ptrdiff_t{Format::kCrcOffset};
        std::copy_n(before.begin() + content, Format::kSize - Format::kCrcOffset, after.begin() + content);
        XDevmode again(FieldsOf(devmode));
        const ByteBuffer* const stored = again.GetPropertyBagEntry(0x7654);
        Require(stored != nullptr && *stored == value, "a committed entry does not read back");
    }
    Require(after == before, "a commit changed what is not its own");
}

void Reconcile(DEVMODEW& devmode, const std::vector<FormsInfoRecord>& forms)
{
    MatchPaperWithForms(devmode, forms);
    Require(std::find(std::begin(devmode.dmFormName), std::end(devmode.dmFormName), WCHAR()) !=
                std::end(devmode.dmFormName),
            "a form name without its end");
}

// A printer of each kind.
constexpr std::uint64_t kCapabilities[] = {0xE02, 0x1204, 0x888, 0x1048, 0xC08, 0x1404};

// A copy is written, so that the rest finds what was given.
void WriteEverySetting(Bytes devmode, std::uint64_t capability)
{
    const OemDevmode* const part = XDevmode::GetOemDevmodeFromDevmode(FieldsOf(devmode));
    const Bytes before(part != nullptr ? part->bytes : nullptr, part != nullptr ? std::end(part->bytes) : nullptr);
    MsDevmodeUsingReverseEngineering settings(MsDriverKind::FromCapabilityWord(capability), FieldsOf(devmode));
    settings.Initialize();
    for (std::uint32_t feature = 0; feature <= 36; ++feature)
        for (const std::uint32_t value : {1u, 0xFFFFFFFFu})
            try
            {
                static_cast<void>(settings.GetMsFeatureValue(feature, MsDevmodeBase::Raw));
                settings.SetMsFeatureValue(feature, value, MsDevmodeBase::Raw);
            }
            catch (const TavlenException&)
            {
                // The driver or the devmode has no such setting.
            }
    Require(part == nullptr || std::equal(before.begin(), before.end(), std::begin(part->bytes)),
            "a core driver's setting changed the maker's part");
}

// What `tvpt devmode show` prints.
void Report(const Bytes& devmode, const PrinterModel* model)
{
    const std::string_view bytes(reinterpret_cast<const char*>(devmode.data()), devmode.size());
    try
    {
        const nlohmann::ordered_json shown = DescribeDevmode(Devmode::FromBytes(bytes, "fuzz"), model);
        static_cast<void>(JsonText(shown));
        static_cast<void>(PlainText(shown));
    }
    catch (const Failure&)
    {
        // Bytes before or behind those that the devmode claims.
    }
}

void Use(Bytes& devmode)
{
    if (!DevmodeFitsIn(FieldsOf(devmode), devmode.size()))
        return;
    Report(devmode, nullptr);
    // One of them, by the input's last byte: all of them would take most of the time.
    PrinterModel model;
    model.capability = kCapabilities[std::to_integer<std::size_t>(devmode.back()) % std::size(kCapabilities)];
    Report(devmode, &model);
    WriteEverySetting(devmode, model.capability);
    EditAndCommit(devmode);
    MSDeviceCapabilities capabilities;
    capabilities.Initialize(&capabilities, MSDeviceCapabilities::Context::Spooler);
    std::vector<FormsInfoRecord> forms;
    if (SUCCEEDED(capabilities.GetPaperDatabaseCachedDeviceCapabilitiesVector(nullptr, FieldsOf(devmode), forms)))
        Reconcile(*FieldsOf(devmode), forms);
}

// Cut to the size that the first word says, 0 for all of it; then, again and again, a place and what is written there.
Bytes WithChanges(std::span<const std::byte> changes)
{
    static const Bytes whole = OemDevmodeBytes::Make(
        CoreDriverLayout::PostScript, {{Format::kPersistentAttributesKey, OemDevmodeBytes::MakeState(true)}});
    ByteReader reader(changes);
    const std::size_t size = reader.U16();
    const std::size_t kept = size != 0 ? std::min(size, whole.size()) : whole.size();
    Bytes devmode(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(kept));
    while (reader.Remaining() != 0)
    {
        const std::size_t place = reader.U16() % devmode.size();
        const std::size_t count = reader.U8();
        const auto bytes = reader.Bytes(std::min({count, reader.Remaining(), devmode.size() - place}));
        std::copy(bytes.begin(), bytes.end(), devmode.begin() + static_cast<std::ptrdiff_t>(place));
    }
    return devmode;
}

Bytes WithContent(std::span<const std::byte> content)
{
    Bytes devmode = OemDevmodeBytes::Make(CoreDriverLayout::PostScript, {});
    const std::span<std::byte> part = OemDevmodeBytes::PartOf(devmode);
    ByteWriter(part.subspan(Format::kCountOffset)).Bytes(content.first(std::min(content.size(), Format::kCheckedSize)));
    OemDevmodeBytes::StampCrc(part);
    return devmode;
}

Bytes WithSettings(std::span<const std::byte> state)
{
    const ByteBuffer entry(state.first(std::min<std::size_t>(state.size(), 5400)));
    return OemDevmodeBytes::Make(CoreDriverLayout::Unidrv, {{Format::kPersistentAttributesKey, entry}});
}

// The public part of a devmode, then its paper list.
void UsePapers(std::span<const std::byte> input)
{
    DEVMODEW devmode{};
    std::memcpy(&devmode, input.data(), std::min(input.size(), sizeof(devmode)));
    if (const auto forms = DevicePaperList::Read(input.subspan(std::min(input.size(), sizeof(devmode)))))
    {
        Reconcile(devmode, *forms);
        const auto again = DevicePaperList::Read(DevicePaperList::Write(*forms, 0).bytes());
        Require(again && again->size() <= forms->size(), "a paper list does not read back");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    GlobalCaches::Clear();
    const auto input = std::as_bytes(std::span(data, size)).subspan(1);
    Bytes devmode; // a block of exactly its size
    switch (data[0] % 5)
    {
    case 0:
        devmode.assign(input.begin(), input.end());
        break;
    case 1:
        devmode = WithChanges(input);
        break;
    case 2:
        devmode = WithContent(input);
        break;
    case 3:
        devmode = WithSettings(input);
        break;
    default:
        UsePapers(input);
    }
    Use(devmode);
    return 0;
}
