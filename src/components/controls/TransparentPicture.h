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

// A layer of the canvas: a picture or a drawn figure. Pixels of its transparent colour let through what lies below. The
// page, the background image, the floating layers and the rubber band are of this type.
class TransparentPicture : public Control, public MouseInput {
public:
  explicit TransparentPicture(std::string controlName) : Control(std::move(controlName), "KWTransPicCtl") {}
  void LoadFrom(const TransparentPicture& other);

  // The shown picture. Assigning it makes it the source picture too. It raises Change even if the same picture is
  // assigned, because it makes the control draw itself anew.
  const Bitmap& Picture() const { return picture; }
  void SetPicture(Bitmap newPicture);
  // Another picture has another number; no two pictures of a process have the same.
  std::uint64_t PictureNumber() const { return pictureNumber; }
  bool HasPicture() const { return !picture.IsEmpty(); }
  bool TryClearPicture() override;
  // The picture that the displayed one is reset from when the view is rebuilt.
  const Bitmap& SourcePicture() const { return sourcePicture; }

  // Whether the page's background is drawn paler.
  bool IsLightened() const { return isLightened; }
  void SetLightened(bool value) { AssignIfNew(isLightened, value, Aspect::Content); }

  const std::string& Caption() const { return design.caption; }
  void SetCaption(std::string text) { Assign(design.caption, std::move(text), Aspect::Content); }
  Colour ForeColor() const { return design.foreColor; }
  void SetForeColor(Colour value) { Assign(design.foreColor, value, Aspect::Colours); }
  Colour BackColor() const { return design.backColor; }
  void SetBackColor(Colour value) { Assign(design.backColor, value, Aspect::Colours); }
  Colour FillColor() const { return design.fillColor; }
  void SetFillColor(Colour value) { Assign(design.fillColor, value, Aspect::Colours); }
  const Font& TextFont() const { return design.font; }
  void SetTextFont(Font newFont) { Assign(design.font, std::move(newFont), Aspect::Font); }

  Colour LineColor() const { return design.lineColor; }
  void SetLineColor(Colour value) { Assign(design.lineColor, value, Aspect::Colours); }
  // Width of outlines in pixels.
  std::int16_t LineWidth() const { return design.lineWidth; }
  void SetLineWidth(std::int16_t value);
  // Pixels of this colour are transparent.
  Colour TransparentColor() const { return design.transparentColor; }
  void SetTransparentColor(Colour value) { Assign(design.transparentColor, value, Aspect::Colours); }
  // What the layer draws inside its bounds, by FigureKind's numbers.
  const Figure& DrawnFigure() const { return design.figure; }
  void SetFigure(Figure newFigure) { Assign(design.figure, newFigure, Aspect::Content); }
  // The border's style; 0 none.
  std::int16_t Style() const { return design.style; }
  void SetStyle(std::int16_t value) { Assign(design.style, value, Aspect::Content); }
  // Whether typing goes into the layer.
  bool IsTextEntry() const { return design.isTextEntry; }
  void SetTextEntry(bool value);

  // Whether it is being typed into, which only a layer for text entry can be.
  bool IsTyping() const { return isTyping; }
  void SetTyping(bool value);
  // Input procedure: what was typed is the caption now.
  void Type(std::string text);

  // The frame around a picked layer: 0 none, 1 one pixel.
  std::int32_t SelectionFrame() const { return selectionFrame; }
  void SetSelectionFrame(std::int32_t value) { AssignIfNew(selectionFrame, value, Aspect::Content); }
  // The two display options: marks along the border, handles to resize by.
  bool IsToShowBorderMarks() const { return design.isToShowBorderMarks; }
  void SetIsToShowBorderMarks(bool value) { AssignIfNew(design.isToShowBorderMarks, value, Aspect::Content); }
  bool IsToShowResize() const { return design.isToShowResize; }
  void SetIsToShowResize(bool value) { AssignIfNew(design.isToShowResize, value, Aspect::Content); }

  // Input procedure: the layer takes a press, which activates it.
  void TakePress() const { Activate.Raise(); }
  // Input procedure: the user picks the layer without pressing on it.
  void UserPick() const { Pick.Raise(); }
  // Another layer, or none, is the active one from now on.
  void GiveUpActivation() const { Deactivate.Raise(); }

  Event<> Activate;
  Event<> Deactivate;
  Event<> Pick;
  Event<> Typed;
  Event<> Change;  // its size or its picture changed

protected:
  void Resized() override { Change.Raise(); }

private:
  // The values that layers of the same design share.
  struct Design {
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
    Font font;
    bool isToShowBorderMarks = false;
    bool isToShowResize = false;
  };

  Bitmap picture;
  Bitmap sourcePicture;
  std::uint64_t pictureNumber = 0;
  Design design;
  bool isLightened = false;
  bool isTyping = false;
  std::int32_t selectionFrame = 0;
};

}  // namespace kw
