// The driver's answer to DocumentPropertiesW: the size of its devmode, and the devmode itself.
#pragma once

#include <windows.h>

#include "interfaces/documentpropertyheader.h"

// Without a mode or an output: the size of the driver's devmode in bytes, which cbOut receives as well. Otherwise the
// driver's defaults, with what pdmIn claims and the printer can do merged in (DM_IN_BUFFER), are written to pdmOut
// (DM_OUT_BUFFER) and the answer is IDOK. A failure answers -1, with the last error, and writes nothing. Throws the
// printer's, its driver's or its model's failure.
[[nodiscard]] LONG AnswerDocumentProperties(DOCUMENTPROPERTYHEADER& header);
