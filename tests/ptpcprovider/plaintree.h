// PlainTree: the elements of a document by walking from child to sibling. It asks no query, so that what the document
// layer finds can be held against it.
#pragma once

#include <msxml2.h>

#include <optional>
#include <string>
#include <vector>

#include "utilitiesstaticlib/comptr.h"

class PlainTree
{
public:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    // Those of other namespaces than the framework's have no local name here.
    struct Element
    {
        ComPtr<IXMLDOMNode> node;
        std::string local;
        std::optional<std::string> name; // the attribute
        std::size_t parent;              // its place in the list
    };

    explicit PlainTree(IXMLDOMDocument2* document);

    // In document order.
    [[nodiscard]] const std::vector<Element>& All() const;
    [[nodiscard]] std::string TextOf(std::size_t at) const;
    [[nodiscard]] bool Is(std::size_t at, const char* local, const std::optional<std::string>& name) const;
    [[nodiscard]] bool IsBelow(std::size_t at, const char* local, const std::string& name) const;
    [[nodiscard]] std::size_t Child(std::size_t parent, const char* local) const;
    // The names of such elements in document order, each once.
    [[nodiscard]] std::vector<std::string> Names(const char* local) const;

    // Takes the element out of its document; the list stays as it is.
    void Remove(std::size_t at) const;

    template <class Predicate>
    [[nodiscard]] std::size_t First(Predicate&& holds) const
    {
        for (std::size_t at = 0; at < m_elements.size(); ++at)
            if (holds(at))
                return at;
        return kNone;
    }

private:
    void Add(IXMLDOMNode* node, std::size_t parent);

    std::vector<Element> m_elements;
};
