#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <utility>
#include <vector>

#include "components/base/RunTimeError.h"
#include "picture/effects/Effect.h"
#include "picture/effects/Families.h"
#include "picture/effects/Kernels.h"
#include "picture/effects/ParallelRows.h"
#include "picture/effects/Pixels.h"

namespace kw {
namespace {

void HorizontalFlip(Bitmap& picture, std::span<const double> /*values*/) {
  Remade rows(picture);
  const auto width = static_cast<std::size_t>(picture.Width());
  const std::size_t count = picture.RowBytes();
  const int depth = picture.BitsPerPixel();
  ParallelForRows(picture.Height(), BytesOf(picture), [&](RowBand band) {
    for (std::int32_t y = band.begin; y < band.end; ++y) {
      if (y + 1 < band.end) PrefetchRow(rows.Old().Row(y + 1), count);
      if (depth < 8) {
        kernels::MirrorPacked(rows.Row(y), width, depth);
      } else {
        kernels::MirrorBytes(rows.Row(y), width, static_cast<std::size_t>(depth / 8));
      }
    }
  });
  rows.Finish();
}

void VerticalFlip(Bitmap& picture, std::span<const double> /*values*/) {
  Remade rows(picture);
  const Pixels& to = rows.New();
  const ConstPixels& from = rows.Old();
  const bool isInPlace = to.base == from.base;
  const std::size_t count = picture.RowBytes();
  const std::int32_t last = picture.Height() - 1;
  // The row in the middle is its own opposite: it stays in place, or is copied.
  ParallelForRows(picture.Height() - picture.Height() / 2, BytesOf(picture), [&](RowBand band) {
    for (std::int32_t y = band.begin; y < band.end; ++y) {
      if (y + 1 < band.end) {
        PrefetchRow(from.Row(y + 1), count);
        PrefetchRow(from.Row(last - y - 1), count);
      }
      if (!isInPlace) {
        std::memcpy(to.Row(y), from.Row(last - y), count);
        std::memcpy(to.Row(last - y), from.Row(y), count);
      } else if (y != last - y) {
        kernels::ExchangeRows(to.Row(y), to.Row(last - y), count);
      }
    }
  });
  rows.Finish();
}

// Rotates by 90 degrees, clockwise or counter-clockwise.
void RotateQuarter(Bitmap& picture, bool clockwise) {
  Bitmap result = Like(picture, picture.Height(), picture.Width(), picture.BitsPerPixel());
  result.SetResolution(picture.VerticalResolution(), picture.HorizontalResolution());
  result.SetPalette({picture.Palette().begin(), picture.Palette().end()});
  const kernels::Area from{ConstPixels(picture).base, picture.Stride(), picture.Width(), picture.Height()};
  const Pixels to(result);
  ParallelForRows(result.Height(), BytesOf(result), [&](RowBand band) {
    kernels::Rotate90(from, {to.base, to.stride}, picture.BitsPerPixel(), clockwise, band.begin, band.end);
  });
  picture = std::move(result);
}

// The direction of the result's rows in the picture.
struct Slant {
  double cosine;
  double sine;
};

// `exact` rounded up, with a tolerance for rounding errors.
std::int32_t SizeFor(double exact) {
  const double size = std::ceil(exact - 1e-6);
  if (size > 1e9) Raise(ErrorNumber::OutOfMemory);
  return static_cast<std::int32_t>(size);
}

class Rotation {
public:
  Rotation(const Bitmap& original, const Bitmap& rotated, Slant direction)
      : pixels(original),
        width(original.Width()),
        height(original.Height()),
        rotatedWidth(rotated.Width()),
        rotatedHeight(rotated.Height()),
        size(static_cast<std::size_t>(original.BitsPerPixel() / 8)),
        paper(size == 4 ? 0 : 255),
        slant(direction) {}

  // The places of a row's pixels in the picture, in 256ths.
  struct Places {
    explicit Places(const Bitmap& rotated)
        : columns(static_cast<std::size_t>(rotated.Width()) + kernels::PlacesExcess), lines(columns.size()) {}
    std::vector<std::int32_t> columns;
    std::vector<std::int32_t> lines;
  };

