#pragma once

#include <string>
#include <utility>

#include "components/Control.h"

namespace kw {

// The scanner source: nothing of it is loaded before it is switched on.
class Scanner : public Control {
public:
  explicit Scanner(std::string controlName) : Control(std::move(controlName), "KWScannerCtl") {}

  bool IsSwitchedOn() const { return isSwitchedOn; }
  void SwitchOn(bool value) { isSwitchedOn = value; }

private:
  bool isSwitchedOn = false;
};

}  // namespace kw
