// CoreSettings: the core driver's settings of a devmode, read and written by way of the core driver's helper or of the
// layout of its private part.
#pragma once

#include <memory>
#include <optional>

#include <tvcore/printermodel.h>

#include "complugins/msdevmodebase.h"
#include "coreschema.h"
#include "devmode.h"
#include "interfaces/prcomoem.h"

// Over a devmode of its own. A private part that is none of the model's driver is never looked at.
class CoreSettings
{
public:
    // `helper` may be null.
    CoreSettings(const Devmode& devmode, const PrinterModel& model, IPrintCoreHelper* helper);
    // The same with the model's defaults for the public fields that the devmode does not claim.
    [[nodiscard]] static CoreSettings AsMeant(const Devmode& devmode, const PrinterModel& model,
                                              IPrintCoreHelper* helper);

    // A setting without a value that its table knows, or that cannot be reached, is what its public field says.
    [[nodiscard]] bool Has(const CoreSetting& setting);
    // Of the public field. A resolution has both of its halves, and is 0 when it is one of the platform's names from
    // draft to high, which only the driver can turn into dots; a paper of the user's own with its measures is
    // DMPAPER_USER, since the core driver knows no names of such.
    [[nodiscard]] std::uint32_t Number(std::uint32_t feature);
    // The option of the feature: the first of those that fit, else the one that stands for what is none of them; null
    // for a resolution that the model does not list.
    [[nodiscard]] const SchemaOption* FindOption(const SchemaFeature& feature);
    // In the document's unit.
    [[nodiscard]] long ParameterValue(const SchemaParameter& parameter);

    // Claims public fields. A setting that cannot be reached stays, but for its public field.
    void Write(const CoreSetting& setting);
    // Takes the settings over into the devmode that was given.
    void CopyTo(Devmode& devmode) const;

private:
    // Nothing where there is no such field, or it says nothing.
    [[nodiscard]] std::optional<std::uint32_t> FindNumber(std::uint32_t feature);
    [[nodiscard]] std::int32_t ValueId(std::uint32_t feature);
    void WriteField(std::uint32_t feature, std::int32_t valueId);

    Devmode m_devmode;
    std::unique_ptr<MsDevmodeBase> m_access; // over the devmode's bytes, which stay where they are
    bool m_isWhole;                          // with the private part
};
