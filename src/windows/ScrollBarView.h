#pragma once

#include "components/RangeControl.h"
#include "windows/ControlView.h"
#include "windows/ViewFactory.h"

namespace kw::windows {

class ScrollBarView final : public ControlView {
public:
  ScrollBarView(Pane& shared, ScrollBar& shown, ControlView* container)
      : ControlView(shared, shown, container), bar(shown) {}

  static void Draw(const Look& look, const RECT& place, const ScrollBar& bar);

  void OnScroll(WORD code) override;

private:
  HWND Create(HWND parent) override;
  void Show(Aspect aspect) override;
  void ShowEnabled() override;

  ScrollBar& bar;
};

}  // namespace kw::windows
