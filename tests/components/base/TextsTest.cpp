#include "components/base/Texts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

namespace kw {
namespace {

constexpr std::uint32_t English = 0x0409;
constexpr std::uint32_t German = 0x0407;
constexpr std::uint32_t Pseudo = 0x0501;

class Texts : public testing::Test {
protected:
  ~Texts() override { ChooseLanguage(English); }
};

TEST_F(Texts, EachStandsOnce) {
  std::vector<std::string_view> sorted(OwnTexts.begin(), OwnTexts.end());
  std::ranges::sort(sorted);
  EXPECT_EQ(std::ranges::adjacent_find(sorted), sorted.end());
}

TEST_F(Texts, AreEnglishInALanguageWithoutATranslation) {
  for (const std::uint32_t locale : {English, German, 0U, 0xFFFFFFFFU}) {
    ChooseLanguage(locale);
    EXPECT_EQ(Translated("&Cancel"), "&Cancel") << locale;
  }
}

TEST_F(Texts, AreTranslatedWhereverTheyStand) {
  ChooseLanguage(Pseudo);
  EXPECT_EQ(Translated("&Cancel"), "[&Cancel]");
  EXPECT_EQ(TranslatedIfOwn("More Buttons"), "[More Buttons]");
}

TEST_F(Texts, ThatAreGivenStay) {
  ChooseLanguage(Pseudo);
  EXPECT_EQ(TranslatedIfOwn("OK UNTIL"), "OK UNTIL");
  EXPECT_EQ(TranslatedIfOwn(""), "");
}

TEST_F(Texts, AreFilledInAnyOrder) {
  EXPECT_EQ(Filled("{2} of {1}{1}", {"a", "b"}), "b of aa");
  EXPECT_EQ(Filled("{3} {0} {x} {1", {"a", "b"}), "{3} {0} {x} {1");
  EXPECT_EQ(Filled("{1}", {"{1}"}), "{1}");
}

TEST_F(Texts, ALanguageIsThatOfItsThread) {
  ChooseLanguage(Pseudo);
  std::string other;
  std::thread([&] { other = Translated("&Cancel"); }).join();
  EXPECT_EQ(other, "&Cancel");
}

}  // namespace
}  // namespace kw
