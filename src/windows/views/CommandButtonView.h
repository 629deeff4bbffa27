#pragma once

#include "components/controls/CommandButton.h"
#include "windows/views/ControlView.h"
#include "windows/views/Look.h"

namespace kw::windows {

class CommandButtonView final : public ControlView {
public:
  CommandButtonView(ViewTree& shared, CommandButton& shown, ControlView* container)
      : ControlView(shared, shown, container), button(shown) {}

  static void Draw(const Look& look, const RECT& bounds, const CommandButton& button);

  bool IsTabStop() const override { return true; }
  void OnCommand(WORD notification, WORD id) override;

private:
  HWND Create(HWND parent) override;
  void Show(Aspect aspect) override;

  CommandButton& button;
};

}  // namespace kw::windows
