#include "components/controls/TransparentPicture.h"

#include "components/base/RunTimeError.h"

namespace kw {

void TransparentPicture::LoadFrom(const TransparentPicture& other) {
  CopyDesign(other);
  picture = other.picture;
  sourcePicture = other.sourcePicture;
  caption = other.caption;
  foreColor = other.foreColor;
  backColor = other.backColor;
  fillColor = other.fillColor;
  lineColor = other.lineColor;
  lineWidth = other.lineWidth;
  transparentColor = other.transparentColor;
  figure = other.figure;
  style = other.style;
  isTextEntry = other.isTextEntry;
  font = other.font;
  isToShowBorderMarks = other.isToShowBorderMarks;
  isToShowResize = other.isToShowResize;
}

void TransparentPicture::SetPicture(Bitmap newPicture) {
  picture = std::move(newPicture);
  sourcePicture = picture;
  Tell(Aspect::Content);
  Change.Raise();
}

bool TransparentPicture::TryClearPicture() {
  SetPicture({});
  return true;
}

void TransparentPicture::SetLightened(bool value) {
  if (isLightened == value) return;
  isLightened = value;
  Tell(Aspect::Content);
}

void TransparentPicture::SetCaption(std::string text) {
  caption = std::move(text);
  Tell(Aspect::Content);
}

void TransparentPicture::SetForeColor(Colour value) {
  foreColor = value;
  Tell(Aspect::Colours);
}

void TransparentPicture::SetBackColor(Colour value) {
  backColor = value;
  Tell(Aspect::Colours);
}

void TransparentPicture::SetFillColor(Colour value) {
  fillColor = value;
  Tell(Aspect::Colours);
}

void TransparentPicture::SetLineColor(Colour value) {
  lineColor = value;
  Tell(Aspect::Colours);
}

void TransparentPicture::SetLineWidth(std::int16_t value) {
  if (value < 1) Raise(ErrorNumber::InvalidPropertyValue);
  lineWidth = value;
  Tell(Aspect::Content);
}

void TransparentPicture::SetTransparentColor(Colour value) {
  transparentColor = value;
  Tell(Aspect::Colours);
}

void TransparentPicture::SetFigure(Figure newFigure) {
  figure = newFigure;
  Tell(Aspect::Content);
}

void TransparentPicture::SetStyle(std::int16_t value) {
  style = value;
  Tell(Aspect::Content);
}

void TransparentPicture::SetTextEntry(bool value) {
  if (isTextEntry == value) return;
  isTextEntry = value;
  if (!isTextEntry) SetTyping(false);
  Tell(Aspect::Content);
}

void TransparentPicture::SetTyping(bool value) {
  const bool isToType = value && isTextEntry;
  if (isTyping == isToType) return;
  isTyping = isToType;
  Tell(Aspect::Typing);
}

void TransparentPicture::Type(std::string text) {
  SetCaption(std::move(text));
  Typed.Raise();
}

void TransparentPicture::SetTextFont(Font newFont) {
  font = std::move(newFont);
  Tell(Aspect::Font);
}

void TransparentPicture::SetSelectionFrame(std::int32_t value) {
  if (selectionFrame == value) return;
  selectionFrame = value;
  Tell(Aspect::Content);
}

void TransparentPicture::SetIsToShowBorderMarks(bool value) {
  if (isToShowBorderMarks == value) return;
  isToShowBorderMarks = value;
  Tell(Aspect::Content);
}

void TransparentPicture::SetIsToShowResize(bool value) {
  if (isToShowResize == value) return;
  isToShowResize = value;
  Tell(Aspect::Content);
}

}  // namespace kw
