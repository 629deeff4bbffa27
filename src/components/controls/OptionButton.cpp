#include "components/controls/OptionButton.h"

namespace kw {

void OptionButton::SetValue(bool newValue) {
  if (value == newValue) return;
  value = newValue;
  Tell(Aspect::Content);
  if (!value) return;
  if (Container() != nullptr) {
    for (Control* sibling : Container()->Children()) {
      auto* const other = dynamic_cast<OptionButton*>(sibling);
      if (other != nullptr && other != this) other->SetValue(false);
    }
  }
  Click.Raise();
}

}  // namespace kw
