#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "components/controls/Control.h"

namespace kw {

// A field to type a number into, with a spin button. It holds the text alone: what the text means and what a step does
// is decided by who listens.
class NumberField : public Control {
public:
  // So many characters can be typed.
  static constexpr std::size_t MaxLength = 12;

  explicit NumberField(std::string controlName) : Control(std::move(controlName), "NumberField") {}

  const std::string& Text() const { return text; }
  // Raises no event.
  void SetText(std::string newText) { AssignIfNew(text, std::move(newText), Aspect::Content); }
  // Takes the focus and selects the text, so that typing replaces it. Raises InvalidProcedureCall when the field cannot
  // take the focus.
  void StartTyping() {
    SetFocus();
    Tell(Aspect::Typing);
  }

  // Input procedures; ignored while the field is disabled.
  void UserType(const std::string& newText) {
    if (!Enabled() || newText == text) return;
    SetText(newText);
    Change.Raise();
  }
  // By the spin button, the arrow keys or the wheel; positive is up.
  void UserStep(int steps) {
    if (Enabled() && steps != 0) Step.Raise(steps);
  }

  Event<> Change;  // the user edited the text
  Event<int> Step;

private:
  std::string text;
};

}  // namespace kw
