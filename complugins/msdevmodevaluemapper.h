// MsDevmodeValueMapper: decisions of the data model, written into a devmode: the paper above all.
//
// Over a devmode and the device's capabilities that its caller owns and keeps alive; one thread at a time.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

#include <tvcore/datamodelids.h>
#include <tvutil/cxstring.h>

class MSDeviceCapabilities;

class MsDevmodeValueMapper
{
public:
    // The printer is borrowed. A null devmode throws ExceptionInvalidArgumentNullPointer.
    MsDevmodeValueMapper(HANDLE printer, DEVMODEW* devmode, MSDeviceCapabilities& capabilities);

    // Makes the given paper the devmode's. Width and length are in tenths of a millimetre, both 0 where the paper id
    // says it all; an id of 0 is none. With `reconcile`, the result is made to agree with the printer's papers, even
    // when the devmode has that size already and nothing was written.
    //
    // Throws, with the devmode as it was, ExceptionInvalidPaperSizeData when id, width and length do not fit together
    // or one of them does not fit its field, ExceptionInvalidFormName for a name of 32 characters and more, and
    // what ReconcileDevmodePaperSize throws, with the devmode written. A devmode whose public part ends before
    // dmDitherType does is left as it is.
    void SetMsPaperSizeFeaturesCurrentValues(DataModelIds::PageSizeTypeEnum formType, std::uint32_t paperId, LONG width,
                                             LONG length, const CXString& formName, bool reconcile);

    // The colour management method (15) and the rendering intent (16), between the data model's values and the numbers
    // that dmICMMethod and dmICMIntent have. ExceptionMicrosoftFeatureNotFound for another feature. A value that the
    // feature does not have has no number; for a number that it does not have there is
    // ExceptionMicrosoftDevmodeValueMappingFailed.
    [[nodiscard]] static std::optional<std::uint32_t> GetMsValueFromDataModelValue(std::uint32_t feature,
                                                                                   std::int32_t valueId);
    [[nodiscard]] static std::int32_t GetDataModelValueFromMsValue(std::uint32_t feature, std::uint32_t msValue);

private:
    void WritePaper(DataModelIds::PageSizeTypeEnum formType, WORD paperId, LONG width, LONG length,
                    const CXString& formName);
    void WriteCustomSize(LONG width, LONG length, const CXString& formName);
    void WriteForm(WORD paperId, LONG width, LONG length, const CXString& formName);
    void LeaveDimensionsOnlyForAcrobat();

    HANDLE m_printer;
    DEVMODEW* m_devmode;
    MSDeviceCapabilities& m_capabilities;
};
