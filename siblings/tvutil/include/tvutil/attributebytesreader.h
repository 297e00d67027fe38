// AttributeBytesReader: typed reading of settings, over whatever supplies the lists: a devmode, a printer's device
// settings.
#pragma once

#include <cstdint>
#include <optional>

#include <tvutil/attributebytesids.h>
#include <tvutil/attributebytesindexedlist.h>
#include <tvutil/attributebytesoptionvalue.h>
#include <tvutil/cxstring.h>
#include <tvutil/dimension.h>

class TVUTIL_API AttributeBytesReader
{
public:
    // The order of these slots is known to the modules that derive from the class. Lists are the reader's own, valid
    // until its next list is asked for or its content changes; never null.
    virtual ~AttributeBytesReader();
    virtual AttributeBytesIndexedList* GetDefaultAttributeBytesIndexedList() = 0;
    virtual AttributeBytesIndexedList* GetDataModelDocPropAttributeBytesIndexedList() = 0;
    // Called when changed settings have been stored.
    virtual void OnAttributeBytesStored() = 0;
    virtual AttributeBytesIndexedList* GetAttributeBytesIndexedListOf(AttributeBytesNameSpacesId id) = 0;
    virtual AttributeBytesIndexedList* GetAttributeBytesIndexedList(const AttributeBytesNameSpacesId& id) = 0;

    // A feature of the default namespace. Nothing when it is absent, of another kind, or its bytes make no such value.
    // Control characters of a text become blanks: no value can forge a line of a job ticket.
    [[nodiscard]] std::optional<bool> GetBooleanValueFromAttributeBytes(AttributeBytesFeatureId feature);
    [[nodiscard]] std::optional<std::int32_t> GetIntegerValueFromAttributeBytes(AttributeBytesFeatureId feature);
    [[nodiscard]] std::optional<CXString> GetStringValueFromAttributeBytes(AttributeBytesFeatureId feature);
    [[nodiscard]] std::optional<AttributeBytesOptionValue>
    GetOptionValueFromAttributeBytes(AttributeBytesFeatureId feature);
    [[nodiscard]] std::optional<Dimension> GetDimensionValueFromAttributeBytes(AttributeBytesFeatureId feature);

    // The same of any list: a collection's, for one.
    [[nodiscard]] static std::optional<bool> GetBooleanValueFromAttributeBytes(const AttributeBytesIndexedList& list,
                                                                               AttributeBytesFeatureId feature);
    [[nodiscard]] static std::optional<std::int32_t>
    GetIntegerValueFromAttributeBytes(const AttributeBytesIndexedList& list, AttributeBytesFeatureId feature);
    [[nodiscard]] static std::optional<CXString> GetStringValueFromAttributeBytes(const AttributeBytesIndexedList& list,
                                                                                  AttributeBytesFeatureId feature);
    [[nodiscard]] static std::optional<AttributeBytesOptionValue>
    GetOptionValueFromAttributeBytes(const AttributeBytesIndexedList& list, AttributeBytesFeatureId feature);
    [[nodiscard]] static std::optional<Dimension>
    GetDimensionValueFromAttributeBytes(const AttributeBytesIndexedList& list, AttributeBytesFeatureId feature);

protected:
    AttributeBytesReader() noexcept;
    AttributeBytesReader(const AttributeBytesReader&) noexcept;
    AttributeBytesReader& operator=(const AttributeBytesReader&) noexcept;
};

// Values of the simple kinds, the other way.
[[nodiscard]] TVUTIL_API AttributeBytesValue MakeBooleanAttributeBytes(bool value);
[[nodiscard]] TVUTIL_API AttributeBytesValue MakeIntegerAttributeBytes(std::int32_t value);
[[nodiscard]] TVUTIL_API AttributeBytesValue MakeStringAttributeBytes(WStringView value); // control characters: blanks
[[nodiscard]] TVUTIL_API AttributeBytesValue MakeDimensionAttributeBytes(const Dimension& value);
