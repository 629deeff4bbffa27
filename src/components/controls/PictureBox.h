#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "components/base/Bitmap.h"
#include "components/controls/Control.h"
#include "components/controls/MouseInput.h"

namespace kw {

// A container that shows a picture at its own size and takes the keyboard.
class PictureBox : public Control, public MouseInput {
public:
  explicit PictureBox(std::string controlName) : Control(std::move(controlName), "PictureBox") {}

  const Bitmap& Picture() const { return picture; }
  void SetPicture(Bitmap newPicture);
  bool TryClearPicture() override;
  Colour BackColor() const { return backColor; }
  void SetBackColor(Colour value);

  // Input procedures of the keyboard: key codes and characters as the platform numbers them.
  Event<std::int16_t, std::int16_t> KeyDown;
  Event<std::int16_t> KeyPress;
  Event<std::int16_t, std::int16_t> KeyUp;
  // Asks whether that key, with that shift state, has a use now; else it is the host's.
  Event<std::int16_t, std::int16_t, bool&> KeyUse;
  Event<> Resize;

protected:
  void Resized() override { Resize.Raise(); }

private:
  Bitmap picture;
  Colour backColor = MakeColour(255, 255, 255);
};

}  // namespace kw
