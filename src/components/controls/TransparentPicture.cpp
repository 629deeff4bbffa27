#include "components/controls/TransparentPicture.h"

#include "components/base/RunTimeError.h"

namespace kw {

void TransparentPicture::LoadFrom(const TransparentPicture& other) {
  CopyDesign(other);
  picture = other.picture;
  sourcePicture = other.sourcePicture;
  design = other.design;
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

void TransparentPicture::SetLineWidth(std::int16_t value) {
  if (value < 1) Raise(ErrorNumber::InvalidPropertyValue);
  Assign(design.lineWidth, value, Aspect::Content);
}

void TransparentPicture::SetTextEntry(bool value) {
  if (design.isTextEntry == value) return;
  design.isTextEntry = value;
  if (!value) SetTyping(false);
  Tell(Aspect::Content);
}

void TransparentPicture::SetTyping(bool value) { AssignIfNew(isTyping, value && design.isTextEntry, Aspect::Typing); }

void TransparentPicture::Type(std::string text) {
  SetCaption(std::move(text));
  Typed.Raise();
}

}  // namespace kw
