// The document's settings of a devmode: the data model's namespace of its persistent attributes, to edit and to store.
#pragma once

#include <memory>

#include <tvutil/attributebytesindexedlist.h>

class XDevmode;

// Null when the devmode carries no persistent attributes: then nothing could be stored.
[[nodiscard]] std::unique_ptr<AttributeBytesIndexedList> ReadDocumentSettings(XDevmode& devmode);

// Replaces them and commits the devmode; everything else that it carries stays. False, with the devmode as it was, when
// it carries no persistent attributes or those of a later format, and when it has no room for the longer ones.
bool CommitDocumentSettings(XDevmode& devmode, const AttributeBytesIndexedList& settings);