  void Row(std::int32_t y, std::uint8_t* to, Places& places) const {
    const double down = y + 0.5 - rotatedHeight / 2.0;
    // Places of a longer side do not fit into 32 bits.
    constexpr std::int32_t longSide = 1 << 22;
    if (std::max({width, height, rotatedWidth, rotatedHeight}) > longSide) return LongRow(down, to);
    const double first = 0.5 - rotatedWidth / 2.0;
    const auto count = static_cast<std::size_t>(rotatedWidth);
    kernels::FindPlaces({first, slant.cosine, slant.sine * down, width / 2.0}, places.columns.data(), count);
    kernels::FindPlaces({first, -slant.sine, slant.cosine * down, height / 2.0}, places.lines.data(), count);
    const auto touches = [&](std::size_t x) {
      return IsWithin(places.columns[x] >> 8, -1, width) && IsWithin(places.lines[x] >> 8, -1, height);
    };
    // The kernel reads a pixel more to the right and may write a byte behind its pixels.
    const auto isInside = [&](std::size_t x) {
      return IsWithin(places.columns[x] >> 8, 0, width - 2) && IsWithin(places.lines[x] >> 8, 0, height - 1);
    };
    // What touches the picture is one run, and what lies inside it, too.
    std::size_t begin = 0;
    std::size_t end = count;
    while (begin < end && !touches(begin)) ++begin;
    while (begin < end && !touches(end - 1)) --end;
    std::size_t inside = begin;
    while (inside < end && !isInside(inside)) ++inside;
    std::size_t edge = std::min(end, count - 1);
    while (inside < edge && !isInside(edge - 1)) --edge;
    edge = std::max(inside, edge);
    const auto blend = [&](std::size_t x) { Blend(places.columns[x], places.lines[x], to + x * size); };
    std::fill_n(to, begin * size, paper);
    for (std::size_t x = begin; x < inside; ++x) blend(x);
    kernels::Interpolate({pixels.base, pixels.stride, places.columns.data() + inside, places.lines.data() + inside},
                         to + inside * size, edge - inside, size);
    for (std::size_t x = edge; x < end; ++x) blend(x);
    std::fill_n(to + end * size, (count - end) * size, paper);
  }

private:
  void LongRow(double down, std::uint8_t* to) const {
    const auto in256ths = [](double place) { return static_cast<std::int64_t>(std::floor(place * 256 + 0.5)); };
    for (std::int32_t x = 0; x < rotatedWidth; ++x, to += size) {
      const double right = x + 0.5 - rotatedWidth / 2.0;
      Blend(in256ths(slant.cosine * right + slant.sine * down + width / 2.0 - 0.5),
            in256ths(slant.cosine * down - slant.sine * right + height / 2.0 - 0.5), to);
    }
  }

  static bool IsWithin(std::int64_t value, std::int64_t begin, std::int64_t end) {
    return value >= begin && value < end;
  }

  // The pixel (x, y) of the picture, nullptr outside.
  const std::uint8_t* At(std::int64_t x, std::int64_t y) const {
    if (!IsWithin(x, 0, width) || !IsWithin(y, 0, height)) return nullptr;
    return pixels.Row(static_cast<std::int32_t>(y)) + static_cast<std::size_t>(x) * size;
  }

  void Blend(std::int64_t x, std::int64_t y, std::uint8_t* to) const {
    const std::int64_t column = x >> 8;
    const std::int64_t line = y >> 8;
    const auto right = static_cast<std::uint32_t>(x & 255);
    const auto below = static_cast<std::uint32_t>(y & 255);
    const std::uint8_t* const corners[4] = {At(column, line), At(column + 1, line), At(column, line + 1),
                                            At(column + 1, line + 1)};
    const std::uint32_t weights[4] = {(256 - right) * (256 - below), right * (256 - below), (256 - right) * below,
                                      right * below};
    for (std::size_t c = 0; c < size; ++c) {
      std::uint32_t sum = 32768;
      for (std::size_t i = 0; i < 4; ++i) sum += weights[i] * (corners[i] == nullptr ? paper : corners[i][c]);
      to[c] = static_cast<std::uint8_t>(sum >> 16U);
    }
  }

