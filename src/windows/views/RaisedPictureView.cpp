#include "windows/views/RaisedPictureView.h"

#include <string>
#include <string_view>

#include "scene/ColourMap.h"
#include "windows/base/Gdi.h"
#include "windows/views/RaisedAreaView.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {
namespace {

constexpr std::string_view ColourChooser = "Chooser.Ico";

void DrawColourMap(HDC context, const RECT& bounds) {
  BackBuffer map;
  const int width = WidthOf(bounds);
  const int height = HeightOf(bounds);
  if (width <= 0 || height <= 0 || !map.Reserve(width, height)) return;
  const FrameBuffer pixels = map.Pixels({0, 0, width, height});
  for (int y = 0; y < height; ++y) {
    const auto row = pixels.Row(y, 0, width);
    for (int x = 0; x < width; ++x) {
      row[static_cast<std::size_t>(x)] =
          PixelOf(ColourOfMap(static_cast<double>(x) / width, static_cast<double>(y) / height));
    }
  }
  BitBlt(context, bounds.left, bounds.top, width, height, map.Context(), 0, 0, SRCCOPY);
}

void DrawRaisedIcon(const Look& look, const RECT& bounds, const std::string& icon, bool isPressed) {
  DrawRaised(look.context, bounds, isPressed);
  RECT paper = bounds;
  if (isPressed) OffsetRect(&paper, 1, 1);
  if (!icon.empty()) look.images.Draw(look.context, paper, icon, true);
}

}  // namespace

void RaisedPictureView::Draw(const Look& look, const RECT& bounds, const RaisedPicture& picture) {
  if (picture.Picture() == ColourChooser)
    DrawColourMap(look.context, bounds);
  else
    DrawRaisedIcon(look, bounds, picture.Picture(), false);
}

void RaisedPictureView::Paint(HDC context, const RECT& client) {
  const Look look{context, Shared().Pictures(), Shared().Scaling()};
  if (looksPressed)
    DrawRaisedIcon(look, client, picture.Picture(), true);
  else
    Draw(look, client, picture);
}

bool RaisedPictureView::WantsKey(WPARAM key) const { return IsDropDown() && (key == VK_ESCAPE || key == VK_RETURN); }

LRESULT RaisedPictureView::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_KEYDOWN && WantsKey(wParam)) {
    picture.LoseFocus();
    return 0;
  }
  return PaintedView::OnMessage(message, wParam, lParam);
}

void RaisedPictureView::OnMouse(const MouseEvent& event) {
  if (!picture.IsButton()) return PaintedView::OnMouse(event);
  RECT client = {};
  GetClientRect(Handle(), &client);
  const bool isInside = PtInRect(&client, event.at) != FALSE;
  const bool isPress = event.kind == MouseEvent::Kind::Down || event.kind == MouseEvent::Kind::DoubleClick;
  if (isPress && pressedWith == 0) pressedWith = event.button;
  LookPressed(pressedWith != 0 && isInside);
  if (event.kind != MouseEvent::Kind::Up || event.button != pressedWith) return;
  pressedWith = 0;
  LookPressed(false);
  MouseEvent press = event;
  press.kind = MouseEvent::Kind::Down;
  PaintedView::OnMouse(press);
}

void RaisedPictureView::OnMouseLost() {
  pressedWith = 0;
  LookPressed(false);
  PaintedView::OnMouseLost();
}

void RaisedPictureView::LookPressed(bool isPressed) {
  if (looksPressed == isPressed) return;
  looksPressed = isPressed;
  InvalidateRect(Handle(), nullptr, FALSE);
}

}  // namespace kw::windows
