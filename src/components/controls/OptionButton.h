#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "components/controls/Control.h"

namespace kw {

// One of several options: choosing it gives up the other one of the same container that was chosen.
class OptionButton : public Control {
public:
  explicit OptionButton(std::string controlName) : Control(std::move(controlName), "OptionButton") {}
  void LoadFrom(const OptionButton& other) {
    CopyDesign(other);
    caption = other.caption;
  }

  // "&" marks the letter that chooses it from the keyboard.
  const std::string& Caption() const { return caption; }
  void SetCaption(std::string text) {
    caption = std::move(text);
    Tell(Aspect::Content);
  }
  bool Value() const { return value; }
  // Raises Click when it becomes chosen.
  void SetValue(bool newValue);

  std::string_view MnemonicCaption() const override { return caption; }
  void UserMnemonic() override {
    SetFocus();
    UserChoose();
  }
  // Input procedure: the user chose it. Ignored while it is disabled.
  void UserChoose() {
    if (Enabled()) SetValue(true);
  }

  Event<> Click;

private:
  std::string caption;
  bool value = false;
};

}  // namespace kw
