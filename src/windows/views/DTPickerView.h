#pragma once

#include "components/controls/DTPicker.h"
#include "windows/views/ControlView.h"
#include "windows/views/Look.h"

namespace kw::windows {

class DTPickerView final : public ControlView {
public:
  DTPickerView(ViewTree& shared, DTPicker& shown, ControlView* container)
      : ControlView(shared, shown, container), picker(shown) {}

  static void Draw(const Look& look, const RECT& bounds, const DTPicker& picker);

  bool IsTabStop() const override { return true; }
  bool WantsKey(WPARAM key) const override { return key >= VK_PRIOR && key <= VK_DOWN; }
  LRESULT OnNotify(NMHDR& header) override;

private:
  HWND Create(HWND parent) override;
  void Show(Aspect aspect) override;

  DTPicker& picker;
};

}  // namespace kw::windows
