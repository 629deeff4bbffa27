#pragma once

#include <string>
#include <utility>

#include "components/controls/Control.h"
#include "components/controls/KeyInput.h"

namespace kw {

// The editor itself as its container sees it: the root of the form. It measures its own size in twips and places its
// children in pixels.
class UserControl : public Control, public KeyInput {
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

protected:
  void Resized() override { Resize.Raise(); }
};

}  // namespace kw
