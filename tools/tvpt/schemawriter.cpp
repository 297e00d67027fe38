#include "schemawriter.h"

#include "printschemadocument.h"

namespace
{

std::string Escaped(std::string_view text)
{
    std::string escaped;
    for (const char character : text)
    {
        if (character == '&')
            escaped += "&amp;";
        else if (character == '<')
            escaped += "&lt;";
        else if (character == '>')
            escaped += "&gt;";
        else if (character == '"')
            escaped += "&quot;";
        else
            escaped += character;
    }
    return escaped;
}

std::string Declaration(std::string_view prefix, std::string_view uri)
{
    return " xmlns:" + std::string(prefix) + "=\"" + Escaped(uri) + "\"";
}

std::string NameAttribute(std::string_view name)
{
    return name.empty() ? std::string() : " name=\"" + Escaped(name) + "\"";
}

bool IsAsciiLetter(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

} // namespace

SchemaWriter::SchemaWriter(std::string_view root, std::string_view driverNamespaceUri) : m_root(root)
{
    m_text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<psf:" + m_root;
    for (const SchemaNamespace& space : {kFramework, kKeywords, kXmlSchemaInstance, kXmlSchema})
        m_text += Declaration(space.prefix, space.uri);
    m_text += Declaration(kDriverPrefix, driverNamespaceUri) + " version=\"1\">\n";
}

void SchemaWriter::Open(std::string_view element, std::string_view name)
{
    OpenWith(element, NameAttribute(name));
}

void SchemaWriter::OpenUnconstrainedOption(std::string_view name)
{
    OpenWith("Option", NameAttribute(name) + " constrained=\"psk:None\"");
}

void SchemaWriter::Close()
{
    m_text += "</psf:" + m_open.back() + ">";
    m_open.pop_back();
    if (m_open.empty())
        m_text += '\n';
}

void SchemaWriter::Valued(std::string_view element, std::string_view name, std::string_view type,
                          std::string_view value)
{
    Open(element, name);
    m_text += "<psf:Value xsi:type=\"xsd:" + std::string(type) + "\">" + Escaped(value) + "</psf:Value>";
    Close();
}

void SchemaWriter::Valued(std::string_view element, std::string_view name, long value)
{
    Valued(element, name, "integer", std::to_string(value));
}

void SchemaWriter::Referring(std::string_view element, std::string_view name, std::string_view parameter)
{
    Open(element, name);
    m_text += "<psf:ParameterRef" + NameAttribute(parameter) + "/>";
    Close();
}

std::string SchemaWriter::Finish() const
{
    return m_text + "</psf:" + m_root + ">\n";
}

void SchemaWriter::OpenWith(std::string_view element, const std::string& attributes)
{
    if (m_open.empty())
        m_text += "  ";
    m_text += "<psf:" + std::string(element) + attributes + ">";
    m_open.emplace_back(element);
}

std::string NameFromText(std::string_view text)
{
    std::string name;
    for (const char character : text)
    {
        const bool isDigit = character >= '0' && character <= '9';
        if (character == ' ')
            continue;
        if (name.empty() && isDigit)
            name = "_";
        name += IsAsciiLetter(character) || isDigit || character == '.' || character == '-' ? character : '_';
    }
    return name.empty() ? "_" : name;
}
