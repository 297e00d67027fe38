// The start tags of a document's text, for what no DOM tells: where a tag stands, and what it declares itself.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "utilitiesstaticlib/wideliteral.h"

struct NamespaceDeclaration
{
    std::string prefix; // in UTF-8, as the URI; empty: the default
    std::string uri;
};

struct StartTag
{
    std::size_t offset = 0;  // of the '<', in characters
    std::size_t nameEnd = 0; // behind the element's name
    std::vector<NamespaceDeclaration> declarations;
};

// The root's, then of the others those that declare something; in the document's order. Only for the text of a document
// that a DOM has taken: of another one the answer is any, and may take long.
[[nodiscard]] std::vector<StartTag> FindStartTags(WStringView text);
