// SchemaWriter: the text of a Print Schema document, element by element.
#pragma once

#include <string>
#include <string_view>
#include <vector>

class SchemaWriter
{
public:
    // The prefix of names that are the driver's own.
    static constexpr std::string_view kDriverPrefix = "ns0000";

    // `root` is "PrintTicket" or "PrintCapabilities".
    SchemaWriter(std::string_view root, std::string_view driverNamespaceUri);

    // Elements and attributes are the framework's; names are written as they are, prefix and all. An element that is
    // opened holds what follows until it is closed; with an empty name it has none.
    void Open(std::string_view element, std::string_view name = {});
    // An option that any job may choose.
    void OpenUnconstrainedOption(std::string_view name);
    void Close();
    // An element that holds one value; `type` is one of the XML Schema's: "integer", "string", "QName".
    void Valued(std::string_view element, std::string_view name, std::string_view type, std::string_view value);
    void Valued(std::string_view element, std::string_view name, long value);
    // One that refers to a parameter.
    void Referring(std::string_view element, std::string_view name, std::string_view parameter);

    // The whole document, once all is closed.
    [[nodiscard]] std::string Finish() const;

private:
    void OpenWith(std::string_view element, const std::string& attributes);

    std::string m_root;
    std::string m_text;
    std::vector<std::string> m_open;
};

// Any text as the local part of a name: what cannot stand there becomes '_', blanks are left out.
[[nodiscard]] std::string NameFromText(std::string_view text);
