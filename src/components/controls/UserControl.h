#pragma once

#include <string>
#include <utility>

#include "components/controls/Control.h"

namespace kw {

// The editor itself as its container sees it: the root of the form. It measures its own size in twips and places its
// children in pixels.
class UserControl : public Control {
public:
  explicit UserControl(std::string controlName) : Control(std::move(controlName), "UserControl") {}

  // Input procedure: the container gave the control this size in pixels; raises Resize when it differs.
  void UserResize(float widthInPixels, float heightInPixels) {
    Move(Left(), Top(), ToTwips(widthInPixels), ToTwips(heightInPixels));
  }
  // Input procedure: the control is about to be painted.
  void UserPaint() const { Paint.Raise(); }

  Event<> Resize;
  Event<> Paint;
  Event<std::int16_t, std::int16_t> KeyDown;
  Event<std::int16_t> KeyPress;
  Event<std::int16_t, std::int16_t> KeyUp;
  // Asks whether that key, with that shift state, has a use now; else it is the host's.
  Event<std::int16_t, std::int16_t, bool&> KeyUse;

protected:
  void Resized() override { Resize.Raise(); }
};

}  // namespace kw
