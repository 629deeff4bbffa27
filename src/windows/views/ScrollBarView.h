#pragma once

#include "components/controls/RangeControl.h"
#include "windows/views/ControlView.h"
#include "windows/views/Look.h"

namespace kw::windows {

class ScrollBarView final : public ControlView {
public:
  ScrollBarView(ViewTree& shared, ScrollBar& shown, ControlView* container)
      : ControlView(shared, shown, container), bar(shown) {}

  static void Draw(const Look& look, const RECT& bounds, const ScrollBar& bar);

  void OnScroll(WORD code) override;

private:
  HWND Create(HWND parent) override;
  void Show(Aspect aspect) override;
  void ShowEnabled() override;

  ScrollBar& bar;
};

}  // namespace kw::windows
