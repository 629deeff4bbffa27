#include "drawing/DrawPicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace kw {
namespace {

constexpr std::uint32_t Opaque = 0xFF000000U;
constexpr std::uint32_t ColourBits = 0x00FFFFFFU;

// Each channel half of itself and half of white.
std::uint32_t Lightened(std::uint32_t pixel) { return ((pixel >> 1U) & 0x7F7F7FU) + 0x808080U; }

// Reads pieces of a picture's rows as frame-buffer pixels with straight alpha in the highest byte.
class RowReader {
public:
  RowReader(const Bitmap& source, const PictureLook& look) : picture(source), isLightened(look.isLightened) {
    if (look.transparent) key = PixelOf(*look.transparent);
    if (picture.BitsPerPixel() > 8) return;
    const auto palette = picture.Palette();
    for (std::size_t i = 0; i < colours.size(); ++i) {
      const Rgb entry = i < palette.size() ? palette[i] : Rgb{};
      colours[i] = Finish(PixelOf(MakeColour(entry.red, entry.green, entry.blue)) | Opaque);
    }
  }

  // Pixels from `x` on of row `y`; as many as `to` holds, all inside the picture.
  void Read(std::int32_t x, std::int32_t y, std::span<std::uint32_t> to) const {
    const auto row = picture.Row(y);
    const auto first = static_cast<std::size_t>(x);
    switch (picture.BitsPerPixel()) {
      case 1:
        for (std::size_t i = 0; i < to.size(); ++i) {
          const std::size_t at = first + i;
          to[i] = colours[(row[at >> 3U] >> (7U - (at & 7U))) & 1U];
        }
        break;
      case 8:
        for (std::size_t i = 0; i < to.size(); ++i) to[i] = colours[row[first + i]];
        break;
      case 24:
        for (std::size_t i = 0; i < to.size(); ++i) to[i] = Finish(Colours(row, (first + i) * 3) | Opaque);
        break;
      case 32:
        for (std::size_t i = 0; i < to.size(); ++i) {
          const std::size_t at = (first + i) * 4;
          to[i] = Finish(Colours(row, at) | (static_cast<std::uint32_t>(row[at + 3]) << 24U));
        }
        break;
      default:
        for (std::size_t i = 0; i < to.size(); ++i) {
          to[i] = colours[PaletteIndexAt(row, first + i, picture.BitsPerPixel())];
        }
    }
  }

private:
  static std::uint32_t Colours(std::span<const std::uint8_t> row, std::size_t at) {
    return static_cast<std::uint32_t>(row[at]) | (static_cast<std::uint32_t>(row[at + 1]) << 8U) |
           (static_cast<std::uint32_t>(row[at + 2]) << 16U);
  }

  std::uint32_t Finish(std::uint32_t pixel) const {
    const std::uint32_t colour = pixel & ColourBits;
    if (key && colour == *key) return colour;
    return isLightened ? (pixel & Opaque) | Lightened(colour) : pixel;
  }

  const Bitmap& picture;
  bool isLightened;
  std::optional<std::uint32_t> key;
  std::array<std::uint32_t, 256> colours = {};
};

std::uint32_t Blend(std::uint32_t below, std::uint32_t above) {
  const std::uint32_t alpha = above >> 24U;
  if (alpha == 255) return above & ColourBits;
  if (alpha == 0) return below;
  std::uint32_t mixed = 0;
  for (unsigned shift = 0; shift < 24; shift += 8) {
    const std::uint32_t a = (above >> shift) & 0xFFU;
    const std::uint32_t b = (below >> shift) & 0xFFU;
    mixed |= ((a * alpha + b * (255U - alpha) + 127U) / 255U) << shift;
  }
  return mixed;
}

void Copy(const FrameBuffer& target, const RowReader& reader, const PixelRect& place, const PixelRect& part) {
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(part.Width()));
  for (std::int32_t y = part.top; y < part.bottom; ++y) {
    reader.Read(part.left - place.left, y - place.top, pixels);
    const auto row = target.Row(y, part.left, part.right);
    for (std::size_t i = 0; i < pixels.size(); ++i) row[i] = Blend(row[i], pixels[i]);
  }
}

