#pragma once

#include "components/controls/Menu.h"
#include "windows/views/ControlView.h"
#include "windows/views/Look.h"

namespace kw::windows {

// Shows a pop-up menu at the mouse. Has no window.
class MenuView final : public ControlView {
public:
  MenuView(ViewTree& shared, Menu& shown, ControlView* container)
      : ControlView(shared, shown, container), menu(shown) {}

  static void Draw(const Look& /*look*/, const RECT& /*bounds*/, const Menu& /*menu*/) {}

private:
  HWND Create(HWND /*parent*/) override { return nullptr; }
  bool SleepsWhileHidden() const override { return false; }
  void Show(Aspect aspect) override;

  Menu& menu;
};

}  // namespace kw::windows
