// The encodings in which this program reads documents.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "utilitiesstaticlib/wideliteral.h"

enum class DocumentEncoding
{
    Utf8,
    Ascii,
    Latin1,
    Utf16LittleEndian,
    Utf16BigEndian,
};

// What the first bytes say: the encoding and the length of its mark. Without a mark it is UTF-8, or another encoding of
// single bytes that the document then names.
struct EncodingMark
{
    DocumentEncoding encoding = DocumentEncoding::Utf8;
    std::size_t length = 0; // 0: there is none

    [[nodiscard]] static EncodingMark Find(std::string_view bytes) noexcept;
};

// True for UTF-16 that lacks its mark: every other one of the first bytes is zero.
[[nodiscard]] bool LooksLikeUnmarkedUtf16(std::string_view bytes) noexcept;

// The encoding that a document means by a name, which is compared ignoring case; nothing for a name that this program
// does not read. "UTF-16" is the byte order of the mark.
[[nodiscard]] std::optional<DocumentEncoding> FindEncoding(std::string_view name, const EncodingMark& mark);

// The bytes behind the mark, of a file that is no larger than documents may be (documentlimits.h), to text. Nothing for
// bytes that are none of the encoding.
[[nodiscard]] std::optional<WideString> DecodeBytes(std::string_view bytes, DocumentEncoding encoding);
