#include "components/controls/TransparentPicture.h"

#include <algorithm>
#include <atomic>

#include "components/base/RunTimeError.h"

namespace kw {
namespace {

std::uint64_t NextPictureNumber() {
  static std::atomic<std::uint64_t> last = 0;
  return ++last;
}

bool IsSamePicture(const Bitmap& a, const Bitmap& b) {
  return a.SharesPixelsWith(b) && std::ranges::equal(a.Palette(), b.Palette());
}

}  // namespace

void TransparentPicture::LoadFrom(const TransparentPicture& other) {
  CopyDesign(other);
  picture = other.picture;
  pictureNumber = other.pictureNumber;
  sourcePicture = other.sourcePicture;
  design = other.design;
}

void TransparentPicture::SetPicture(Bitmap newPicture) {
  if (!IsSamePicture(newPicture, picture)) pictureNumber = NextPictureNumber();
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
