// TextResourceLoader: the texts of products, and which printer's are in force.
//
// A product's texts come with its printer model, which a library above this one reads and hands in. Here they are
// shared by the whole process, one set for each printer, and known exactly as long as somebody keeps them: nothing is
// evicted while it is in use, and what nobody keeps takes no room.
//
// A printer is known by its name. What was read for one that has been given another name since, or by somebody who
// serves another printer now, is put in force by whoever keeps it.
//
// The printer in force is the one that this thread initialised last; on a thread that never did, the one that the
// process initialised last. So two providers on two threads do not see each other's texts. Safe on every thread.
#pragma once

#include <windows.h>

#include <tvutil/cxstring.h>

#include <cstdint>
#include <map>
#include <memory>

class TVUTIL_API TextResourceLoader
{
public:
    using Texts = std::map<std::int32_t, CXString>; // by number

    // Makes a printer's texts known, until the last copy of what this returns is gone. The newest texts of a printer
    // win; equal ones are shared. Printers are compared ignoring case, as the spooler does. An empty name is no
    // printer's: those texts are its caller's alone.
    [[nodiscard]] static std::shared_ptr<const Texts> Share(const CXString& printerName, const Texts& texts);

    // Puts the printer's texts in force. Answers whether it has any; without them no other printer's stay in force.
    // With `forget` those known so far are no longer the printer's: its product was exchanged. Throws
    // ExceptionPrinterFailure when the handle has no name; what was in force stays in force then.
    static bool Initialize(HANDLE printer, bool forget);
    // The same, for a printer known by name.
    static bool Initialize(const CXString& printerName, bool forget);
    // Puts these texts in force, whatever printer they were made known for; null puts none in force.
    static void Initialize(const std::shared_ptr<const Texts>& texts);

    // A text of the printer in force; empty when there is none.
    [[nodiscard]] static CXString LoadStringW(std::int32_t number);
};
