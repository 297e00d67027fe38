// MSDeviceCapabilities: what a printer can do, from stores that were filled before, so that no conversion runs the
// driver's own, slow capability code.
//
// One object a printer and conversion; one thread at a time. The printer handle is borrowed.
//
// Answered so far: the paper list inside the spooler and the filter pipeline, where it comes from the devmode. The
// stores outside of it are to come; until then there is no list there.
#pragma once

#include <windows.h>

#include <vector>

#include "complugins/formsinforecord.h"

class MSDeviceCapabilities
{
public:
    using _tag_FormsInfoRec = FormsInfoRecord;

    // Where the process runs, or where a test says that it does.
    enum class Context
    {
        OfThisProcess,
        Spooler, // also the filter pipeline
        Application,
    };

    // A null handle or one of all ones throws ExceptionInvalidPrinterHandle.
    void Initialize(HANDLE printer, Context context = Context::OfThisProcess);

    [[nodiscard]] HANDLE GetPrinterHandle() const noexcept;

    // Replaces `forms`. Inside the spooler the records come from the devmode's own persistent attributes: E_FAIL,
    // with `forms` empty, without a devmode or when it carries none. Outside of it E_FAIL too, as long as there is no
    // store to ask.
    HRESULT GetPaperDatabaseCachedDeviceCapabilitiesVector(HANDLE printer, DEVMODEW* devmode,
                                                           std::vector<_tag_FormsInfoRec>& forms);

private:
    HANDLE m_printer = nullptr;
    bool m_isSpooler = false;
};
