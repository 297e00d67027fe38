// MsDevmodeBase: the settings that the core drivers keep in a devmode, by feature number.
//
// The base knows which settings this printer's core driver has (complugins/msdevmodefeatures.h), the values that each
// takes (msdevmodevalues.h) and those that are fields of DEVMODEW. Two classes reach the others: one asks the core
// driver (msdevmodeusingiprintcorehelper.h), one goes by the layout of its private part
// (msdevmodeusingreverseengineering.h).
//
// They agree but in these places, all of them intended:
// - pages per sheet and booklet, each written as 0 over the other: the first leaves one page on a sheet, the second
//   what the other one is;
// - the colour printing mode (34): only the second mirrors it into the public field;
// - raw values without a row in the feature's table: the first has no option to write and throws
//   ExceptionMicrosoftDevmodeValueMappingFailed, the second writes them; read by the first, they are what its helper
//   answers, a failure as a rule;
// - features outside of the driver's list: the first knows their public fields alone, the second what its layout has;
// - halftone (33) on a Unidrv driver of platform 0x800, which has it in its list but at no place:
//   ExceptionMicrosoftFeatureNotFound by the second, a failure of the helper by the first;
// - 24, 25 and 29 on Unidrv drivers: ExceptionMicrosoftFeatureNotFound by the first,
//   ExceptionMicrosoftPrivateDevmodeOffsetOutOfBounds by the second;
// - options of the table that the printer lacks (a resolution, colour on a monochrome one): the helper that tvpt plays
//   refuses to set them, the second writes them;
// - a private part of no known size: the second reads and writes it, the helper that tvpt plays refuses.
//
// Over a devmode that its caller owns and keeps alive; one thread at a time. dmSize and dmDriverExtra are believed.
// Values are 32 bits wide here, whatever the devmode has room for: 16-bit fields are read unsigned, and of what is
// written into one the low half counts.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>
#include <vector>

#include "complugins/msdevmodefeatures.h"
#include "complugins/msdevmodevalues.h"
#include "complugins/msdriverkind.h"

class MsDevmodeBase
{
public:
    enum Map : int
    {
        Raw = 0,       // as the devmode has it
        DataModel = 1, // a value of the data model, by way of the feature's value table
    };

    // A row of the feature table that applies to the driver, its keyword the one that this driver knows.
    struct Feature : MsDevmodeFeatureRow
    {
        std::span<const MsDevmodeValueRow> values; // empty: the values are numbers
    };

    // Terminates the devmode's names as XDevmode does. Throws ExceptionInvalidArgumentNullPointer for a null devmode,
    // ExceptionPrintDriverFailure when the printer cannot be asked.
    MsDevmodeBase(HANDLE printer, DEVMODEW* devmode);
    // For whoever knows the driver without a printer.
    MsDevmodeBase(const MsDriverKind& driver, DEVMODEW* devmode);
    virtual ~MsDevmodeBase();
    MsDevmodeBase(const MsDevmodeBase&) = delete;
    MsDevmodeBase& operator=(const MsDevmodeBase&) = delete;

    // To be called once, before the first setting.
    virtual void Initialize();

    // Each throws a named exception, with the devmode as it was, when the driver or the devmode has no such setting or
    // value: ExceptionMicrosoftFeatureNotFound, ExceptionMicrosoftDevmodeValueMappingFailed, and what the class says.
    [[nodiscard]] virtual std::uint32_t GetMsFeatureValue(std::uint32_t feature, Map map) = 0;
    virtual void SetMsFeatureValue(std::uint32_t feature, std::uint32_t value, Map map) = 0;

    // In the table's order; two rows of one feature may both be in it, of which the first counts.
    [[nodiscard]] const std::vector<Feature>& GetFeatures() const noexcept;
    // Null when the driver does not have it.
    [[nodiscard]] const Feature* FindFeature(std::uint32_t feature) const noexcept;
    [[nodiscard]] const MsDriverKind& GetDriverKind() const noexcept;

    // A field of the public part of any devmode. Of one that is not there: false in `found`, or, without it,
    // ExceptionMicrosoftFeatureNotFound.
    [[nodiscard]] std::uint32_t GetPublicDmFeatureValue_Helper(const DEVMODEW* devmode, std::uint32_t feature, Map map,
                                                               bool* found = nullptr) const;
    // Claims the field in dmFields, too.
    void SetPublicDmFeatureValue_Helper(DEVMODEW* devmode, std::uint32_t feature, std::uint32_t value, Map map) const;

    // The driver's own table, whether the feature is in its list or not. Throws ExceptionMicrosoftFeatureNotFound when
    // there is none: the values are numbers, or the number is no feature's.
    [[nodiscard]] std::span<const MsDevmodeValueRow> GetDmValueTable_Helper(std::uint32_t feature) const;

    // Between the keywords of options and devmode values (or, mapped, data-model values). Throw what
    // GetDmValueTable_Helper does, ExceptionMicrosoftDevmodeValueMappingFailed without a row, and
    // ExceptionInvalidArgumentNullPointer for a null keyword. The result lives as long as the module.
    [[nodiscard]] std::uint32_t GetFeatureValueFromIPrintCoreHelperValue_Helper(std::uint32_t feature,
                                                                                const char* option, Map map) const;
    [[nodiscard]] const char* GetIPrintCoreHelperValueFromFeatureValue_Helper(std::uint32_t feature,
                                                                              std::uint32_t value) const;

    // Between data-model values and devmode values. The same exceptions.
    [[nodiscard]] std::uint32_t GetMsDmValueFromValueEnum_Helper(std::uint32_t feature, std::uint32_t valueId) const;
    [[nodiscard]] std::uint32_t GetValueEnumFromMsDmValue_Helper(std::uint32_t feature, std::uint32_t value) const;

protected:
    [[nodiscard]] DEVMODEW* GetDevmode() const noexcept;
    // What is to be written into the devmode, or given out of it, for a value of the caller's.
    [[nodiscard]] std::uint32_t ToDevmodeValue(std::uint32_t feature, std::uint32_t value, Map map) const;
    [[nodiscard]] std::uint32_t FromDevmodeValue(std::uint32_t feature, std::uint32_t value, Map map) const;

private:
    DEVMODEW* m_devmode;
    MsDriverKind m_driver;
    std::vector<Feature> m_features;
};
