#include "dom/loader.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <set>
#include <utility>
#include <vector>

#include "dom/links.h"
#include "dom/newnodes.h"
#include "dom/nodekinds.h"
#include "dom/prefixscope.h"
#include "dom/qname.h"
#include "dom/strings.h"
#include "utilitiesstaticlib/documentlimits.h"

namespace winport::dom
{

namespace
{

using namespace documentlimits;

constexpr std::size_t kPieceBytes = 4096;

struct FreeParser
{
    void operator()(xmlParserCtxt* parser) const noexcept
    {
        xmlFreeParserCtxt(parser);
    }
};

struct Attribute
{
    std::string_view name;
    QName parts;
    const char* value;
};

class TreeBuilder
{
public:
    TreeBuilder(std::string_view text, Tree& tree) : m_text(text), m_tree(tree), m_parent(tree.DocumentNode())
    {
        m_namespaces.Bind("xml", tree.Namespaces().Get("xml", kXmlUri));
        m_preserves.push_back(tree.Settings().preserveWhiteSpace);
    }

    std::optional<LoadError> Build()
    {
        AddXmlDeclaration();
        xmlSAXHandler handler = Handler();
        const std::unique_ptr<xmlParserCtxt, FreeParser> parser(
            xmlCreateIOParserCtxt(&handler, this, Read, nullptr, this, XML_CHAR_ENCODING_UTF8));
        if (parser == nullptr)
            throw std::bad_alloc();
        // The text is UTF-8 by now, whatever encoding its declaration names; its size is bounded by us. NOENT gives
        // attribute values as they are meant; without a document type there are no entities that could grow.
        xmlCtxtUseOptions(parser.get(), XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_IGNORE_ENC | XML_PARSE_NOENT);
        m_parser = parser.get();
        xmlParseDocument(parser.get());
        if (m_exception)
            std::rethrow_exception(m_exception);
        if (!m_error && (parser->wellFormed == 0 || m_tree.RootElement() == nullptr))
            Fail("The text is not well-formed.");
        return std::move(m_error);
    }

private:
    static xmlSAXHandler Handler()
    {
        xmlSAXHandler handler = {};
        handler.initialized = XML_SAX2_MAGIC; // asks for structured errors
        // Element events with the attributes as they are written, declarations among them in their place. The parser
        // chooses the other kind for every handler that asks for structured errors, so the choice is changed here.
        handler.startDocument = [](void* self)
        {
            Of(self).m_parser->sax2 = 0;
        };
        handler.startElement = [](void* self, const xmlChar* name, const xmlChar** attributes)
        {
            Of(self).Guard([&](TreeBuilder& builder) { builder.StartElement(View(name), attributes); });
        };
        handler.endElement = [](void* self, const xmlChar*)
        {
            Of(self).Guard([](TreeBuilder& builder) { builder.EndElement(); });
        };
        handler.characters = [](void* self, const xmlChar* text, int length)
        {
            Of(self).Guard([&](TreeBuilder& builder) { builder.m_pending += Piece(text, length); });
        };
        handler.ignorableWhitespace = handler.characters;
        handler.cdataBlock = [](void* self, const xmlChar* text, int length)
        {
            Of(self).Guard([&](TreeBuilder& builder)
                           { builder.Append(NewCData(builder.m_tree.Document(), Piece(text, length))); });
        };
        handler.comment = [](void* self, const xmlChar* text)
        {
            Of(self).Guard([&](TreeBuilder& builder)
                           { builder.Append(NewComment(builder.m_tree.Document(), std::string(View(text)))); });
        };
        handler.processingInstruction = [](void* self, const xmlChar* target, const xmlChar* data)
        {
            Of(self).Guard(
                [&](TreeBuilder& builder) {
                    builder.Append(
                        NewInstruction(builder.m_tree.Document(), std::string(View(target)), std::string(View(data))));
                });
        };
        // The scan before has refused it; this holds should the two ever differ.
        handler.internalSubset = [](void* self, const xmlChar*, const xmlChar*, const xmlChar*)
        {
            Of(self).Guard([](TreeBuilder& builder) { builder.Fail(kDoctype); });
        };
        handler.serror = [](void* self, xmlError* error)
        {
            Of(self).Guard([&](TreeBuilder& builder) { builder.OnError(*error); });
        };
        return handler;
    }

    static TreeBuilder& Of(void* self)
    {
        return *static_cast<TreeBuilder*>(self);
    }

    static std::string_view Piece(const xmlChar* text, int length)
    {
        return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(length)};
    }

