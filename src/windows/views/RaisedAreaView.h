#pragma once

#include "components/controls/RaisedArea.h"
#include "windows/views/Look.h"
#include "windows/views/PaintedView.h"

namespace kw::windows {

class RaisedAreaView final : public PaintedView {
public:
  RaisedAreaView(ViewTree& shared, RaisedArea& shown, ControlView* container)
      : PaintedView(shared, shown, &shown, container), area(shown) {}

  static void Draw(const Look& look, const RECT& bounds, const RaisedArea& area);

private:
  void Show(Aspect aspect) override;
  void Paint(HDC context, const RECT& client) override;

  RaisedArea& area;
};

class FrameView final : public PaintedView {
public:
  FrameView(ViewTree& shared, Frame& shown, ControlView* container) : PaintedView(shared, shown, nullptr, container) {}

  static void Draw(const Look& look, const RECT& bounds, const Frame& frame);

private:
  void Paint(HDC context, const RECT& client) override;
};

// Draws the background and border of a raised, or pressed, frame.
void DrawRaised(HDC context, const RECT& bounds, bool isPressed = false);

}  // namespace kw::windows
