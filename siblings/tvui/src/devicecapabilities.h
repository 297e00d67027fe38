// What a printer can do, in the shapes of DeviceCapabilitiesW.
#pragma once

#include <windows.h>

#include <tvutil/printer.h>

// Whether the driver answers this capability (DC_...) at all.
[[nodiscard]] bool IsAnsweredCapability(WORD capability) noexcept;

// The answer for a capability that is answered. Lists are written to `output` record by record, as many as the answer
// counts; a null output asks for the count. The caller's room is not known here: it has asked for the count before.
// So the papers are those of the model, under the names and in the order of the paper cache, without the user's custom
// sizes: one that is added between the two questions would be written behind the caller's room.
// Throws the printer's, its driver's or its model's failure.
[[nodiscard]] DWORD AnswerCapability(WORD capability, const Printer& printer, void* output);

// How many answers this process has asked for.
[[nodiscard]] DWORD CountCapabilityQuestions() noexcept;
