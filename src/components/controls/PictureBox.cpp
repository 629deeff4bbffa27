#include "components/controls/PictureBox.h"

namespace kw {

void PictureBox::SetPicture(Bitmap newPicture) {
  picture = std::move(newPicture);
  Tell(Aspect::Content);
}

bool PictureBox::TryClearPicture() {
  SetPicture({});
  return true;
}

void PictureBox::SetBackColor(Colour value) {
  backColor = value;
  Tell(Aspect::Colours);
}

}  // namespace kw
