#include "components/controls/Label.h"

#include <algorithm>
#include <vector>

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

void Label::UserMnemonic() {
  const std::vector<Control*>& siblings = Container()->Children();
  const auto takesFocus = [](const Control* one) {
    return dynamic_cast<const Label*>(one) == nullptr && one->CanTakeFocus();
  };
  const auto next = std::find_if(std::ranges::find(siblings, this), siblings.end(), takesFocus);
  if (next != siblings.end()) (*next)->SetFocus();
}

}  // namespace kw
