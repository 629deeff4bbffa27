#include "components/base/Texts.h"

#include <algorithm>

namespace kw {
namespace {

using Translation = std::string (*)(std::size_t text);

std::string InEnglish(std::size_t text) { return std::string(OwnTexts[text]); }
std::string InBrackets(std::size_t text) { return "[" + InEnglish(text) + "]"; }

// A language has its primary identifier in the low ten bits, the region above them. A delivered translation is one row.
struct Language {
  std::uint32_t locale;
  std::uint32_t mask;
  Translation translation;
};

constexpr std::uint32_t WholeLocale = 0xFFFF;
constexpr std::uint32_t PrimaryLanguage = 0x3FF;
constexpr std::array Languages = {
    Language{0x0009, PrimaryLanguage, &InEnglish},
    Language{0x0501, WholeLocale, &InBrackets},
};

thread_local Translation translation = &InEnglish;

}  // namespace

void ChooseLanguage(std::uint32_t locale) {
  const auto* const found = std::ranges::find_if(
      Languages, [&](const Language& language) { return (locale & language.mask) == language.locale; });
  translation = found == Languages.end() ? &InEnglish : found->translation;
}

std::string Translated(OwnText text) { return translation(text.Index()); }

std::string TranslatedIfOwn(std::string_view text) {
  const auto* const found = std::ranges::find(OwnTexts, text);
  return found == OwnTexts.end() ? std::string(text) : translation(static_cast<std::size_t>(found - OwnTexts.begin()));
}

std::string Filled(std::string text, std::initializer_list<std::string_view> parts) {
  std::string filled;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t number =
        i + 2 < text.size() && text[i] == '{' && text[i + 2] == '}' ? static_cast<std::size_t>(text[i + 1] - '0') : 0;
    if (number < 1 || number > parts.size()) {
      filled += text[i];
      continue;
    }
    filled += std::data(parts)[number - 1];
    i += 2;
  }
  return filled;
}

}  // namespace kw
