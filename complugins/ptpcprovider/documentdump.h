// Document dump points: the documents of a conversion, written to a folder for diagnosis.
//
// Compiled in with the build option TVPT_DOCUMENT_DUMPS; the environment variable TVPT_DUMP_FOLDER then names the
// folder. The name of a file is prefix + label + "_" + process id + "_" + sequence number + ".xml". Otherwise the two
// names are taken and discarded, and no file is written. A dump that fails is skipped: it must not fail the conversion.
#pragma once

#include <msxml2.h>

#include "utilitiesstaticlib/wideliteral.h"

void DumpDocument(IXMLDOMDocument2* document, const WCHAR* label, const WCHAR* prefix) noexcept;
