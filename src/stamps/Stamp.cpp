#include "stamps/Stamp.h"

#include <algorithm>
#include <cmath>

namespace kw {
namespace {

constexpr Colour Black = MakeColour(0, 0, 0);
constexpr Colour White = MakeColour(255, 255, 255);
constexpr std::int32_t Gap = 2;  // between text and signature

TextExtent SignatureSize(const Bitmap& signature, std::int32_t widest, std::int32_t highest) {
  if (signature.IsEmpty() || widest < 1 || highest < 1) return {};
  const double scale = std::min(
      {1.0, static_cast<double>(widest) / signature.Width(), static_cast<double>(highest) / signature.Height()});
  const auto scaled = [scale](std::int32_t size) {
    return std::max(1, static_cast<std::int32_t>(std::lround(size * scale)));
  };
  return {scaled(signature.Width()), scaled(signature.Height())};
}

// `wanted`, moved so that so much from there on lies before `high`, but never before `low`.
std::int32_t Kept(std::int32_t wanted, std::int32_t size, std::int32_t low, std::int32_t high) {
  return std::max(low, std::min(wanted, high - size));
}

void MoveTo(TransparentPicture& layer, const PixelRect& place) {
  layer.Move(static_cast<float>(place.left), static_cast<float>(place.top), static_cast<float>(place.Width()),
             static_cast<float>(place.Height()));
}

}  // namespace

StampPlaces Arrange(Desktop& desktop, const Stamp& stamp, const PixelRect& page, std::int32_t x, std::int32_t y) {
  TextExtent text;
  if (!stamp.text.empty()) text = desktop.MeasureText(stamp.text, stamp.font, page.Width());
  text = {std::min(text.width, page.Width()), std::min(text.height, page.Height())};
  const std::int32_t below = text.height == 0 ? 0 : text.height + Gap;
  const TextExtent signature = SignatureSize(stamp.signature, page.Width() / 3, page.Height() - below);
  const std::int32_t height = signature.height == 0 ? text.height : below + signature.height;
  const std::int32_t top = Kept(y, height, page.top, page.bottom);
  const std::int32_t textLeft = Kept(x, text.width, page.left, page.right);
  const std::int32_t signatureLeft = Kept(x, signature.width, page.left, page.right);
  return {{textLeft, top, textLeft + text.width, top + text.height},
          {signatureLeft, top + below, signatureLeft + signature.width, top + below + signature.height}};
}

void ShowText(TransparentPicture& layer, const Stamp& stamp, const PixelRect& place) {
  // What has the transparent colour does not show, not even text.
  const Colour ground = stamp.colour == White ? Black : White;
  layer.SetFigure({.kind = FigureKind::Text});
  layer.SetTextEntry(false);
  layer.SetBackColor(ground);
  layer.SetTransparentColor(ground);
  layer.SetForeColor(stamp.colour);
  layer.SetTextFont(stamp.font);
  layer.SetCaption(stamp.text);
  MoveTo(layer, place);
}

void ShowSignature(TransparentPicture& layer, const Stamp& stamp, const PixelRect& place) {
  layer.SetFigure({.kind = FigureKind::Picture});
  layer.SetTransparentColor(White);
  layer.SetPicture(stamp.signature);
  MoveTo(layer, place);
}

}  // namespace kw
