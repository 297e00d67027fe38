// The public construction rules of Print Schema documents, whoever made the document and for whichever printer.
#pragma once

#include <set>

#include "faultlist.h"

// `manyChoice` are the features of a ticket that may have several options. A root of another kind is the only fault
// then: nothing is known of what it holds.
void CheckConstruction(const SchemaElement& root, const std::set<const SchemaElement*>& manyChoice, FaultList& faults);
