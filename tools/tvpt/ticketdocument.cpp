#include "ticketdocument.h"

#include <algorithm>
#include <map>
#include <span>
#include <string>
#include <vector>

#include <tvutil/cxstring.h>

#include "documenttext.h"
#include "failure.h"
#include "printschemadocument.h"
#include "schemawriter.h"
#include "starttags.h"

namespace
{

constexpr char kReading[] = "reading the document";

struct KnownNamespace
{
    SchemaNamespace name;
    const char* words = nullptr;
    // The provider writes names of it: the root declares it, whoever wrote the document.
    bool isStandard = false;
    // Its names stand in "name" attributes, where no DOM sees which namespace a prefix has.
    bool isComparedAsText = false;
};

constexpr KnownNamespace kPrivateNames = {kPrivateKeywords, "the driver's namespace", false, true};
constexpr KnownNamespace kKnownNamespaces[] = {
    {kFramework, "the framework's namespace", false, false},
    {kKeywords, "the keywords' namespace", true, true},
    kPrivateNames,
    {kXmlSchemaInstance, "the XML Schema instance namespace", true, false},
    {kXmlSchema, "the XML Schema namespace", true, false},
};

class Declarations
{
public:
    Declarations(WStringView text, std::string_view documentName)
        : m_text(text), m_documentName(documentName), m_tags(FindStartTags(text))
    {
        for (const StartTag& tag : m_tags)
            for (const NamespaceDeclaration& declaration : tag.declarations)
            {
                const auto [known, isNew] = m_uses.try_emplace(declaration.prefix, declaration.uri);
                if (!isNew && known->second != declaration.uri)
                    known->second.clear(); // several: no namespace that matters here is empty
            }
    }

    void RequireUnderstandable() const
    {
        for (const KnownNamespace& known : kKnownNamespaces)
            RequirePrefix(known);
        RequireOwnPrivatePrefix();
        for (const KnownNamespace& known : kKnownNamespaces)
            if (const std::string prefix = RootPrefix(known); known.isComparedAsText && !prefix.empty())
                for (const StartTag& inner : std::span(m_tags).subspan(1))
                    RequireSameBindings(inner, known, prefix);
    }

    // The text with what is missing; empty when nothing is.
    [[nodiscard]] WideString Completed(std::string_view driverNamespaceUri) const
    {
        std::string missing;
        for (const KnownNamespace& known : kKnownNamespaces)
            missing += MissingDeclaration(known);
        if (NeedsDriverNamespace(driverNamespaceUri))
            missing += MissingDeclaration({{SchemaWriter::kDriverPrefix, driverNamespaceUri}, nullptr, true, false});
        if (missing.empty())
            return {};
        WideString text(m_text);
        text.insert(Root().nameEnd, CXString::FromUtf8(missing).View());
        return text;
    }

private:
    [[nodiscard]] const StartTag& Root() const
    {
        return m_tags.front(); // of a document that was parsed
    }

    [[nodiscard]] std::string MissingDeclaration(const KnownNamespace& known) const
    {
        const std::string prefix = RootPrefix(known);
        if (prefix.empty() || FirstAtRoot(known) != nullptr)
            return {};
        return " xmlns:" + prefix + "=\"" + std::string(known.name.uri) + "\"";
    }

    // The provider finds a published namespace under any prefix and spells it "tk"; any other one it takes to be
    // "ns0000". Where these are another's the document stays as it is.
    [[nodiscard]] bool NeedsDriverNamespace(std::string_view uri) const
    {
        if (uri.empty())
            return false;
        if (uri == kPrivateKeywords.uri)
            return RootPrefix(kPrivateNames).empty() && !IsTaken(std::string(kPrivateKeywords.prefix), kPrivateNames);
        const KnownNamespace drivers{{SchemaWriter::kDriverPrefix, uri}};
        return !IsTaken(std::string(SchemaWriter::kDriverPrefix), drivers);
    }

    // A provider takes the first declaration for the one that counts.
    [[nodiscard]] const NamespaceDeclaration* FirstAtRoot(const KnownNamespace& known) const
    {
        const auto found = std::ranges::find(Root().declarations, known.name.uri, &NamespaceDeclaration::uri);
        return found != Root().declarations.end() ? &*found : nullptr;
    }

