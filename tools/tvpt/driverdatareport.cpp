#include "driverdatareport.h"

#include <algorithm>
#include <cstring>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <vector>

#include <tvutil/bytereader.h>
#include <tvutil/crc32.h>
#include <tvutil/cxstring.h>
#include <tvutil/tavlenutilities.h>

#include "featurereport.h"
#include "jsonoutput.h"
#include "oempart.h"
#include "oemreport.h"

namespace
{

using nlohmann::ordered_json;
using Bytes = std::span<const std::byte>;

std::optional<std::vector<std::byte>> DecodeBase64(const std::string& text)
{
    const CXString wide = CXString::FromUtf8(text);
    const auto length = static_cast<int>(wide.Length()); // bounded by the document's size
    int count = TavlenUtilities::Base64DecodeGetRequiredLength(length);
    std::vector<std::byte> bytes(static_cast<std::size_t>(count));
    if (!TavlenUtilities::Base64Decode(wide.c_str(), length, reinterpret_cast<BYTE*>(bytes.data()), &count))
        return std::nullopt;
    bytes.resize(static_cast<std::size_t>(count));
    return bytes;
}

// Empty for a CRC that is right.
std::string ExplainCrc(std::uint32_t stored, Bytes part)
{
    const std::uint32_t made = Crc32::GetCrc(part.data(), part.size());
    return stored == made ? "" : "CRC mismatch: " + HexText(stored) + " is stored, the content makes " + HexText(made);
}

// Empty for bytes that the driver would take for its part.
std::string ExplainPart(Bytes part)
{
    ByteReader reader(part);
    const auto size = reader.U32();
    const auto signature = reader.U32();
    if (part.size() < OemDevmodeFormat::kEntriesOffset || part.size() > OemDevmodeFormat::kSize)
        return std::to_string(part.size()) + " bytes are no part of a devmode, which has " +
               std::to_string(OemDevmodeFormat::kEntriesOffset) + " to " + std::to_string(OemDevmodeFormat::kSize);
    if (signature != OemDevmodeFormat::kSignature)
        return "the part is another driver's: its signature is " + HexText(signature) + ", not " +
               HexText(OemDevmodeFormat::kSignature);
    if (size != OemDevmodeFormat::kSize)
        return "the part is another driver's: it says that it has " + std::to_string(size) + " bytes, not " +
               std::to_string(OemDevmodeFormat::kSize);
    return {};
}

OemContent ReadPart(Bytes bytes)
{
    OemDevmode part{};
    std::memcpy(part.bytes, bytes.data(), std::min(bytes.size(), sizeof(part.bytes)));
    return ReadOemPart(part);
}

} // namespace

ordered_json DescribeDriverData(const std::string& text)
{
    const auto record = DecodeBase64(text);
    ordered_json described = {{"present", true}, {"characters", text.size()}, {"bytes", 0}, {"crcValid", false}};
    if (!record || record->size() < sizeof(std::uint32_t))
    {
        described["fault"] = record ? "there is no CRC" : "the text is no Base64";
        return described;
    }
    const Bytes part = Bytes(*record).subspan(sizeof(std::uint32_t));
    std::string fault = ExplainCrc(ByteReader(*record).U32(), part);
    described["bytes"] = part.size();
    described["crcValid"] = fault.empty();
    if (fault.empty())
        fault = ExplainPart(part);
    described["fault"] = FaultJson(fault);
    if (!fault.empty())
        return described;

    const OemContent content = ReadPart(part);
    const StoredSettings settings = ReadStoredSettings(content);
    described["part"] = DescribeOemContent(content);
    described["settings"] = DescribeSettings(settings);
    described["features"] = DescribeFeatures(settings.features);
    return described;
}