  ConstPixels pixels;
  std::int32_t width;
  std::int32_t height;
  std::int32_t rotatedWidth;
  std::int32_t rotatedHeight;
  std::size_t size;
  std::uint8_t paper;
  Slant slant;
};

void PremultiplyAll(Bitmap& picture) {
  const Pixels pixels(picture);
  const auto width = static_cast<std::size_t>(picture.Width());
  for (std::int32_t y = 0; y < picture.Height(); ++y) Premultiply(pixels.Row(y), pixels.Row(y), width);
}

Slant SlantOf(double degrees) {
  const double radians = degrees / 180 * std::numbers::pi;
  return {std::cos(radians), std::sin(radians)};
}

PictureSize RotatedSize(const Bitmap& picture, Slant slant) {
  const double across = std::fabs(slant.cosine);
  const double along = std::fabs(slant.sine);
  return {SizeFor(picture.Width() * across + picture.Height() * along),
          SizeFor(picture.Width() * along + picture.Height() * across)};
}

void RotateFreely(Bitmap& picture, double degrees) {
  const Slant slant = SlantOf(degrees);
  Bitmap original = InValues(picture);
  const PictureSize size = RotatedSize(original, slant);
  Bitmap result = Like(original, size.width, size.height, original.BitsPerPixel());
  const bool hasAlpha = original.BitsPerPixel() == 32;
  if (hasAlpha) PremultiplyAll(original);
  const Rotation rotation(original, result, slant);
  const Pixels to(result);
  const auto width = static_cast<std::size_t>(result.Width());
  const auto bands = CutIntoRowBands(result.Height(), 4 * BytesOf(result));
  std::vector<Rotation::Places> places(bands.size(), Rotation::Places(result));
  ParallelFor(bands.size(), [&](std::size_t i) {
    for (std::int32_t y = bands[i].begin; y < bands[i].end; ++y) {
      rotation.Row(y, to.Row(y), places[i]);
      if (hasAlpha) Unpremultiply(to.Row(y), width);
    }
  });
  picture = std::move(result);
}

// The angle, from 0 to below 360.
double Degrees(std::span<const double> values) { return std::fmod(values[0] + 360, 360); }

std::uint64_t MemoryOfRotate(const Bitmap& picture, std::span<const double> values) {
  const double degrees = Degrees(values);
  if (degrees == 0 || degrees == 180) return BytesOf(picture);
  if (degrees == 90 || degrees == 270) return PixelMemory(picture.Height(), picture.Width(), picture.BitsPerPixel());
  const PictureSize size = RotatedSize(picture, SlantOf(degrees));
  return std::max(PixelMemory(size.width, size.height, DepthInValues(picture)), MemoryInValues(picture, values));
}

// Rotates clockwise by an angle. Multiples of 90 degrees move pixels and keep any depth. Other angles blend the four
// nearest pixels, on a page large enough for all of them; the new corners are white, or transparent if there is alpha.
// A picture with a palette becomes 8 bits if it is grey, else 24 bits.
void Rotate(Bitmap& picture, std::span<const double> values) {
  const double degrees = Degrees(values);
  if (degrees == 0) return;
  if (degrees == 90 || degrees == 270) return RotateQuarter(picture, degrees == 90);
  if (degrees != 180) return RotateFreely(picture, degrees);
  HorizontalFlip(picture, {});
  VerticalFlip(picture, {});
}

constexpr Parameter RotateParameters[] = {
    {.name = "Angle", .least = -360, .greatest = 360, .standard = 90, .unit = "degrees"}};
constexpr std::string_view DepthOfRotate =
    "as before at multiples of 90 degrees; else 1, 4 and 8: 8 where the palette is grey, else 24";

constexpr Effect RotateEffectsRows[] = {
    {.command = "HorizontalFlip", .procedure = HorizontalFlip, .resultingDepth = SameDepth, .movesPixels = true},
    {.command = "Rotate",
     .procedure = Rotate,
     .parameters = RotateParameters,
     .resultingDepth = DepthOfRotate,
     .asks = true,
     .memory = MemoryOfRotate,
     .movesPixels = true},
    {.command = "VerticalFlip", .procedure = VerticalFlip, .resultingDepth = SameDepth, .movesPixels = true},
};

}  // namespace

std::span<const Effect> RotateEffects() { return RotateEffectsRows; }

}  // namespace kw
