#include "windows/CanvasItemView.h"

#include "components/LightWeightMarker.h"
#include "windows/Gdi.h"
#include "windows/PictureBoxView.h"

namespace kw::windows {
namespace {

// Twips of a distance on the screen.
POINT TwipsOf(POINT pixels) {
  constexpr int TwipsPerInch = 1440;
  const HDC screen = GetDC(nullptr);
  const POINT twips = {MulDiv(pixels.x, TwipsPerInch, GetDeviceCaps(screen, LOGPIXELSX)),
                       MulDiv(pixels.y, TwipsPerInch, GetDeviceCaps(screen, LOGPIXELSY))};
  ReleaseDC(nullptr, screen);
  return twips;
}

}  // namespace

PictureBoxView* CanvasItemView::Canvas() const { return dynamic_cast<PictureBoxView*>(Container()); }

void CanvasItemView::Show(Aspect aspect) {
  if (aspect == Aspect::Enabled || aspect == Aspect::Pointer || aspect == Aspect::Focus) return;
  if (aspect == Aspect::Typing) ShowTyping();
  if (!IsAttached()) return;
  if (field != nullptr) field->Show();
  if (const PictureBoxView* canvas = Canvas()) canvas->ItemsChanged();
}

void CanvasItemView::ShowTyping() {
  auto& layer = static_cast<TransparentPicture&>(Model());
  const PictureBoxView* const canvas = Canvas();
  if (!layer.IsTyping()) {
    field.reset();
  } else if (canvas != nullptr && canvas->Handle() != nullptr) {
    field = std::make_unique<TextField>(canvas->Handle(), layer);
  }
}

void CanvasItemView::Leave() {
  field.reset();
  if (PictureBoxView* canvas = Canvas()) {
    canvas->ItemsChanged();
    canvas->Forget(*this);
  }
}

void CanvasItemView::Send(const MouseEvent& event) {
  const bool isMarker = dynamic_cast<const LightWeightMarker*>(&Model()) != nullptr;
  if (event.kind == MouseEvent::Kind::Down) pressedAt = event.at;
  if (isMarker && event.kind == MouseEvent::Kind::Up) {
    if (!IsEffectivelyEnabled()) return;
    const POINT distance = TwipsOf({event.at.x - pressedAt.x, event.at.y - pressedAt.y});
    mouse->MouseUp.Raise(event.button, event.shift, static_cast<float>(distance.x), static_cast<float>(distance.y));
    return;
  }
  const RECT place = Place();  // without the room for a frame: there the contents begin at the point (1, 1)
  sender.Send(*this, mouse, event, {place.left, place.top});
}

}  // namespace kw::windows
