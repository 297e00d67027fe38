#include "dom/serializer.h"

#include <algorithm>
#include <vector>

#include "dom/namespacepool.h"
#include "dom/nodekinds.h"
#include "dom/prefixscope.h"
#include "dom/strings.h"
#include "dom/walk.h"

namespace winport::dom
{

namespace
{

constexpr std::string_view kSchemaInstanceUri = "http://www.w3.org/2001/XMLSchema-instance";
constexpr std::string_view kLineEnd = "\r\n";

// What must not stand as it is. A carriage return would be read back as a line feed, and in an attribute every kind
// of blank as a space.
std::string_view EscapeInText(char character)
{
    switch (character)
    {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '\r':
        return "&#13;";
    default:
        return {};
    }
}

std::string_view EscapeInAttribute(char character)
{
    switch (character)
    {
    case '"':
        return "&quot;";
    case '\t':
        return "&#9;";
    case '\n':
        return "&#10;";
    default:
        return EscapeInText(character);
    }
}

struct EncodingPlace
{
    std::size_t start = std::string_view::npos; // of the word
    std::size_t valueStart = 0;
    std::size_t end = 0; // behind the closing quote
};

EncodingPlace FindEncoding(std::string_view declaration)
{
    constexpr std::string_view kWord = "encoding";
    EncodingPlace place;
    const std::size_t start = declaration.find(kWord);
    const std::size_t quote = start != std::string_view::npos ? declaration.find_first_of("\"'", start) : start;
    if (quote == std::string_view::npos)
        return place;
    const std::size_t end = declaration.find(declaration[quote], quote + 1);
    if (end != std::string_view::npos)
        place = {start, quote + 1, end + 1};
    return place;
}

std::string WithEncoding(std::string_view declaration, std::string_view encoding)
{
    const EncodingPlace place = FindEncoding(declaration);
    std::string result(declaration);
    if (place.start == std::string_view::npos)
        return result;
    if (!encoding.empty())
        return result.replace(place.valueStart, place.end - 1 - place.valueStart, encoding);
    std::size_t start = place.start;
    while (start > 0 && IsXmlSpace(result[start - 1]))
        --start;
    return result.erase(start, place.end - start);
}

class Writer
{
public:
    explicit Writer(std::string_view encoding) : m_encoding(encoding)
    {
        m_scope.Bind("xml", std::string(kXmlUri));
    }

    std::string Write(xmlNode* node)
    {
        m_document = node->type == XML_DOCUMENT_NODE ? node : nullptr;
        if (IsAttribute(node))
            WriteAttribute(PrefixOf(node), AsAttribute(node), std::string_view());
        else
            WalkSubtree(
                node, [&](xmlNode* entered) { Enter(entered); }, [&](xmlNode* left) { Leave(left); });
        return std::move(m_text);
    }

private:
    struct NamedAttribute
    {
        std::string_view prefix;
        const xmlAttr* attribute;
    };

    void Enter(xmlNode* node)
    {
        switch (node->type)
        {
        case XML_ELEMENT_NODE:
            StartTag(node);
            break;
        case XML_TEXT_NODE:
            Escape(View(node->content), EscapeInText);
            break;
        case XML_CDATA_SECTION_NODE:
            WriteCData(View(node->content));
            break;
        case XML_COMMENT_NODE:
            Add("<!--", View(node->content), "-->");
            break;
        case XML_PI_NODE:
            WriteInstruction(node);
            break;
        default:
            break;
        }
    }

    void Leave(xmlNode* node)
    {
        if (IsElement(node))
        {
            if (node->children != nullptr)
            {
                m_text += "</";
                AddName(m_open.back(), View(node->name));
                m_text += '>';
            }
            m_open.pop_back();
            m_scope.Leave();
        }
        if (m_document != nullptr && node->parent == m_document)
            m_text += kLineEnd;
    }

    template <class... Parts>
    void Add(Parts... parts)
    {
        ((m_text += parts), ...);
    }

    void AddName(std::string_view prefix, std::string_view local)
    {
        if (!prefix.empty())
            Add(prefix, ":");
        m_text += local;
    }

    void Escape(std::string_view text, std::string_view (*escape)(char))
    {
        std::size_t done = 0;
        for (std::size_t at = 0; at < text.size(); ++at)
        {
            const std::string_view replacement = escape(text[at]);
            if (replacement.empty())
                continue;
            Add(text.substr(done, at - done), replacement);
            done = at + 1;
        }
        m_text += text.substr(done);
    }

    // The end mark within the text is split over two sections.
    void WriteCData(std::string_view text)
    {
        m_text += "<![CDATA[";
        for (std::size_t end = text.find("]]>"); end != std::string_view::npos; end = text.find("]]>"))
        {
            Add(text.substr(0, end + 2), "]]><![CDATA[");
            text.remove_prefix(end + 2);
        }
        Add(text, "]]>");
    }

    void WriteInstruction(const xmlNode* node)
    {
        const std::string data =
            IsXmlDeclaration(node) ? WithEncoding(View(node->content), m_encoding) : std::string(View(node->content));
        Add("<?", View(node->name), data.empty() ? "" : " ", std::string_view(data), "?>");
    }

