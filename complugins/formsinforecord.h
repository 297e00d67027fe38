// One entry of a printer's form list. MSDeviceCapabilities::_tag_FormsInfoRec is this record; it stands alone for those
// who only write lists.
//
// Stored in the device's paper data and hashed for the check of custom forms, so its layout is fixed.
#pragma once

#include <cstddef>
#include <cstdint>

#include <tvutil/cxstring.h>

struct FormsInfoRecord
{
    static constexpr std::size_t kNameCapacity = 64; // characters, the terminator among them
    static constexpr std::size_t kDevmodeNameCapacity = 32;

    std::uint16_t paperId = 0; // DMPAPER_*, or the number of a custom size
    std::uint16_t reserved = 0;
    std::int32_t width = 0; // tenths of a millimetre
    std::int32_t length = 0;
    std::int32_t valueId = 0;  // the data model's page-size value
    std::int32_t units = 0;    // 7491 metric, 7492 inches
    std::int32_t formType = 0; // DataModelIds::PageSizeTypeEnum
    WCHAR name[kNameCapacity] = {};

    // At most 63 characters; a longer name is cut.
    void SetName(WStringView text) noexcept;
    // Bounded by the array, whether terminated or not.
    [[nodiscard]] WStringView GetName() const noexcept;
    // The name as far as dmFormName has room for it.
    [[nodiscard]] WStringView GetDevmodeName() const noexcept;
};

static_assert(sizeof(FormsInfoRecord) == 152 && offsetof(FormsInfoRecord, name) == 24);
