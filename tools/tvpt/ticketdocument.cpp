#include "ticketdocument.h"

#include <algorithm>
#include <string>
#include <vector>

#include <tvutil/cxstring.h>

#include "documenttext.h"
#include "failure.h"
#include "printschemadocument.h"
#include "starttags.h"

namespace
{

constexpr char kReading[] = "reading the document";

struct RootNamespace
{
    SchemaNamespace name;
    const char* words;
    bool isAdded;          // where the root does not declare it
    bool isComparedAsText; // its names stand in "name" attributes, where no DOM sees which namespace a prefix has
};

constexpr RootNamespace kRootNamespaces[] = {
    {kFramework, "the framework's namespace", false, false},
    {kKeywords, "the keywords' namespace", true, true},
    {kPrivateKeywords, "the driver's namespace", false, true},
    {kXmlSchemaInstance, "the XML Schema instance namespace", true, false},
    {kXmlSchema, "the XML Schema namespace", true, false},
};

class Declarations
{
public:
    Declarations(WStringView text, std::string_view documentName)
        : m_text(text), m_documentName(documentName), m_tags(FindStartTags(text))
    {
    }

    void RequireUnderstandable() const
    {
        for (const RootNamespace& known : kRootNamespaces)
            RequirePrefix(known);
        RequireOwnPrivatePrefix();
        for (std::size_t at = 1; at < m_tags.size(); ++at)
            RequireSameBindings(m_tags[at]);
    }

    // The text with what is missing; empty when nothing is.
    [[nodiscard]] WideString Completed() const
    {
        std::string missing;
        for (const RootNamespace& known : kRootNamespaces)
            if (known.isAdded && FirstAtRoot(known.name.uri) == nullptr)
                missing += " xmlns:" + FreePrefix(known.name) + "=\"" + std::string(known.name.uri) + "\"";
        if (missing.empty())
            return {};
        WideString text(m_text);
        return text.insert(Root().nameEnd, CXString::FromUtf8(missing).View());
    }

private:
    [[nodiscard]] const StartTag& Root() const
    {
        return m_tags.front(); // of a document that was parsed
    }

    // A provider takes the first declaration for the one that counts.
    [[nodiscard]] const NamespaceDeclaration* FirstAtRoot(std::string_view uri) const
    {
        const auto found = std::ranges::find(Root().declarations, uri, &NamespaceDeclaration::uri);
        return found != Root().declarations.end() ? &*found : nullptr;
    }

    [[noreturn]] void Refuse(const StartTag& tag, const std::string& reason) const
    {
        const WStringView before = m_text.substr(0, tag.offset);
        const auto line = 1 + std::count(before.begin(), before.end(), W('\n'));
        Fail(kReading, m_documentName, "line " + std::to_string(line) + ": " + reason);
    }

    void RequirePrefix(const RootNamespace& known) const
    {
        const NamespaceDeclaration* const first = FirstAtRoot(known.name.uri);
        if (first != nullptr && first->prefix.empty())
            Refuse(Root(), std::string("the root declares ") + known.words +
                               " as the default; it needs a prefix, such as " + std::string(known.name.prefix));
    }

    // The driver's names are spelled with "tk" once the provider has read them.
    void RequireOwnPrivatePrefix() const
    {
        const NamespaceDeclaration* const own = FirstAtRoot(kPrivateKeywords.uri);
        if (own == nullptr)
            return;
        for (const NamespaceDeclaration& other : Root().declarations)
            if (other.prefix == kPrivateKeywords.prefix && other.uri != kPrivateKeywords.uri)
                Refuse(Root(), "the root binds the prefix tk, which the driver's namespace needs, to " + other.uri);
    }

    void RequireSameBindings(const StartTag& inner) const
    {
        for (const RootNamespace& known : kRootNamespaces)
        {
            const NamespaceDeclaration* const atRoot = known.isComparedAsText ? FirstAtRoot(known.name.uri) : nullptr;
            if (atRoot == nullptr)
                continue;
            for (const NamespaceDeclaration& anew : inner.declarations)
                if (anew.uri != known.name.uri &&
                    (anew.prefix == atRoot->prefix ||
                     (known.name.uri == kPrivateKeywords.uri && anew.prefix == kPrivateKeywords.prefix)))
                    Refuse(inner, "the prefix " + anew.prefix + ", which stands for " + known.words +
                                      " at the root, is bound to " + anew.uri + " here");
        }
    }

    // The usual one, unless some element of the document binds it to something else.
    [[nodiscard]] std::string FreePrefix(const SchemaNamespace& wanted) const
    {
        const auto isTaken = [&](const std::string& prefix)
        {
            return std::ranges::any_of(m_tags,
                                       [&](const StartTag& tag)
                                       {
                                           return std::ranges::any_of(
                                               tag.declarations, [&](const NamespaceDeclaration& other)
                                               { return other.prefix == prefix && other.uri != wanted.uri; });
                                       });
        };
        std::string prefix(wanted.prefix);
        for (int number = 1; isTaken(prefix); ++number)
            prefix = std::string(wanted.prefix) + std::to_string(number);
        return prefix;
    }

    WStringView m_text;
    std::string_view m_documentName;
    std::vector<StartTag> m_tags;
};

} // namespace

ComPtr<IXMLDOMDocument2> LoadForProvider(std::string_view bytes, std::string_view name, std::string_view rootName)
{
    const WideString text = DecodeDocument(bytes, name);
    ComPtr<IXMLDOMDocument2> document = ParseDocument(text, name);
    if (const std::string fault = DescribeRootFault(*document.Get(), rootName); !fault.empty())
        Fail(kReading, name, fault);
    const Declarations declarations(text, name);
    declarations.RequireUnderstandable();
    const WideString completed = declarations.Completed();
    return completed.empty() ? document : ParseDocument(completed, name);
}
