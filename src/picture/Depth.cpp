#include "picture/Depth.h"

#include <algorithm>
#include <array>

#include "components/RunTimeError.h"
#include "picture/PaletteMaker.h"

namespace kw {
namespace {

Bitmap Like(const Bitmap& picture, int bitsPerPixel) {
  Bitmap result(picture.Width(), picture.Height(), bitsPerPixel);
  result.SetResolution(picture.HorizontalResolution(), picture.VerticalResolution());
  return result;
}

void PutIndex(std::span<std::uint8_t> row, std::size_t x, unsigned index, int bitsPerPixel) {
  const auto bits = static_cast<unsigned>(bitsPerPixel);
  const std::size_t perByte = 8 / bits;
  const unsigned shift = 8 - bits * (static_cast<unsigned>(x % perByte) + 1);
  row[x / perByte] = static_cast<std::uint8_t>(row[x / perByte] | index << shift);
}

std::uint8_t OnPaper(unsigned value, unsigned alpha) {
  return static_cast<std::uint8_t>((value * alpha + 255 * (255 - alpha) + 127) / 255);
}

// Calls take(x, colour) for each pixel of a row.
template <typename Take>
void ForEachColour(const Bitmap& picture, std::int32_t y, const Take& take) {
  const auto row = picture.Row(y);
  const auto width = static_cast<std::size_t>(picture.Width());
  const int depth = picture.BitsPerPixel();
  if (depth == 24) {
    for (std::size_t x = 0; x < width; ++x) take(x, Rgb{row[x * 3 + 2], row[x * 3 + 1], row[x * 3]});
  } else if (depth == 32) {
    for (std::size_t x = 0; x < width; ++x) {
      const std::uint8_t* at = row.data() + x * 4;
      take(x, Rgb{OnPaper(at[2], at[3]), OnPaper(at[1], at[3]), OnPaper(at[0], at[3])});
    }
  } else {
    std::array<Rgb, 256> palette{};
    std::copy(picture.Palette().begin(), picture.Palette().end(), palette.begin());
    for (std::size_t x = 0; x < width; ++x) take(x, palette[PaletteIndexAt(row, x, depth)]);
  }
}

Bitmap ToColours(const Bitmap& picture, int bitsPerPixel) {
  Bitmap result = Like(picture, bitsPerPixel);
  const std::size_t size = bitsPerPixel == 32 ? 4 : 3;
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    const auto to = result.MutableRow(y);
    ForEachColour(picture, y, [&](std::size_t x, Rgb colour) {
      std::uint8_t* at = to.data() + x * size;
      at[0] = colour.blue;
      at[1] = colour.green;
      at[2] = colour.red;
      if (size == 4) at[3] = 255;
    });
  }
  return result;
}

Bitmap ToMoreIndexBits(const Bitmap& picture, int bitsPerPixel) {
  Bitmap result = Like(picture, bitsPerPixel);
  result.SetPalette({picture.Palette().begin(), picture.Palette().end()});
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    const auto from = picture.Row(y);
    const auto to = result.MutableRow(y);
    for (std::size_t x = 0; x < static_cast<std::size_t>(picture.Width()); ++x) {
      PutIndex(to, x, PaletteIndexAt(from, x, picture.BitsPerPixel()), bitsPerPixel);
    }
  }
  return result;
}

Bitmap ToBlackAndWhite(const Bitmap& picture) {
  Bitmap result = Like(picture, 1);
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    const auto to = result.MutableRow(y);
    ForEachColour(picture, y, [&](std::size_t x, Rgb colour) { PutIndex(to, x, Luma(colour) >> 7U, 1); });
  }
  return result;
}

Bitmap ToPalette(const Bitmap& picture, int bitsPerPixel) {
  PaletteMaker maker(std::size_t{1} << bitsPerPixel);
  const auto width = static_cast<std::size_t>(picture.Width());
  const bool isPlain = picture.BitsPerPixel() == 24;
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    if (isPlain) {
      maker.CountRow(picture.Row(y).data(), width);
    } else {
      ForEachColour(picture, y, [&](std::size_t, Rgb colour) { maker.Count(colour); });
    }
  }
  maker.Make();
  if (bitsPerPixel == 1 && !maker.IsExact()) return ToBlackAndWhite(picture);
  Bitmap result = Like(picture, bitsPerPixel);
  result.SetPalette(maker.Palette());
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    const auto to = result.MutableRow(y);
    if (isPlain && bitsPerPixel == 8) {
      maker.IndexRow(picture.Row(y).data(), to.data(), width);
    } else {
      ForEachColour(picture, y,
                    [&](std::size_t x, Rgb colour) { PutIndex(to, x, maker.IndexOf(colour), bitsPerPixel); });
    }
  }
  return result;
}

}  // namespace

std::uint8_t Luma(Rgb colour) {
  return static_cast<std::uint8_t>((299U * colour.red + 587U * colour.green + 114U * colour.blue + 500U) / 1000U);
}

Bitmap ToDepth(const Bitmap& picture, int bitsPerPixel) {
  if (picture.IsEmpty()) Raise(ErrorNumber::ObjectVariableNotSet);
  const int depth = picture.BitsPerPixel();
  if (depth == bitsPerPixel) return picture;
  if (bitsPerPixel == 24 || bitsPerPixel == 32) return ToColours(picture, bitsPerPixel);
  if (bitsPerPixel != 1 && bitsPerPixel != 4 && bitsPerPixel != 8) Raise(ErrorNumber::InvalidProcedureCall);
  return depth < bitsPerPixel ? ToMoreIndexBits(picture, bitsPerPixel) : ToPalette(picture, bitsPerPixel);
}

bool HasGreyPalette(const Bitmap& picture) {
  return picture.BitsPerPixel() <= 8 &&
         std::ranges::all_of(picture.Palette(), [](const Rgb& c) { return c.red == c.green && c.green == c.blue; });
}

Bitmap ToGreyLevels(const Bitmap& picture) {
  Bitmap result = Like(picture, 8);
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    const auto to = result.MutableRow(y);
    ForEachColour(picture, y, [&](std::size_t x, Rgb colour) { to[x] = colour.red; });
  }
  return result;
}

}  // namespace kw
