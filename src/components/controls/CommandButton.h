#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "components/controls/Control.h"

namespace kw {

// A push button.
class CommandButton : public Control {
public:
  explicit CommandButton(std::string controlName) : Control(std::move(controlName), "CommandButton") {}

  const std::string& Caption() const { return caption; }
  void SetCaption(std::string text) { AssignIfNew(caption, std::move(text), Aspect::Content); }
  // The button that Enter presses; it is drawn so. A matter of design time.
  bool IsDefault() const { return isDefault; }
  void SetIsDefault(bool value) { isDefault = value; }

  std::string_view MnemonicCaption() const override { return caption; }
  void UserMnemonic() override {
    SetFocus();
    UserClick();
  }
  // Input procedure: the user pressed it. Ignored while it is disabled.
  void UserClick() {
    if (Enabled()) Click.Raise();
  }

  Event<> Click;

private:
  std::string caption;
  bool isDefault = false;
};

}  // namespace kw
