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

void CanvasItemView::Invalidate(const RECT& place) const {
  if (Container()->Handle() != nullptr && IsRectEmpty(&place) == FALSE) {
    InvalidateRect(Container()->Handle(), &place, FALSE);
  }
}

void CanvasItemView::Show(Aspect aspect) {
  if (aspect == Aspect::Enabled || aspect == Aspect::Pointer || aspect == Aspect::Focus) return;
  const RECT place = Model().Visible() ? Place() : RECT{};
  const bool hasMoved = EqualRect(&place, &shownPlace) == FALSE;
  if (aspect == Aspect::Geometry && !hasMoved) return;
  if (hasMoved) Invalidate(shownPlace);
  Invalidate(place);
  shownPlace = place;
}

void CanvasItemView::Leave() {
  Invalidate(shownPlace);
  if (auto* canvas = dynamic_cast<PictureBoxView*>(Container())) canvas->Forget(*this);
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
  const RECT place = Place();
  sender.Send(*this, mouse, event, {place.left, place.top});
}

}  // namespace kw::windows
