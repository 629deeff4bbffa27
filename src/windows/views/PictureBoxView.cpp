#include "windows/views/PictureBoxView.h"

#include <algorithm>
#include <limits>

#include "components/controls/LightWeightMarker.h"
#include "scene/HitTest.h"
#include "windows/base/Gdi.h"
#include "windows/views/CanvasItemView.h"
#include "windows/views/TextField.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {
namespace {

// In model pixels. The page's borders are thin, so they can be grabbed from this distance, too.
constexpr LONG BorderReach = 4;

// The distance of a point from the nearest pixel of a rectangle, in one direction.
LONG Distance(LONG at, LONG low, LONG high) { return std::max({low - at, at - (high - 1), LONG{0}}); }

bool Covers(const PixelRect& pixels, POINT point) {
  return Distance(point.x, pixels.left, pixels.right) == 0 && Distance(point.y, pixels.top, pixels.bottom) == 0;
}

// The least pause between two paintings. A mouse may send a thousand moves a second, more than a screen can show. If
// the last painting is longer ago, a change is painted at once, else after this time.
constexpr auto LeastPause = std::chrono::milliseconds(10);
constexpr UINT_PTR PaintTimer = 1;

}  // namespace

bool PictureBoxView::IsTabStop() const {
  // A box that contains another box leaves the focus to that one.
  return std::ranges::none_of(box.Children(),
                              [](const Control* child) { return dynamic_cast<const PictureBox*>(child) != nullptr; });
}

// Schedules one painting for all changes until then; it paints only what changed.
void PictureBoxView::ItemsChanged() {
  if (Handle() == nullptr || isPaintingDue) return;
  isPaintingDue = true;
  const bool isSoon = std::chrono::steady_clock::now() - lastPainting < LeastPause;
  const bool isTimed = SetTimer(Handle(), PaintTimer, static_cast<UINT>(LeastPause.count()), nullptr) != 0;
  if (!isSoon || !isTimed) AskForPainting();
}

// A painting without an area comes when no input waits. The system forgets it if a host's loop looks at its message
// before it takes it.
void PictureBoxView::AskForPainting() {
  askedForPainting = std::chrono::steady_clock::now();
  RedrawWindow(Handle(), nullptr, nullptr, RDW_INTERNALPAINT);
}

// Asks for the painting that is due; if it was asked for and does not come, paints. The timer runs until then.
void PictureBoxView::OnPaintTimer() {
  if (!isPaintingDue) {
    KillTimer(Handle(), PaintTimer);
  } else if (!askedForPainting) {
    AskForPainting();
  } else if (std::chrono::steady_clock::now() - *askedForPainting >= LeastPause) {
    PaintItems();
  }
}

void PictureBoxView::PaintItems() {
  isPaintingDue = false;
  askedForPainting.reset();
  CollectItems(box, Shared().Scaling(), formerItems);
  compositor.SetBackground(box.BackColor());
  const std::vector<PixelRect> changed = compositor.Exchange(formerItems);
  formerItems.clear();  // or the former page would stay in memory until the next painting
  const auto paintWith = [this](const BufferedPaint& paint) {
    for (const RECT& part : paint.Parts()) compositor.Paint(paint.Pixels(), ToPixelRect(part), &texts);
  };
  if (GetUpdateRect(Handle(), nullptr, FALSE) == FALSE) {
    // Paint at once: faster than to invalidate the parts and wait for WM_PAINT.
    paintWith(BufferedPaint(Handle(), Shared().Buffer(), changed));
  } else {
    for (const PixelRect& part : changed) {
      const RECT outOfDate = ToRect(part);
      InvalidateRect(Handle(), &outOfDate, FALSE);
    }
    paintWith(BufferedPaint(Handle(), Shared().Buffer()));
  }
  lastPainting = std::chrono::steady_clock::now();
}

bool PictureBoxView::WantsKey(WPARAM key) const {
  const HWND focus = GetFocus();
  return IsChild(Handle(), focus) != FALSE ? TextField::WantsKey(focus, key) : PaintedView::WantsKey(key);
}

LRESULT PictureBoxView::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_PAINT:
      PaintItems();
      return 0;
    case WM_SETFOCUS:
      TellFocus();
      break;
    case WM_TIMER:
      if (wParam != PaintTimer) break;
      OnPaintTimer();
      return 0;
    case WM_COMMAND:
      if (HIWORD(wParam) == EN_CHANGE && TakesInput()) TextField::TakeTextOf(reinterpret_cast<HWND>(lParam));
      if (HIWORD(wParam) == EN_SETFOCUS || HIWORD(wParam) == EN_KILLFOCUS) Shared().NoteKeys();
      return 0;
    case WM_CTLCOLOREDIT:
      return reinterpret_cast<LRESULT>(
          TextField::BackgroundOf(reinterpret_cast<HWND>(lParam), reinterpret_cast<HDC>(wParam)));
    case WM_SETCURSOR: {
      POINT mouse = {};
      GetCursorPos(&mouse);
      ScreenToClient(Handle(), &mouse);
      const CanvasItemView* const item = isHolding ? held : TargetAt(ModelPixelAt(mouse));
      if (item != nullptr && SetPointerOf(item->Model())) return TRUE;
      if (SetPointerOf(box)) return TRUE;
      break;
    }
    default:
      break;
  }
  return PaintedView::OnMessage(message, wParam, lParam);
}

void PictureBoxView::Paint(HDC context, const RECT& client) { FillWith(context, client, box.BackColor()); }

