// Settings of a devmode that the data model does not take: of another kind than their feature's, or beyond what it
// takes.
#pragma once

#include <string>
#include <vector>

#include <tvutil/attributebytesindexedlist.h>

// Their features, "43 JobCopies", ascending within a collection. Features that the catalogue does not have, or that are
// stored elsewhere than in their collection, are not among them: they are nobody's settings.
[[nodiscard]] std::vector<std::string> FindUntakenSettings(const AttributeBytesIndexedList& settings);