// The source pixels that one target pixel covers, and how much of the first and the last of them.
struct Span {
  std::int32_t first = 0;
  std::int32_t last = 0;
  float firstWeight = 1;
  float lastWeight = 1;

  float WeightOf(std::int32_t at) const { return at == first ? firstWeight : at == last ? lastWeight : 1.0F; }
};

Span Covered(std::int32_t at, std::int32_t sourceSize, std::int32_t targetSize) {
  const double scale = static_cast<double>(sourceSize) / targetSize;
  const double start = at * scale;
  const double end = std::min<double>(sourceSize, (at + 1) * scale);
  Span span;
  span.first = std::min(static_cast<std::int32_t>(start), sourceSize - 1);
  span.last = std::clamp(static_cast<std::int32_t>(std::ceil(end)) - 1, span.first, sourceSize - 1);
  if (span.first == span.last) {
    span.firstWeight = span.lastWeight = static_cast<float>(end - start);
  } else {
    span.firstWeight = static_cast<float>(span.first + 1 - start);
    span.lastWeight = static_cast<float>(end - span.last);
  }
  return span;
}

// Sums of the parts of the source pixels that a target pixel covers; the colours weighted by their alpha.
struct Sum {
  float blue = 0;
  float green = 0;
  float red = 0;
  float alpha = 0;

  void Add(std::uint32_t pixel, float weight) {
    const float share = weight * static_cast<float>(pixel >> 24U);
    blue += share * static_cast<float>(pixel & 0xFFU);
    green += share * static_cast<float>((pixel >> 8U) & 0xFFU);
    red += share * static_cast<float>((pixel >> 16U) & 0xFFU);
    alpha += share;
  }

  std::uint32_t Pixel(float area) const {
    if (alpha <= 0) return 0;
    const auto byte = [](float value) { return static_cast<std::uint32_t>(std::min(value + 0.5F, 255.0F)); };
    return byte(blue / alpha) | (byte(green / alpha) << 8U) | (byte(red / alpha) << 16U) | (byte(alpha / area) << 24U);
  }
};

void Scale(const FrameBuffer& target, const Bitmap& picture, const RowReader& reader, const PixelRect& place,
           const PixelRect& part) {
  std::vector<Span> columns(static_cast<std::size_t>(part.Width()));
  for (std::size_t i = 0; i < columns.size(); ++i) {
    columns[i] = Covered(part.left - place.left + static_cast<std::int32_t>(i), picture.Width(), place.Width());
  }
  const std::int32_t firstColumn = columns.front().first;
  std::vector<std::uint32_t> source(static_cast<std::size_t>(columns.back().last - firstColumn + 1));
  std::vector<Sum> sums(columns.size());
  const auto area = static_cast<float>(static_cast<double>(picture.Width()) / place.Width() *
                                       (static_cast<double>(picture.Height()) / place.Height()));
  for (std::int32_t y = part.top; y < part.bottom; ++y) {
    std::ranges::fill(sums, Sum{});
    const Span rows = Covered(y - place.top, picture.Height(), place.Height());
    for (std::int32_t sourceRow = rows.first; sourceRow <= rows.last; ++sourceRow) {
      reader.Read(firstColumn, sourceRow, source);
      const float rowWeight = rows.WeightOf(sourceRow);
      for (std::size_t i = 0; i < columns.size(); ++i) {
        for (std::int32_t x = columns[i].first; x <= columns[i].last; ++x) {
          sums[i].Add(source[static_cast<std::size_t>(x - firstColumn)], rowWeight * columns[i].WeightOf(x));
        }
      }
    }
    const auto row = target.Row(y, part.left, part.right);
    for (std::size_t i = 0; i < sums.size(); ++i) row[i] = Blend(row[i], sums[i].Pixel(area));
  }
}

}  // namespace

void DrawPicture(const FrameBuffer& target, const Bitmap& picture, const PixelRect& place, const PictureLook& look) {
  const PixelRect part = Common(place, target.area);
  if (picture.IsEmpty() || part.IsEmpty()) return;
  const RowReader reader(picture, look);
  if (place.Width() == picture.Width() && place.Height() == picture.Height()) {
    Copy(target, reader, place, part);
  } else {
    Scale(target, picture, reader, place, part);
  }
}

}  // namespace kw
