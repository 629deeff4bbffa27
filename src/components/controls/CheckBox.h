#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "components/controls/Control.h"

namespace kw {

// A tick box, also in the style of a button.
class CheckBox : public Control {
public:
  explicit CheckBox(std::string controlName) : Control(std::move(controlName), "CheckBox") {}

  const std::string& Caption() const { return caption; }
  void SetCaption(std::string text) {
    caption = std::move(text);
    Tell(Aspect::Content);
  }
  // A button that stays down instead of a tick box. A matter of design time.
  bool IsButton() const { return isButton; }
  void SetIsButton(bool newStyle) { isButton = newStyle; }
  bool Value() const { return value; }
  void SetValue(bool newValue) {
    if (value == newValue) return;
    value = newValue;
    Tell(Aspect::Content);
    Click.Raise();
  }
  std::string_view MnemonicCaption() const override { return caption; }
  void UserMnemonic() override {
    SetFocus();
    UserToggle();
  }
  // Input procedure: the user toggled it.
  void UserToggle() {
    if (Enabled()) SetValue(!value);
  }

  Event<> Click;  // its value changed, by the user or by a procedure

private:
  std::string caption;
  bool isButton = false;
  bool value = false;
};

}  // namespace kw
