#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "components/Bitmap.h"
#include "components/Control.h"
#include "components/Font.h"
#include "components/MouseInput.h"

namespace kw {

// A layer of the canvas: a picture or a drawn figure through which what lies below shows where it has its
// transparent colour. The page, the background image, the floating layers and the rubber band are of this type.
class TransparentPicture : public Control, public MouseInput {
 public:
  explicit TransparentPicture(std::string controlName) : Control(std::move(controlName), "KWTransPicCtl") {}
  void LoadFrom(const TransparentPicture& other);

  // What is shown. Assigning it makes it the source picture too, unless it is the source being assigned again;
  // it raises Change even when the same picture is assigned, because it makes the control draw itself anew.
  const Bitmap& Picture() const { return picture; }
  void SetPicture(Bitmap newPicture);
  bool HasPicture() const { return !picture.IsEmpty(); }
  bool TryClearPicture() override;
  // What the displayed picture is reset from when the view is rebuilt.
  const Bitmap& SourcePicture() const { return sourcePicture; }

  // Whether the page's background is drawn paler.
  bool IsLightened() const { return isLightened; }
  void SetLightened(bool value);

  const std::string& Caption() const { return caption; }
  void SetCaption(std::string text);
  Colour ForeColor() const { return foreColor; }
  void SetForeColor(Colour value);
  Colour BackColor() const { return backColor; }
  void SetBackColor(Colour value);
  Colour FillColor() const { return fillColor; }
  void SetFillColor(Colour value);
  const Font& TextFont() const { return font; }
  void SetTextFont(Font newFont);

  // The frame around a picked layer: 0 none, 1 one pixel.
  std::int32_t SelectionFrame() const { return selectionFrame; }
  void SetSelectionFrame(std::int32_t value);
  // The two display options: marks along the border, handles to resize by.
  bool IsToShowBorderMarks() const { return isToShowBorderMarks; }
  void SetIsToShowBorderMarks(bool value);
  bool IsToShowResize() const { return isToShowResize; }
  void SetIsToShowResize(bool value);

  Event<> Change;  // its size or its picture changed

 protected:
  void Resized() override { Change.Raise(); }

 private:
  Bitmap picture;
  Bitmap sourcePicture;
  bool isLightened = false;
  std::string caption;
  Colour foreColor = 0;
  Colour backColor = MakeColour(255, 255, 255);
  Colour fillColor = MakeColour(255, 255, 255);
  Font font;
  std::int32_t selectionFrame = 0;
  bool isToShowBorderMarks = false;
  bool isToShowResize = false;
};

}  // namespace kw
