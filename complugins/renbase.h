// RenBase: the renderer of a job's ticket text: what of the job's settings the printer's controller reads.
//
// Opens the printer's data model over a devmode and lets the renderer at hand write the lines of it
// (docs/job-ticket-format.md). Made for one job: printer, devmode and product are borrowed and must outlive it.
#pragma once

#include <windows.h>

#include <tvcore/productdata.h>
#include <tvutil/bytebuffer.h>

class FeatureServices;
class XDevmode;

class RenBase
{
public:
    RenBase(HANDLE printer, XDevmode& devmode, ProductData& product);
    virtual ~RenBase() = default;
    RenBase(const RenBase&) = delete;
    RenBase& operator=(const RenBase&) = delete;

    // Appends the job's ticket, 8-bit text without a terminator; whether there is one. The settings are the devmode's,
    // or else the product's defaults; the core driver's are in no ticket. A devmode without settings gives the ticket
    // of the defaults. What the data model throws passes, with nothing appended.
    bool GenerateJtif(ByteBuffer& jobTicket);

    // Whether the controllers of this family read job tickets: those of other families are given none.
    [[nodiscard]] static constexpr bool HasJobTicket(ProductData::ValueEnum controllerFamily) noexcept
    {
        return controllerFamily == ProductData::ControllerFamilyColor ||
               controllerFamily == ProductData::ControllerFamilyMonochrome;
    }

protected:
    // Appends the lines; whether there are any.
    virtual bool WriteLines(FeatureServices& features, ByteBuffer& jobTicket) = 0;

private:
    HANDLE m_printer;
    XDevmode& m_devmode;
    ProductData& m_product;
};
