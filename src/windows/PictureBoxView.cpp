#include "windows/PictureBoxView.h"

#include <ranges>

#include "components/LightWeightMarker.h"
#include "windows/CanvasItemView.h"
#include "windows/Gdi.h"
#include "windows/Keys.h"
#include "windows/Pane.h"
#include "windows/Text.h"

namespace kw::windows {
namespace {

// A marker is small; the mouse finds it from a little further away.
constexpr LONG MarkerReach = 2;

constexpr float PointsPerInch = 72;
constexpr float PixelsPerInch = 96;

HFONT FontOf(const TransparentPicture& layer) {
  const Font& font = layer.TextFont();
  LOGFONTW wanted = {};
  wanted.lfHeight = -static_cast<LONG>(font.size * PixelsPerInch / PointsPerInch + 0.5F);
  wanted.lfWeight = font.bold ? FW_BOLD : FW_NORMAL;
  wanted.lfItalic = font.italic ? TRUE : FALSE;
  wanted.lfUnderline = font.underline ? TRUE : FALSE;
  wanted.lfStrikeOut = font.strikeThrough ? TRUE : FALSE;
  wanted.lfCharSet = DEFAULT_CHARSET;
  ToWide(font.name).copy(wanted.lfFaceName, LF_FACESIZE - 1);
  return CreateFontIndirectW(&wanted);
}

// `context` draws into the frame buffer's pixels, in the coordinates of the canvas.
CaptionPainter PaintCaptionsWith(HDC context) {
  return [context](const FrameBuffer&, const TransparentPicture& layer, const PixelRect& place) {
    const HFONT font = FontOf(layer);
    const HGDIOBJ before = SelectObject(context, font);
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, layer.ForeColor());
    const std::wstring text = ToWide(layer.Caption());
    RECT within = ToRect(place);
    DrawTextW(context, text.c_str(), static_cast<int>(text.size()), &within, DT_NOPREFIX | DT_WORDBREAK);
    SelectObject(context, before);
    DeleteObject(font);
    GdiFlush();  // the next layer is drawn without the system's knowledge
  };
}

}  // namespace

bool PictureBoxView::IsTabStop() const {
  // A box that only holds another one leaves the keyboard to that.
  return std::ranges::none_of(box.Children(),
                              [](const Control* child) { return dynamic_cast<const PictureBox*>(child) != nullptr; });
}

bool PictureBoxView::WantsKey(WPARAM key) const { return IsEditorKey(key); }

LRESULT PictureBoxView::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_PAINT: {
      const BufferedPaint paint(Handle(), Shared().Buffer());
      if (paint.IsNeeded()) Compose(paint.Pixels(), box, PaintCaptionsWith(paint.Context()));
      return 0;
    }
    case WM_SETCURSOR: {
      POINT mouse = {};
      GetCursorPos(&mouse);
      ScreenToClient(Handle(), &mouse);
      const CanvasItemView* const item = isHolding ? held : ItemAt(mouse);
      if (item != nullptr && SetPointerOf(item->Model())) return TRUE;
      if (SetPointerOf(box)) return TRUE;
      break;
    }
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS | DLGC_WANTCHARS;
    default:
      break;
  }
  if (SendKey(box, message, wParam)) {
    const bool isSystemKey = message == WM_SYSKEYDOWN || message == WM_SYSKEYUP;
    return isSystemKey && IsAttached() ? Default(message, wParam, lParam) : 0;
  }
  return PaintedView::OnMessage(message, wParam, lParam);
}

void PictureBoxView::Paint(HDC context, const RECT& client) { FillWith(context, client, box.BackColor()); }

void PictureBoxView::OnMouse(const MouseEvent& event) {
  if (event.kind == MouseEvent::Kind::Down) TakeFocus();
  if (!IsAttached()) return;
  if (!isHolding) held = ItemAt(event.at);
  CanvasItemView* const target = held;
  isHolding = event.isAnyHeld;
  if (target != nullptr) {
    target->Send(event);
  } else {
    PaintedView::OnMouse(event);
  }
}

void PictureBoxView::OnMouseLost() {
  isHolding = false;
  held = nullptr;
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
}

CanvasItemView* PictureBoxView::ItemAt(POINT point) const {
  for (const Control* child : std::views::reverse(box.Children())) {
    if (!IsComposed(*child) || !child->Visible() || !child->Enabled()) continue;
    RECT place = ToRect(PixelsOf(*child));
    if (dynamic_cast<const LightWeightMarker*>(child) != nullptr) InflateRect(&place, MarkerReach, MarkerReach);
    if (PtInRect(&place, point) != FALSE) return dynamic_cast<CanvasItemView*>(Shared().ViewOf(*child));
  }
  return nullptr;
}

void PictureBoxView::Draw(const Look& look, const RECT& place, const PictureBox& box) {
  RECT part = {};
  GetClipBox(look.context, &part);
  BackBuffer frame;
  if (IntersectRect(&part, &part, &place) == FALSE || !frame.Reserve(WidthOf(part), HeightOf(part))) return;
  SetViewportOrgEx(frame.Context(), -part.left, -part.top, nullptr);
  Compose(frame.Pixels(part), box, PaintCaptionsWith(frame.Context()));
  BitBlt(look.context, part.left, part.top, WidthOf(part), HeightOf(part), frame.Context(), part.left, part.top,
         SRCCOPY);
}

}  // namespace kw::windows