void PictureBoxView::OnMouse(const MouseEvent& message) {
  MouseEvent event = message;
  // The canvas has no double clicks: strokes may begin at the same point in quick succession.
  if (event.kind == MouseEvent::Kind::DoubleClick) event.kind = MouseEvent::Kind::Down;
  if (event.kind == MouseEvent::Kind::Down) TakeFocus();
  if (!IsAttached()) return;
  const POINT at = ModelPixelAt(event.at);
  if (!isHolding) held = TargetAt(at);
  CanvasItemView* const target = held;
  isHolding = event.isAnyHeld;
  if (target != nullptr) {
    target->Send(event, PointOnBoxOf(*target, at));
  } else {
    SendMouse(event, {static_cast<double>(at.x), static_cast<double>(at.y)});
  }
}

void PictureBoxView::OnMouseLost() {
  const bool wasHolding = isHolding;
  isHolding = false;
  if (held != nullptr) held->LosePress();
  held = nullptr;
  if (wasHolding) PaintedView::OnMouseLost();
}

void PictureBoxView::TakeFocus() {
  for (const Control* child : box.Children()) {
    const ControlView* const inner = Shared().ViewOf(*child);
    if (inner != nullptr && inner->Handle() != nullptr && inner->IsTabStop() && child->CanTakeFocus()) {
      SetFocus(inner->Handle());
      return;
    }
  }
  if (box.CanTakeFocus()) SetFocus(Handle());
}

void PictureBoxView::Forget(const CanvasItemView& item) {
  if (held == &item) held = nullptr;
  if (auto* const outer = dynamic_cast<PictureBoxView*>(Container())) outer->Forget(item);
}

POINT PictureBoxView::ModelPixelAt(POINT point) const {
  const Scale& scale = Shared().Scaling();
  return {scale.ModelPixelAt(point.x), scale.ModelPixelAt(point.y)};
}

CanvasItemView* PictureBoxView::ItemAt(POINT point) const {
  const float unit = UnitsPerPixel(box);
  const float x = static_cast<float>(point.x) * unit;
  const float y = static_cast<float>(point.y) * unit;
  const auto topmost = [this](const auto& isHit) {
    const std::vector<Control*>& children = box.Children();
    const auto found = std::find_if(children.rbegin(), children.rend(), [&](const Control* child) {
      return IsCanvasItem(*child) && child->Visible() && child->Enabled() && isHit(*child);
    });
    return found == children.rend() ? nullptr : *found;
  };
  const Control* item = topmost([x, y](const Control& child) { return IsPointInItem(child, x, y); });
  const auto* const layer = dynamic_cast<const TransparentPicture*>(item);
  if (layer != nullptr && !Covers(PixelsOfLayer(*layer), point)) {
    // The last edges of a layer are beside its pixels. A border keeps its own pixels there: it adjoins the page.
    const Control* const border = topmost([point](const Control& child) {
      return dynamic_cast<const LightWeightMarker*>(&child) != nullptr && Covers(PixelsOf(child), point);
    });
    if (border != nullptr) item = border;
  }
  return item == nullptr ? nullptr : dynamic_cast<CanvasItemView*>(Shared().ViewOf(*item));
}

CanvasItemView* PictureBoxView::BorderBeside(POINT point) const {
  const Control* nearest = nullptr;
  LONG least = std::numeric_limits<LONG>::max();
  for (const Control* inner : box.Children()) {
    if (dynamic_cast<const PictureBox*>(inner) == nullptr || !inner->Visible()) continue;
    const PixelRect innerBounds = PixelsOf(*inner);
    for (const Control* child : inner->Children()) {
      if (dynamic_cast<const LightWeightMarker*>(child) == nullptr || !child->Visible() || !child->Enabled()) continue;
      const PixelRect bounds = PixelsOf(*child);
      const LONG across = Distance(point.x - innerBounds.left, bounds.left, bounds.right);
      const LONG down = Distance(point.y - innerBounds.top, bounds.top, bounds.bottom);
      const LONG distance = across * across + down * down;
      if (across > BorderReach || down > BorderReach || distance >= least) continue;
      least = distance;
      nearest = child;
    }
  }
  return nearest == nullptr ? nullptr : dynamic_cast<CanvasItemView*>(Shared().ViewOf(*nearest));
}

CanvasItemView* PictureBoxView::TargetAt(POINT point) const {
  CanvasItemView* const item = ItemAt(point);
  return item != nullptr ? item : BorderBeside(point);
}

POINT PictureBoxView::PointOnBoxOf(const CanvasItemView& item, POINT point) const {
  const Control* const holder = item.Model().Container();
  if (holder == nullptr || holder == &box) return point;
  const PixelRect bounds = PixelsOf(*holder);
  return {point.x - bounds.left, point.y - bounds.top};
}

void PictureBoxView::Draw(const Look& look, const RECT& bounds, const PictureBox& box) {
  RECT part = {};
  GetClipBox(look.context, &part);
  BackBuffer frame;
  if (IntersectRect(&part, &part, &bounds) == FALSE || !frame.Reserve(WidthOf(part), HeightOf(part))) return;
  Compositor whole(box.BackColor());
  GdiTextRenderer texts;
  whole.Show(ItemsOf(box, look.scale));
  whole.Paint(frame.Pixels(part), ToPixelRect(part), &texts);
  BitBlt(look.context, part.left, part.top, WidthOf(part), HeightOf(part), frame.Context(), 0, 0, SRCCOPY);
}

}  // namespace kw::windows
