// The start tags of a document's text, for what no DOM tells: where a tag stands, and what it declares itself.
#pragma once

#include <cstddef>
#include <optional>
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

// One tag after the other, in the document's order: the n-th is that of a DOM's n-th element. Only for the text of a
// document that a DOM has taken, which must outlive the scanner: of another one the answer is any, and may take long.
class StartTagScanner
{
public:
    explicit StartTagScanner(WStringView text);

    [[nodiscard]] std::optional<StartTag> Next(); // nothing behind the last one

private:
    struct Attribute
    {
        WStringView name;
        WStringView value; // as it is written
    };

    void SkipPast(WStringView end, std::size_t openingLength);
    StartTag ReadTag();
    std::optional<Attribute> ReadAttribute();
    [[nodiscard]] std::size_t EndOf(WStringView ends) const;

    WStringView m_text;
    std::size_t m_at = 0;
};

// The root's, then of the others those that declare something.
[[nodiscard]] std::vector<StartTag> FindStartTags(WStringView text);
