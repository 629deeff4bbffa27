#pragma once

#include "components/controls/RangeControl.h"
#include "windows/views/ControlView.h"
#include "windows/views/Look.h"

namespace kw::windows {

class SliderView final : public ControlView {
public:
  SliderView(ViewTree& shared, Slider& shown, ControlView* container)
      : ControlView(shared, shown, container), slider(shown) {}

  static void Draw(const Look& look, const RECT& bounds, const Slider& slider);

  bool IsTabStop() const override { return true; }
  bool WantsKey(WPARAM key) const override;
  void Rescale() override;
  void OnScroll(WORD code) override;

private:
  HWND Create(HWND parent) override;
  void SetThumbLength(HWND bar) const;
  void Show(Aspect aspect) override;

  Slider& slider;
};

}  // namespace kw::windows
