#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace kw {

// All own texts in English, in the order of Texts.def.
inline constexpr auto OwnTexts = std::to_array<std::string_view>({
#define OWN_TEXT(english) english,
#include "components/base/Texts.def"
#undef OWN_TEXT
});

// One of the own texts. A literal that is not in Texts.def does not compile.
class OwnText {
public:
  // NOLINTNEXTLINE(google-explicit-constructor): stands for the literal in a call
  consteval OwnText(const char* english) {
    while (OwnTexts.at(index) != english) ++index;
  }
  constexpr std::size_t Index() const { return index; }

private:
  std::size_t index = 0;
};

// Chooses the language of the calling thread by the system's identifier of a locale (LCID): the language of the
// thread's host. English stands for every language without a translation. 0x0501, the system's pseudo-locale, puts
// brackets around each text, so that a tester sees which texts can be translated.
void ChooseLanguage(std::uint32_t locale);

// The text in the chosen language, UTF-8.
std::string Translated(OwnText text);
// The same for a text that a model holds; a text that is no own one stays as it is.
std::string TranslatedIfOwn(std::string_view text);
// The text with its places {1}, {2} ... taken by the parts; a translation may use them in another order.
std::string Filled(std::string text, std::initializer_list<std::string_view> parts);

}  // namespace kw
