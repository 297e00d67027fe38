// TicketWriter: the text of a PrintTicket, feature by feature.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

class TicketWriter
{
public:
    // The prefix of names that are the driver's own.
    static constexpr std::string_view kDriverPrefix = "ns0000";

    explicit TicketWriter(std::string_view driverNamespaceUri);

    // Names are written as they are, prefix and all. An empty option name leaves the option without one.
    void Feature(std::string_view feature, std::string_view option);
    void Feature(std::string_view feature, std::string_view option,
                 const std::vector<std::pair<std::string_view, long>>& scoredIntegers);
    // Scored properties that refer to parameters, which Parameter writes.
    void FeatureWithParameters(std::string_view feature, std::string_view option,
                               const std::vector<std::pair<std::string_view, std::string_view>>& references);
    void Parameter(std::string_view name, long value);

    // The whole document.
    [[nodiscard]] std::string Finish() const;

private:
    void OpenFeature(std::string_view feature, std::string_view option);
    void CloseFeature();

    std::string m_text;
};

// Any text as the local part of a name: what cannot stand there becomes '_', blanks are left out.
[[nodiscard]] std::string NameFromText(std::string_view text);
