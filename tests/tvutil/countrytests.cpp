// Linux only: the user's country comes from the environment here, on Windows from the user's settings.
#include <cstdlib>

#include <gtest/gtest.h>

#include <tvutil/operatingsystem.h>

namespace
{

void Set(const char* name, const char* value)
{
    if (value != nullptr)
        setenv(name, value, 1);
    else
        unsetenv(name);
}

TEST(Country, MeasuresAndPaperAreToldApart)
{
    struct Case
    {
        const char* all;
        const char* category;
        const char* language;
        bool metric;
        bool letter;
    };
    constexpr Case kCases[] = {
        {nullptr, nullptr, "de_DE.UTF-8", true, false},
        {nullptr, nullptr, "en_US.UTF-8", false, true},
        {nullptr, nullptr, "es_MX@euro", true, true}, // metric, on Letter
        {nullptr, nullptr, "en_LR", false, false},    // not metric, on A4
        {nullptr, "en_US", "de_DE.UTF-8", false, true},
        {"de_DE", "en_US", "en_US", true, false},
        {"", "", "en_US", false, true},
        {"C", nullptr, "en_US", true, false},
        {nullptr, nullptr, nullptr, true, false}, // and so it stays: no other test asks for a country
    };
    for (const Case& test : kCases)
    {
        SCOPED_TRACE(test.language != nullptr ? test.language : "none");
        Set("LC_ALL", test.all);
        Set("LC_MEASUREMENT", test.category);
        Set("LC_PAPER", test.category);
        Set("LANG", test.language);
        EXPECT_EQ(OperatingSystem::IsMetricCountry(), test.metric);
        EXPECT_EQ(OperatingSystem::UseEnglishPaperSizes(), test.letter);
    }
}

} // namespace
