#include "windows/RaisedPictureView.h"

#include <string_view>

#include "drawing/ColourMap.h"
#include "windows/Gdi.h"
#include "windows/Pane.h"
#include "windows/RaisedAreaView.h"

namespace kw::windows {
namespace {

constexpr std::string_view ColourChooser = "Chooser.Ico";

void DrawColourMap(HDC context, const RECT& place) {
  BackBuffer map;
  const int width = WidthOf(place);
  const int height = HeightOf(place);
  if (width <= 0 || height <= 0 || !map.Reserve(width, height)) return;
  const FrameBuffer pixels = map.Pixels({0, 0, width, height});
  for (int y = 0; y < height; ++y) {
    const auto row = pixels.Row(y, 0, width);
    for (int x = 0; x < width; ++x) {
      row[static_cast<std::size_t>(x)] =
          PixelOf(ColourOfMap(static_cast<double>(x) / width, static_cast<double>(y) / height));
    }
  }
  BitBlt(context, place.left, place.top, width, height, map.Context(), 0, 0, SRCCOPY);
}

}  // namespace

void RaisedPictureView::Draw(const Look& look, const RECT& place, const RaisedPicture& picture) {
  if (picture.Picture() == ColourChooser) {
    DrawColourMap(look.context, place);
    return;
  }
  DrawRaised(look.context, place);
  if (!picture.Picture().empty()) look.images.Draw(look.context, place, picture.Picture(), true);
}

void RaisedPictureView::Paint(HDC context, const RECT& client) {
  Draw({context, Shared().Pictures(), Shared().Scaling()}, client, picture);
}

}  // namespace kw::windows
