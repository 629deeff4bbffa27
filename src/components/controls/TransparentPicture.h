#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "components/base/Bitmap.h"
#include "components/base/Font.h"
#include "components/controls/Control.h"
#include "components/controls/MouseInput.h"

namespace kw {

// What a layer draws itself, inset by half the line width; 0 is text, by contract.
enum class FigureKind : std::int32_t { Text = 0, Picture = 1, Ellipse = 2, Rectangle = 3, Line = 4 };

struct Figure {
  FigureKind kind = FigureKind::Picture;
  // Of a line: whether it runs from the bottom left to the top right corner instead of from top left to bottom right.
  bool isRising = false;
  friend bool operator==(const Figure&, const Figure&) = default;
};

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

  Colour LineColor() const { return lineColor; }
  void SetLineColor(Colour value);
  // Width of outlines in pixels.
  std::int16_t LineWidth() const { return lineWidth; }
  void SetLineWidth(std::int16_t value);
  // What is drawn in this colour lets through what lies below.
  Colour TransparentColor() const { return transparentColor; }
  void SetTransparentColor(Colour value);
  // What the layer draws inside its bounds, by FigureKind's numbers.
  const Figure& DrawnFigure() const { return figure; }
  void SetFigure(Figure newFigure);
  // The border's style; 0 none.
  std::int16_t Style() const { return style; }
  void SetStyle(std::int16_t value);
  // Whether typing goes into the layer.
  bool IsTextEntry() const { return isTextEntry; }
  void SetTextEntry(bool value);

  // Whether it is being typed into, which only a layer for text entry can be.
  bool IsTyping() const { return isTyping; }
  void SetTyping(bool value);
  // Input procedure: what was typed is the caption now.
  void Type(std::string text);

  // The frame around a picked layer: 0 none, 1 one pixel.
  std::int32_t SelectionFrame() const { return selectionFrame; }
  void SetSelectionFrame(std::int32_t value);
  // The two display options: marks along the border, handles to resize by.
  bool IsToShowBorderMarks() const { return isToShowBorderMarks; }
  void SetIsToShowBorderMarks(bool value);
  bool IsToShowResize() const { return isToShowResize; }
  void SetIsToShowResize(bool value);

  // Input procedure: the layer takes a press, which activates it.
  void TakePress() const { Activate.Raise(); }
  // Another layer, or none, is the active one from now on.
  void GiveUpActivation() const { Deactivate.Raise(); }

  Event<> Activate;
  Event<> Deactivate;
  Event<> Typed;
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
  Colour lineColor = 0;
  std::int16_t lineWidth = 1;
  Colour transparentColor = MakeColour(255, 255, 255);
  Figure figure;
  std::int16_t style = 0;
  bool isTextEntry = false;
  bool isTyping = false;
  Font font;
  std::int32_t selectionFrame = 0;
  bool isToShowBorderMarks = false;
  bool isToShowResize = false;
};

}  // namespace kw