    static int Read(void* self, char* buffer, int size)
    {
        TreeBuilder& builder = Of(self);
        if (builder.HasFailed())
            return 0;
        const std::string_view piece =
            builder.m_text.substr(builder.m_read, std::min(kPieceBytes, static_cast<std::size_t>(size)));
        std::memcpy(buffer, piece.data(), piece.size());
        builder.m_read += piece.size();
        return static_cast<int>(piece.size());
    }

    // No exception passes through the parser's C code.
    template <class Event>
    void Guard(Event&& event) noexcept
    {
        if (HasFailed())
            return;
        try
        {
            event(*this);
        }
        catch (...)
        {
            m_exception = std::current_exception();
        }
    }

    bool HasFailed() const
    {
        return m_error.has_value() || m_exception != nullptr;
    }

    void OnError(const xmlError& error)
    {
        if (error.level < XML_ERR_ERROR)
            return;
        if (error.code == XML_ERR_NO_MEMORY)
            throw std::bad_alloc();
        // The parser's own text names the line of the start tag, which it does not know here: it says line 0.
        if (error.code == XML_ERR_TAG_NAME_MISMATCH && error.str1 != nullptr && error.str2 != nullptr)
            return Fail("The end tag '" + std::string(error.str2) + "' does not match the start tag '" +
                        std::string(error.str1) + "'.");
        std::string reason(View(reinterpret_cast<const xmlChar*>(error.message)));
        while (!reason.empty() && IsXmlSpace(reason.back()))
            reason.pop_back();
        Fail(std::move(reason));
    }

    void Fail(std::string reason)
    {
        std::size_t offset = m_text.size();
        if (m_parser != nullptr && xmlByteConsumed(m_parser) >= 0)
            offset = std::min(offset, static_cast<std::size_t>(xmlByteConsumed(m_parser)));
        m_error = ErrorAt(m_text, offset, std::move(reason));
    }

    // The event interface does not tell the XML declaration; the DOM shows it as a processing instruction.
    void AddXmlDeclaration()
    {
        constexpr std::string_view kStart = "<?xml";
        if (!m_text.starts_with(kStart) || m_text.size() <= kStart.size() || !IsXmlSpace(m_text[kStart.size()]))
            return;
        std::string_view data = m_text.substr(kStart.size());
        data = data.substr(0, data.find("?>"));
        const std::string normalised = Normalised(data);
        Append(NewInstruction(m_tree.Document(), "xml", normalised));
    }

    // version="1.0" encoding="utf-8": one blank between, double quotes. The parser checks the rest.
    static std::string Normalised(std::string_view data)
    {
        std::string result;
        char quote = 0;
        for (const char character : data)
        {
            if (quote != 0 || !IsXmlSpace(character))
            {
                const bool isQuote = character == '"' || character == '\'';
                result += isQuote ? '"' : character;
                if (isQuote)
                    quote = quote == 0 ? character : static_cast<char>(0);
                if (isQuote && quote == 0)
                    result += ' ';
            }
        }
        while (!result.empty() && result.back() == ' ')
            result.pop_back();
        return result;
    }

    void Append(OwnedNode node)
    {
        FlushText();
        AppendNow(std::move(node));
    }

    void AppendNow(OwnedNode node)
    {
        if (m_hasDroppedBlanks)
            MarkDroppedBlanks(node.get());
        m_hasDroppedBlanks = false;
        LinkChild(m_parent, node.release(), nullptr);
    }

    void FlushText()
    {
        if (m_pending.empty())
            return;
        if (!m_preserves.back() && IsAllXmlSpace(m_pending))
            m_hasDroppedBlanks = true;
        else
            AppendNow(NewText(m_tree.Document(), m_pending));
        m_pending.clear();
    }

    void StartElement(std::string_view name, const xmlChar** attributes)
    {
        FlushText();
        if (m_preserves.size() > kMaximumDepth)
            return Fail(kTooDeep);
        if (!ReadAttributes(attributes) || !EnterScope())
            return;
        const auto parts = SplitXmlName(name);
        if (!parts)
            return Fail("The name '" + std::string(name) + "' is not a qualified name.");
        xmlNs* elementName = nullptr;
        if (!Resolve(*parts, elementName))
            return;
        OwnedNode element = NewElement(m_tree.Document(), elementName, parts->local);
        if (!AddAttributes(element.get()))
            return;
        xmlNode* const added = element.get();
        AppendNow(std::move(element));
        m_parent = added;
    }

    void EndElement()
    {
        FlushText();
        // Blanks before an end tag stand before no node.
        m_hasDroppedBlanks = false;
        m_parent = m_parent->parent;
        m_namespaces.Leave();
        m_preserves.pop_back();
    }

