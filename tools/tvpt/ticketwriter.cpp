#include "ticketwriter.h"

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

std::string IntegerValue(long value)
{
    return "<psf:Value xsi:type=\"xsd:integer\">" + std::to_string(value) + "</psf:Value>";
}

bool IsAsciiLetter(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

} // namespace

TicketWriter::TicketWriter(std::string_view driverNamespaceUri)
{
    m_text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<psf:PrintTicket";
    for (const SchemaNamespace& space : {kFramework, kKeywords, kXmlSchemaInstance, kXmlSchema})
        m_text += Declaration(space.prefix, space.uri);
    m_text += Declaration(kDriverPrefix, driverNamespaceUri) + " version=\"1\">\n";
}

void TicketWriter::Feature(std::string_view feature, std::string_view option)
{
    Feature(feature, option, {});
}

void TicketWriter::Feature(std::string_view feature, std::string_view option,
                           const std::vector<std::pair<std::string_view, long>>& scoredIntegers)
{
    OpenFeature(feature, option);
    for (const auto& [name, value] : scoredIntegers)
        m_text += "<psf:ScoredProperty" + NameAttribute(name) + ">" + IntegerValue(value) + "</psf:ScoredProperty>";
    CloseFeature();
}

void TicketWriter::FeatureWithParameters(std::string_view feature, std::string_view option,
                                         const std::vector<std::pair<std::string_view, std::string_view>>& references)
{
    OpenFeature(feature, option);
    for (const auto& [name, parameter] : references)
        m_text += "<psf:ScoredProperty" + NameAttribute(name) + "><psf:ParameterRef" + NameAttribute(parameter) +
                  "/></psf:ScoredProperty>";
    CloseFeature();
}

void TicketWriter::Parameter(std::string_view name, long value)
{
    m_text += "  <psf:ParameterInit" + NameAttribute(name) + ">" + IntegerValue(value) + "</psf:ParameterInit>\n";
}

std::string TicketWriter::Finish() const
{
    return m_text + "</psf:PrintTicket>\n";
}

void TicketWriter::OpenFeature(std::string_view feature, std::string_view option)
{
    m_text += "  <psf:Feature" + NameAttribute(feature) + "><psf:Option" + NameAttribute(option) + ">";
}

void TicketWriter::CloseFeature()
{
    m_text += "</psf:Option></psf:Feature>\n";
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
