#pragma once

#include "components/controls/Label.h"
#include "windows/views/Look.h"
#include "windows/views/PaintedView.h"

namespace kw::windows {

class LabelView final : public PaintedView {
public:
  LabelView(ViewTree& shared, Label& shown, ControlView* container)
      : PaintedView(shared, shown, &shown, container), label(shown) {}

  static void Draw(const Look& look, const RECT& bounds, const Label& label);

private:
  void Paint(HDC context, const RECT& client) override;

  Label& label;
};

}  // namespace kw::windows