    bool ReadAttributes(const xmlChar** attributes)
    {
        m_attributes.clear();
        for (; attributes != nullptr && attributes[0] != nullptr; attributes += 2)
        {
            const std::string_view name = View(attributes[0]);
            const auto parts = SplitXmlName(name);
            if (!parts)
            {
                Fail("The name '" + std::string(name) + "' is not a qualified name.");
                return false;
            }
            m_attributes.push_back({name, *parts, reinterpret_cast<const char*>(attributes[1])});
        }
        if (m_attributes.size() > kMaximumAttributes)
            Fail(kTooManyAttributes);
        return !HasFailed();
    }

    // Binds the element's declarations, so that its own name can use them.
    bool EnterScope()
    {
        m_namespaces.Enter();
        bool preserves = m_preserves.back();
        for (const Attribute& attribute : m_attributes)
        {
            const std::string_view value = attribute.value;
            if (IsDeclarationName(attribute.parts))
            {
                if (!Declare(attribute.parts, value))
                    return false;
            }
            else if (attribute.name == "xml:space")
            {
                preserves = value == "preserve" || (value != "default" && preserves) ||
                            (value == "default" && m_tree.Settings().preserveWhiteSpace);
            }
        }
        m_preserves.push_back(preserves);
        return true;
    }

    bool Declare(const QName& name, std::string_view uri)
    {
        const std::string_view prefix = name.prefix.empty() ? std::string_view() : name.local;
        const bool isXml = prefix == "xml";
        if (prefix == "xmlns" || uri == kXmlnsUri || isXml != (uri == kXmlUri) || (!prefix.empty() && uri.empty()))
        {
            Fail("The namespace declaration of the prefix '" + std::string(prefix) + "' is not allowed.");
            return false;
        }
        m_namespaces.Bind(prefix, m_tree.Namespaces().Get(prefix, uri));
        return true;
    }

    bool Resolve(const QName& name, xmlNs*& resolved)
    {
        xmlNs* const* const bound = m_namespaces.Find(name.prefix);
        if (bound == nullptr && !name.prefix.empty())
        {
            Fail("The namespace prefix '" + std::string(name.prefix) + "' is not declared.");
            return false;
        }
        resolved = bound != nullptr ? *bound : nullptr;
        return true;
    }

    bool ResolveAttribute(const QName& name, xmlNs*& resolved)
    {
        if (IsDeclarationName(name))
            resolved = m_tree.Namespaces().Get(name.prefix, kXmlnsUri);
        else if (name.prefix.empty()) // the default namespace is not for attributes
            resolved = nullptr;
        else
            return Resolve(name, resolved);
        return true;
    }

    bool AddAttributes(xmlNode* element)
    {
        std::set<std::pair<std::string_view, std::string_view>> prefixed; // URI, local name
        xmlAttr* last = nullptr;
        for (const Attribute& attribute : m_attributes)
        {
            xmlNs* name = nullptr;
            if (!ResolveAttribute(attribute.parts, name))
                return false;
            if (!attribute.parts.prefix.empty() && !prefixed.emplace(View(name->href), attribute.parts.local).second)
            {
                Fail("The attribute '" + std::string(attribute.name) + "' is given twice, under two prefixes.");
                return false;
            }
            OwnedNode node = NewAttribute(m_tree.Document(), name, attribute.parts.local, attribute.value);
            xmlAttr* const added = AsAttribute(node.release());
            // Linked by hand: looking for the end each time would make many attributes slow.
            added->parent = element;
            added->prev = last;
            (last != nullptr ? last->next : element->properties) = added;
            last = added;
        }
        return true;
    }

    std::string_view m_text;
    std::size_t m_read = 0;
    Tree& m_tree;
    xmlParserCtxt* m_parser = nullptr;
    xmlNode* m_parent;
    PrefixScope<xmlNs*> m_namespaces;
    std::vector<bool> m_preserves; // by level, the document's own first
    std::vector<Attribute> m_attributes;
    std::string m_pending;
    bool m_hasDroppedBlanks = false;
    std::optional<LoadError> m_error;
    std::exception_ptr m_exception;
};

} // namespace

std::optional<LoadError> LoadText(std::string_view utf8, Tree& tree)
{
    if (const auto excess = FindExcess(utf8))
        return ErrorAt(utf8, excess->offset, excess->reason);
    return TreeBuilder(utf8, tree).Build();
}

LoadError ErrorAt(std::string_view utf8, std::size_t offset, std::string reason)
{
    LoadError error;
    error.reason = std::move(reason);
    const std::string_view before = utf8.substr(0, offset);
    error.line = static_cast<LONG>(std::count(before.begin(), before.end(), '\n')) + 1;
    return error;
}

} // namespace winport::dom
