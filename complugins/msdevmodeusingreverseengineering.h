// MsDevmodeUsingReverseEngineering: the core driver's settings, read and written where its private part is known to
// hold them (complugins/msdevmodeoffsets.h).
//
// Also throws ExceptionMicrosoftPrivateDevmodeOffsetOutOfBounds, with the devmode as it was, for a place that is not
// wholly within the private part: nothing outside of it is read or written, whatever the devmode says.
#pragma once

#include <cstddef>

#include "complugins/msdevmodebase.h"
#include "complugins/msdevmodeoffsets.h"

class MsDevmodeUsingReverseEngineering final : public MsDevmodeBase
{
public:
    using MsDevmodeBase::MsDevmodeBase;

    void Initialize() override;

    // The driver's list of features is not asked: what the layout has can be read, what it has not cannot.
    [[nodiscard]] std::uint32_t GetMsFeatureValue(std::uint32_t feature, Map map) override;
    void SetMsFeatureValue(std::uint32_t feature, std::uint32_t value, Map map) override;

    // Whether the private part notes one of the sizes that its layout is known to have. Nobody is kept from reading and
    // writing when it does not.
    [[nodiscard]] bool IsLayoutRecognized() const noexcept;

    // A 16-bit value of the private part; with a mask, one bit of it: 1 or 0, or what it becomes (0 clears it).
    [[nodiscard]] std::uint32_t GetMsPrivateDmFeatureValue_Helper(std::uint32_t offset, std::uint16_t mask) const;
    void SetMsPrivateDmFeatureValue_Helper(std::uint32_t offset, std::uint16_t mask, std::uint32_t value) const;

private:
    [[nodiscard]] std::span<std::byte> GetPrivatePart() const noexcept;
    [[nodiscard]] std::uint32_t ReadPlace(std::uint32_t feature, const MsDevmodePlace& place) const;
    void WritePlace(std::uint32_t feature, const MsDevmodePlace& place, std::uint32_t value) const;
    void WriteOrientation(const MsDevmodePlace& place, std::uint32_t value) const;
    void WriteSheet(const MsDevmodePlace& place, std::uint32_t value) const;
    void WriteWord(std::uint32_t feature, const MsDevmodePlace& place, std::uint32_t value) const;

    bool m_isLayoutRecognized = false;
};
