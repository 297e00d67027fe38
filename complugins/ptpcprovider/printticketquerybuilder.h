// PrintTicketQueryBuilder: composes XPath 1.0 queries over Print Schema documents, fragment by fragment.
//
// Element names are written with the document's own framework prefix. Names are put between double quotes as they
// stand: a lone quote in a name makes a query that the DOM refuses, two make one that asks for something else.
//
// So no text of a document is ever a name here. Names come from the code's own vocabulary. The prefixes come from
// namespace declarations, and what can be declared holds no quote. Whoever looks for what a document names (a
// reference's initialiser, orphans, private names) selects the elements by their kind and compares the attribute.
//
// Every failure of an operation is thrown as TavlenComException; it leaves the query as it was, except that AddOption
// may leave part of its fragment behind.
#pragma once

#include <tvutil/cxstring.h>

class PrintTicketQueryBuilder
{
public:
    // Relative queries start at the node on which they are run (".").
    enum class Start
    {
        Document,
        ContextNode,
    };

    // The framework prefix has its colon ("psf:"). An empty one is refused by the first Add.
    explicit PrintTicketQueryBuilder(const CXString& frameworkPrefix, Start start = Start::Document);
    virtual ~PrintTicketQueryBuilder() = default;
    PrintTicketQueryBuilder(const PrintTicketQueryBuilder&) = delete;
    PrintTicketQueryBuilder& operator=(const PrintTicketQueryBuilder&) = delete;

    // The name sought is the prefix ("psk:"; may be empty) followed by the local name. The first five search all
    // descendants; the Child operations take direct children of what the query selects so far.
    void AddFeature(const CXString& namePrefix, const CXString& localName);
    void AddProperty(const CXString& namePrefix, const CXString& localName);
    void AddScoredProperty(const CXString& namePrefix, const CXString& localName);
    void AddParameterDef(const CXString& namePrefix, const CXString& localName);
    void AddParameterInit(const CXString& namePrefix, const CXString& localName);
    void AddChildPropertyValue(const CXString& namePrefix, const CXString& localName);
    void AddChildOptionName(const CXString& namePrefix, const CXString& localName);
    void AddValue();

    // The union of the chosen Option and the value of an "OptionName" scored property.
    void AddOption(const CXString& keywordPrefix);

    // A new copy of the query, owned by the caller.
    void GetQuery(BSTR* query) const;

private:
    void AddNamed(WStringView fragment, const CXString& namePrefix, const CXString& localName, const WCHAR* method,
                  WStringView child = {});
    void RequireFrameworkPrefix(const WCHAR* method) const;

    CXString m_query;
    CXString m_frameworkPrefix;
};
