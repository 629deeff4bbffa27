#include "components/controls/Label.h"

namespace kw {

void Label::SetCaption(std::string text) {
  if (caption == text) return;
  caption = std::move(text);
  Tell(Aspect::Content);
}

void Label::SetForeColor(Colour value) {
  foreColor = value;
  Tell(Aspect::Colours);
}

void Label::SetBackColor(Colour value) {
  backColor = value;
  isOpaque = true;
  Tell(Aspect::Colours);
}

}  // namespace kw
