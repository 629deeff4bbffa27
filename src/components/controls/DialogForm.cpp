#include "components/controls/DialogForm.h"

#include <cstddef>

namespace kw {
namespace {

char16_t SmallLetter(char16_t letter) {
  return letter >= u'A' && letter <= u'Z' ? static_cast<char16_t>(letter - u'A' + u'a') : letter;
}

// The small ASCII character behind the single "&" of a caption; 0 if there is none.
char16_t MnemonicOf(std::string_view caption) {
  for (std::size_t i = 0; i + 1 < caption.size(); ++i) {
    if (caption[i] != '&') continue;
    if (caption[i + 1] != '&') return SmallLetter(static_cast<unsigned char>(caption[i + 1]));
    ++i;
  }
  return 0;
}

}  // namespace

bool DialogForm::UserAltKey(char16_t letter) {
  for (Control* const child : Children()) {
    if (letter == 0 || !child->CanTakeFocus() || MnemonicOf(child->MnemonicCaption()) != SmallLetter(letter)) continue;
    child->UserMnemonic();
    return true;
  }
  return false;
}

}  // namespace kw
