// Answers of a spooler that is not to be trusted.
#include <cstring>

#include <gtest/gtest.h>

#include <tvutil/spoolerbuffer.h>

namespace
{

// The answer is this text, whatever it holds, behind its characters' own first place.
SpoolerBuffer Answer(WStringView text)
{
    SpoolerBuffer answer;
    const auto size = static_cast<DWORD>(text.size() * sizeof(WCHAR));
    EXPECT_EQ(answer.Fill(
                  [&](LPBYTE room, DWORD given, LPDWORD needed)
                  {
                      *needed = size;
                      if (given >= size)
                          std::memcpy(room, text.data(), size);
                      return static_cast<DWORD>(given < size ? ERROR_INSUFFICIENT_BUFFER : ERROR_SUCCESS);
                  }),
              ERROR_SUCCESS);
    return answer;
}

TEST(SpoolerBuffer, GivesTextsThatLieInItAndNoOthers)
{
    constexpr WStringView kText(W("ab\0c\0\0de"), 8); // the last text has no end
    const SpoolerBuffer answer = Answer(kText);
    const auto* const start = reinterpret_cast<const WCHAR*>(answer.Bytes().data());
    const auto* const odd = reinterpret_cast<const WCHAR*>(answer.Bytes().data() + 1);
    const WCHAR elsewhere[] = W("x");
    using Text = std::optional<WStringView>;
    EXPECT_EQ(answer.Text(nullptr), Text(W("")));
    EXPECT_EQ(answer.Text(start), Text(W("ab")));
    EXPECT_EQ(answer.Text(start + 2), Text(W("")));
    for (const WCHAR* const bad : {start + 6, start + 7, start + 8, start - 1, odd, elsewhere})
        EXPECT_EQ(answer.Text(bad), std::nullopt) << bad - start;

    using Texts = std::optional<std::vector<WStringView>>;
    EXPECT_EQ(answer.Texts(start), Texts({W("ab"), W("c")}));
    EXPECT_EQ(answer.Texts(start + 5), Texts(std::vector<WStringView>()));
    EXPECT_EQ(answer.Texts(start + 6), std::nullopt);
    EXPECT_EQ(Answer(kText.substr(0, 5)).Texts(nullptr), Texts(std::vector<WStringView>()));
    const SpoolerBuffer cut = Answer(kText.substr(0, 5)); // a list without its end
    EXPECT_EQ(cut.Texts(reinterpret_cast<const WCHAR*>(cut.Bytes().data())), std::nullopt);
}

} // namespace
