#pragma once

#include <string>
#include <utility>
#include <vector>

#include "components/controls/Control.h"

namespace kw {

// One entry of a menu, or the menu itself, whose children are its entries in order.
class Menu : public Control {
public:
  explicit Menu(std::string controlName) : Control(std::move(controlName), "Menu") {}

  // With the mnemonic behind "&".
  const std::string& Caption() const { return caption; }
  void SetCaption(std::string text) { caption = std::move(text); }

  // Shows the entries at the mouse and lets the user choose one; returns when the menu is closed.
  void PopUp() { Tell(Aspect::PopUp); }

  // Input procedure: the user chose the entry.
  void UserChoose() {
    if (Enabled()) Click.Raise();
  }

  Event<> Click;

private:
  std::string caption;
};

}  // namespace kw