    void StartTag(xmlNode* element)
    {
        m_scope.Enter();
        m_used.clear();
        m_added.clear();
        BindDeclarations(element);
        const std::string_view prefix = PickPrefix(PrefixOf(element), NamespaceOf(element), true);
        m_open.push_back(prefix);
        m_attributes.clear();
        for (const xmlAttr* attribute = element->properties; attribute != nullptr; attribute = attribute->next)
            AddAttribute(element, attribute);

        m_text += '<';
        AddName(prefix, View(element->name));
        for (const std::string_view added : m_added)
        {
            m_text += added.empty() ? " xmlns" : " xmlns:";
            Add(added, "=\"");
            Escape(*m_scope.Find(added), EscapeInAttribute);
            m_text += '"';
        }
        for (const NamedAttribute& named : m_attributes)
            WriteAttribute(named.prefix, named.attribute, " ");
        m_text += element->children != nullptr ? ">" : "/>";
    }

    void BindDeclarations(const xmlNode* element)
    {
        for (const xmlAttr* attribute = element->properties; attribute != nullptr; attribute = attribute->next)
        {
            if (attribute->type == kDeclarationType && IsWritable(element, attribute))
                m_scope.Bind(DeclaredPrefix(attribute), ValueOf(attribute));
        }
    }

    // A declaration that no text may have is left out; so is a default one on an element that is in no namespace.
    static bool IsWritable(const xmlNode* element, const xmlAttr* declaration)
    {
        const std::string_view prefix = DeclaredPrefix(declaration);
        const std::string uri = ValueOf(declaration);
        if (prefix == "xml" || prefix == "xmlns" || uri == kXmlnsUri || uri == kXmlUri)
            return false;
        if (!prefix.empty())
            return !uri.empty();
        return uri.empty() || !PrefixOf(element).empty() || !NamespaceOf(element).empty();
    }

    void AddAttribute(const xmlNode* element, const xmlAttr* attribute)
    {
        const xmlNode* const node = reinterpret_cast<const xmlNode*>(attribute);
        if (IsDeclaration(node))
        {
            if (IsWritable(element, attribute))
                m_attributes.push_back({PrefixOf(node), attribute});
            return;
        }
        const std::string_view uri = NamespaceOf(node);
        m_attributes.push_back({uri.empty() ? PrefixOf(node) : PickPrefix(PrefixOf(node), uri, false), attribute});
    }

    void WriteAttribute(std::string_view prefix, const xmlAttr* attribute, std::string_view before)
    {
        m_text += before;
        AddName(prefix, View(attribute->name));
        m_text += "=\"";
        Escape(ValueOf(attribute), EscapeInAttribute);
        m_text += '"';
    }

    // The prefix under which a name of this start tag is written; declares it when need be.
    std::string_view PickPrefix(std::string_view prefix, std::string_view uri, bool isElement)
    {
        if (uri.empty())
        {
            // A prefix without a namespace cannot be declared: it is written as its maker spelled it.
            const std::string* const bound = m_scope.Find(prefix);
            if (prefix.empty() && bound != nullptr && !bound->empty())
                return Declare(prefix, uri);
            return prefix;
        }
        const bool isUsable = isElement || !prefix.empty();
        const std::string* const bound = isUsable ? m_scope.Find(prefix) : nullptr;
        if (bound != nullptr && *bound == uri)
            return Use(prefix);
        if (isUsable && CanDeclare(prefix))
            return Declare(prefix, uri);
        const std::string_view* const other = m_scope.FindPrefix(
            [&](std::string_view candidate, const std::string& value) { return !candidate.empty() && value == uri; });
        return other != nullptr ? Use(*other) : Declare(NewPrefix(uri), uri);
    }

    // Not when this start tag already uses the prefix, with the meaning that it has outside or here.
    bool CanDeclare(std::string_view prefix) const
    {
        return !m_scope.IsBoundHere(prefix) && std::find(m_used.begin(), m_used.end(), prefix) == m_used.end() &&
               prefix != "xml" && prefix != "xmlns";
    }

    std::string_view Use(std::string_view prefix)
    {
        m_used.push_back(prefix);
        return prefix;
    }

    std::string_view Declare(std::string_view prefix, std::string_view uri)
    {
        m_scope.Bind(prefix, std::string(uri));
        const std::string_view kept =
            *m_scope.FindPrefix([&](std::string_view candidate, const std::string&) { return candidate == prefix; });
        m_added.push_back(kept);
        return kept;
    }

    std::string NewPrefix(std::string_view uri) const
    {
        if (uri == kSchemaInstanceUri && m_scope.Find("xsi") == nullptr)
            return "xsi";
        std::string prefix;
        unsigned number = 0;
        do
            prefix = "ns" + std::to_string(++number);
        while (m_scope.Find(prefix) != nullptr);
        return prefix;
    }

    std::string m_text;
    std::string_view m_encoding;
    PrefixScope<std::string> m_scope;
    std::vector<std::string_view> m_open;     // the prefixes of the open elements
    std::vector<std::string_view> m_used;     // of the start tag being written: prefixes bound outside of it or in it
    std::vector<std::string_view> m_added;    // and those that get a declaration
    std::vector<NamedAttribute> m_attributes; // and its attributes
    const xmlNode* m_document = nullptr;      // null when a part of one is written
};

} // namespace

std::string_view DeclaredEncoding(std::string_view declaration)
{
    const EncodingPlace place = FindEncoding(declaration);
    if (place.start == std::string_view::npos)
        return {};
    return declaration.substr(place.valueStart, place.end - 1 - place.valueStart);
}

std::string Serialize(xmlNode* node, std::string_view encoding)
{
    return Writer(encoding).Write(node);
}

} // namespace winport::dom