    // The prefix that the root has or gets; empty when it gets none. What only inner elements declare gets theirs.
    [[nodiscard]] std::string RootPrefix(const KnownNamespace& known) const
    {
        if (const NamespaceDeclaration* const first = FirstAtRoot(known))
            return first->prefix;
        const NamespaceDeclaration* const inner = known.isComparedAsText ? FirstWithPrefix(known) : nullptr;
        if (inner != nullptr && !IsTaken(inner->prefix, known))
            return inner->prefix;
        if (!known.isStandard && inner == nullptr)
            return {};
        std::string prefix(known.name.prefix);
        for (int number = 1; IsTaken(prefix, known); ++number)
            prefix = std::string(known.name.prefix) + std::to_string(number);
        return prefix;
    }

    [[nodiscard]] const NamespaceDeclaration* FirstWithPrefix(const KnownNamespace& known) const
    {
        for (const StartTag& tag : m_tags)
            for (const NamespaceDeclaration& declaration : tag.declarations)
                if (declaration.uri == known.name.uri && !declaration.prefix.empty())
                    return &declaration;
        return nullptr;
    }

    // Some element binds it to something else.
    [[nodiscard]] bool IsTaken(const std::string& prefix, const KnownNamespace& known) const
    {
        const auto found = m_uses.find(prefix);
        return found != m_uses.end() && found->second != known.name.uri;
    }

    [[noreturn]] void Refuse(const StartTag& tag, const std::string& reason) const
    {
        Fail(kReading, m_documentName, LineAt(m_text, tag.offset) + ": " + reason);
    }

    void RequirePrefix(const KnownNamespace& known) const
    {
        const NamespaceDeclaration* const first = FirstAtRoot(known);
        if (first != nullptr && first->prefix.empty())
            Refuse(Root(), std::string("the root declares ") + known.words +
                               " as the default; it needs a prefix, such as " + std::string(known.name.prefix));
    }

    // The driver's names are spelled with "tk" once the provider has read them.
    void RequireOwnPrivatePrefix() const
    {
        if (std::ranges::find(Root().declarations, kPrivateKeywords.uri, &NamespaceDeclaration::uri) ==
            Root().declarations.end())
            return;
        for (const NamespaceDeclaration& other : Root().declarations)
            if (other.prefix == kPrivateKeywords.prefix && other.uri != kPrivateKeywords.uri)
                Refuse(Root(),
                       "the root binds the prefix tk, which the driver's namespace needs, to " + Shortened(other.uri));
    }

    void RequireSameBindings(const StartTag& inner, const KnownNamespace& known, const std::string& prefix) const
    {
        for (const NamespaceDeclaration& here : inner.declarations)
        {
            const bool isOurs = here.uri == known.name.uri;
            if (!isOurs && here.prefix == prefix)
                Refuse(inner, "the prefix " + Shortened(prefix) + ", which stands for " + known.words +
                                  " at the root, is bound to " + Shortened(here.uri) + " here");
            if (!isOurs && here.prefix == kPrivateKeywords.prefix && known.name.uri == kPrivateKeywords.uri)
                Refuse(inner, "the prefix tk, with which the provider spells the driver's names, is bound to " +
                                  Shortened(here.uri) + " here");
            if (isOurs && !here.prefix.empty() && here.prefix != prefix)
                Refuse(inner, std::string(known.words) + " has the prefix " + Shortened(here.prefix) + " here and " +
                                  Shortened(prefix) + " at the root, which alone counts");
        }
    }

    WStringView m_text;
    std::string_view m_documentName;
    std::vector<StartTag> m_tags;
    std::map<std::string, std::string> m_uses; // every prefix to its namespace; to nothing where it has several
};

} // namespace

ComPtr<IXMLDOMDocument2> LoadForProvider(std::string_view bytes, std::string_view name, std::string_view rootName,
                                         std::string_view driverNamespaceUri)
{
    const WideString text = DecodeDocument(bytes, name);
    ComPtr<IXMLDOMDocument2> document = ParseDocument(text, name);
    if (const std::string fault = DescribeRootFault(*document.Get(), rootName); !fault.empty())
        Fail(kReading, name, fault);
    const Declarations declarations(text, name);
    declarations.RequireUnderstandable();
    const WideString completed = declarations.Completed(driverNamespaceUri);
    if (completed.empty())
        return document;
    document.Reset(); // one tree at a time: it may be large
    return ParseDocument(completed, name);
}
