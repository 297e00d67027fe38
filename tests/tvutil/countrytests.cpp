// Linux only: the user's country comes from the environment here, on Windows from the user's settings.
#include <cstdlib>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include <tvutil/operatingsystem.h>

// The last answers stay: no other test asks for a country.
TEST(Country, MeasuresAndPaperAreToldApart)
{
    const auto answers = [](const char* all, const char* category, const char* language)
    {
        const std::pair<const char*, const char*> variables[] = {
            {"LC_ALL", all}, {"LC_MEASUREMENT", category}, {"LC_PAPER", category}, {"LANG", language}};
        for (const auto& [name, value] : variables)
            value != nullptr ? setenv(name, value, 1) : unsetenv(name);
        return std::string(OperatingSystem::IsMetricCountry() ? "metric, " : "inches, ") +
               (OperatingSystem::UseEnglishPaperSizes() ? "Letter" : "A4");
    };
    EXPECT_EQ(answers(nullptr, nullptr, "de_DE.UTF-8"), "metric, A4");
    EXPECT_EQ(answers(nullptr, nullptr, "es_MX@euro"), "metric, Letter");
    EXPECT_EQ(answers(nullptr, nullptr, "en_LR"), "inches, A4");
    EXPECT_EQ(answers(nullptr, "en_US", "de_DE.UTF-8"), "inches, Letter");
    EXPECT_EQ(answers("de_DE", "en_US", "en_US"), "metric, A4");
    EXPECT_EQ(answers("", "", "en_US"), "inches, Letter");
    EXPECT_EQ(answers(nullptr, nullptr, nullptr), "metric, A4");
}
