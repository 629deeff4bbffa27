#pragma once

#include "components/controls/OptionButton.h"
#include "windows/views/ControlView.h"
#include "windows/views/Look.h"

namespace kw::windows {

class OptionButtonView final : public ControlView {
public:
  OptionButtonView(ViewTree& shared, OptionButton& shown, ControlView* container)
      : ControlView(shared, shown, container), option(shown) {}

  static void Draw(const Look& look, const RECT& bounds, const OptionButton& option);

  // Tab stops at the chosen option only; the arrows lead to the others.
  bool IsTabStop() const override { return option.Value(); }
  bool WantsKey(WPARAM key) const override { return key >= VK_LEFT && key <= VK_DOWN; }
  void OnCommand(WORD notification, WORD id) override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
  HWND Create(HWND parent) override;
  void Show(Aspect aspect) override;
  void ChooseNeighbour(bool isBackward);

  OptionButton& option;
};

}  // namespace kw::windows
