// JsonCursor: a place in a JSON document that knows its JSON pointer.
//
// Every question checks what it finds; the answer is a value in range or ExceptionInvalidPrinterModel with the file,
// the pointer and what is wrong. A cursor refers to the document and must not outlive it.
#pragma once

#include <tvutil/cxstring.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "jsonvalue.h"

// ExceptionInvalidPrinterModel: "FILE: what", or "FILE: POINTER: what" for all but the document itself, whose pointer
// is empty.
[[noreturn]] void ThrowModelFault(std::string_view fileName, std::string_view what);
[[noreturn]] void ThrowModelFault(std::string_view fileName, std::string_view pointer, std::string_view what);

// A name as one token of a JSON pointer, on one line.
[[nodiscard]] std::string EscapeJsonPointerToken(std::string_view name);

class JsonCursor
{
public:
    JsonCursor(const JsonValue& value, std::string_view fileName);

    // A field of an object, by name.
    [[nodiscard]] JsonCursor Field(const char* name) const;
    [[nodiscard]] std::optional<JsonCursor> OptionalField(const char* name) const;
    // An object may have these fields and no others.
    void OnlyFields(std::initializer_list<std::string_view> names) const;

    // Every item of a list, or every field of an object whose names are numbers from 0 on.
    void ForEachItem(const std::function<void(const JsonCursor&)>& visit) const;
    void ForEachNumberedField(const std::function<void(std::int32_t, const JsonCursor&)>& visit) const;
    void NotEmpty() const;

    template <class Integer>
    [[nodiscard]] Integer Number(std::int64_t minimum, std::int64_t maximum) const
    {
        return static_cast<Integer>(CheckedInteger(minimum, maximum));
    }

    // Lengths are counted in UTF-16 characters. What breaks a line is refused: these texts become names in the spooler,
    // in documents and in lines of the job ticket.
    [[nodiscard]] CXString Text(std::size_t maximum) const;
    // Of one character at least, and not of blanks only.
    [[nodiscard]] CXString Name(std::size_t maximum) const;
    // "0x" and 1 to 16 hexadecimal digits.
    [[nodiscard]] std::uint64_t HexWord() const;

    [[nodiscard]] bool IsText() const noexcept;
    [[nodiscard]] bool Switch() const;

    [[noreturn]] void Fault(const std::string& what) const;

private:
    JsonCursor(const JsonValue& value, std::string_view fileName, std::string pointer);

    void MustBe(JsonValue::Kind kind, const char* what) const;
    [[nodiscard]] const JsonValue* Find(std::string_view name) const;
    [[nodiscard]] std::int64_t CheckedInteger(std::int64_t minimum, std::int64_t maximum) const;
    [[nodiscard]] JsonCursor At(const JsonValue& value, std::string_view token) const;

    const JsonValue& m_value;
    std::string_view m_fileName;
    std::string m_pointer;
};
