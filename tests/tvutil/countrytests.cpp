// Linux only: the user's country comes from the environment here, on Windows from the user's settings.
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tvutil/operatingsystem.h>

namespace
{

// Sets environment variables for a scope; null removes one.
class ScopedEnvironment
{
public:
    explicit ScopedEnvironment(const std::vector<std::pair<const char*, const char*>>& variables)
    {
        for (const auto& [name, value] : variables)
        {
            const char* const former = std::getenv(name);
            m_former.emplace_back(name, former != nullptr ? std::optional<std::string>(former) : std::nullopt);
            Set(name, value);
        }
    }

    ~ScopedEnvironment()
    {
        for (const auto& [name, value] : m_former)
            Set(name, value ? value->c_str() : nullptr);
    }

    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    static void Set(const char* name, const char* value)
    {
        if (value != nullptr)
            setenv(name, value, 1);
        else
            unsetenv(name);
    }

    std::vector<std::pair<const char*, std::optional<std::string>>> m_former;
};

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
        {nullptr, nullptr, nullptr, true, false},
    };
    for (const Case& test : kCases)
    {
        SCOPED_TRACE(test.language != nullptr ? test.language : "none");
        const ScopedEnvironment environment({{"LC_ALL", test.all},
                                             {"LC_MEASUREMENT", test.category},
                                             {"LC_PAPER", test.category},
                                             {"LANG", test.language}});
        EXPECT_EQ(OperatingSystem::IsMetricCountry(), test.metric);
        EXPECT_EQ(OperatingSystem::UseEnglishPaperSizes(), test.letter);
    }
}

} // namespace
