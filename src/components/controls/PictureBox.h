#pragma once

#include <string>
#include <utility>

#include "components/base/Bitmap.h"
#include "components/controls/Control.h"
#include "components/controls/KeyInput.h"
#include "components/controls/MouseInput.h"

namespace kw {

// A container that shows a picture at its own size and takes the keyboard.
class PictureBox : public Control, public MouseInput, public KeyInput {
public:
  explicit PictureBox(std::string controlName) : Control(std::move(controlName), "PictureBox") {}

  const Bitmap& Picture() const { return picture; }
  void SetPicture(Bitmap newPicture);
  bool TryClearPicture() override;
  Colour BackColor() const { return backColor; }
  void SetBackColor(Colour value);
  // Whether the picture lies in the middle, on white, and a pixel of it is a pixel of the screen whatever its scale. A
  // matter of design time.
  bool IsPreview() const { return isPreview; }
  void SetIsPreview(bool value) { isPreview = value; }

  Event<> Resize;

protected:
  void Resized() override { Resize.Raise(); }

private:
  Bitmap picture;
  Colour backColor = MakeColour(255, 255, 255);
  bool isPreview = false;
};

}  // namespace kw
