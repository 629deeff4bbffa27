// Each text of an effect that its dialog shows can be translated.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "components/base/Texts.h"
#include "components/parameters/ParameterText.h"
#include "picture/effects/Effect.h"

namespace kw {
namespace {

void ExpectOwn(std::string_view text) {
  const bool isNumber = std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
  EXPECT_TRUE(text.empty() || isNumber || text == "%" || std::ranges::find(OwnTexts, text) != OwnTexts.end())
      << "OWN_TEXT(\"" << text << "\")";
}

TEST(OwnTextsOfEffects, AreInTheTable) {
  for (const Effect& effect : Effects()) {
    for (const Parameter& parameter : effect.parameters) {
      ExpectOwn(LabelOf(parameter.name));
      ExpectOwn(parameter.unit);
      ExpectOwn(parameter.zero);
      for (const std::string_view choice : parameter.choices) ExpectOwn(choice);
    }
  }
}

}  // namespace
}  // namespace kw
