#include "picture/Depth.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <vector>

#include "components/base/PixelBlock.h"
#include "components/base/RunTimeError.h"
#include "picture/IndexDepth.h"
#include "picture/MedianCutQuantizer.h"
#include "picture/effects/FirstLevels.h"
#include "picture/effects/Kernels.h"
#include "picture/effects/LumaHistogram.h"
#include "picture/effects/ParallelRows.h"
#include "picture/effects/Pixels.h"

namespace kw {
namespace {

// Its pixels are uninitialised.
Bitmap Like(const Bitmap& picture, int bitsPerPixel) {
  return Like(picture, picture.Width(), picture.Height(), bitsPerPixel);
}

Bitmap ZeroedLike(const Bitmap& picture, int bitsPerPixel) {
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

// Calls work(y) for each row of the picture, on several threads; it must not throw.
template <typename Work>
void ForRows(const Bitmap& picture, const Work& work) {
  ParallelForRows(picture.Height(), 4 * BytesOf(picture), [&](RowBand band) {
    for (std::int32_t y = band.begin; y < band.end; ++y) work(y);
  });
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
  if (picture.BitsPerPixel() <= 8 && bitsPerPixel == 24) return IndicesToColours(picture);
  Bitmap result = Like(picture, bitsPerPixel);
  const std::size_t size = bitsPerPixel == 32 ? 4 : 3;
  ForRows(picture, [&](std::int32_t y) {
    const auto to = result.MutableRow(y);
    ForEachColour(picture, y, [&](std::size_t x, Rgb colour) {
      std::uint8_t* at = to.data() + x * size;
      at[0] = colour.blue;
      at[1] = colour.green;
      at[2] = colour.red;
      if (size == 4) at[3] = 255;
    });
  });
  return result;
}

// Fills a picture of 1 bit, pixel by pixel in the order of a row.
class BitRow {
public:
  explicit BitRow(std::span<std::uint8_t> target) : row(target) {}
  void Take(std::size_t x, bool bit) {
    gathered = gathered << 1U | static_cast<unsigned>(bit);
    if (x % 8 == 7) row[x / 8] = static_cast<std::uint8_t>(gathered);
  }
  void Finish(std::size_t width) {
    if (width % 8 != 0) row.back() = static_cast<std::uint8_t>(gathered << (8 - width % 8));
  }

private:
  std::span<std::uint8_t> row;
  unsigned gathered = 0;
};

using NewIndices = Lut;

// Gives the pixels of a picture of 8 bits other indices, in fewer bits.
void ChangeIndices(const Bitmap& picture, const NewIndices& indices, Bitmap& result) {
  const auto width = static_cast<std::size_t>(picture.Width());
  const bool areBits = result.BitsPerPixel() == 1;
  const Pixels to(result);
  ForRows(picture, [&](std::int32_t y) {
    const std::uint8_t* const from = picture.Row(y).data();
    std::array<std::uint8_t, 4096> part{};
    for (std::size_t x = 0; x < width; x += part.size()) {
      const std::size_t pixels = std::min(part.size(), width - x);
      kernels::UnpackLevels(from + x, part.data(), pixels, 8, indices);
      if (areBits) {
        kernels::ThresholdToBits(part.data(), to.Row(y) + x / 8, pixels, 1);
      } else {
        PackHalfBytes(part.data(), to.Row(y) + x / 2, pixels);
      }
    }
  });
}

Bitmap ToBlackAndWhite(const Bitmap& picture) {
  const auto isLight = [](Rgb colour) { return Luma(colour) > LightestBlack; };
  Bitmap result = Like(picture, 1);
  if (HasGreyRamp(picture)) {
    const ConstPixels from(picture);
    const Pixels to(result);
    ForRows(picture, [&](std::int32_t y) {
      kernels::ThresholdToBits(from.Row(y), to.Row(y), static_cast<std::size_t>(picture.Width()), LightestBlack + 1);
    });
    return result;
  }
  if (picture.BitsPerPixel() == 8) {
    NewIndices indices{};
    std::ranges::transform(picture.Palette(), indices.begin(), isLight);
    ChangeIndices(picture, indices, result);
    return result;
  }
  ForRows(picture, [&](std::int32_t y) {
    BitRow bits(result.MutableRow(y));
    ForEachColour(picture, y, [&](std::size_t x, Rgb colour) { bits.Take(x, isLight(colour)); });
    bits.Finish(static_cast<std::size_t>(picture.Width()));
  });
  return result;
}

// A picture of 8 bits with its own two indices or its one in 1 bit, in the order in which they first occur.
Bitmap WithOwnIndices(const Bitmap& picture, const FirstLevels& indices) {
  std::array<Rgb, 256> colours{};
  std::ranges::copy(picture.Palette(), colours.begin());
  Bitmap result = ZeroedLike(picture, 1);
  const Rgb first = colours[indices.first];
  const Rgb second = colours[indices.second];
  if (first == second) {
    result.SetPalette({first});
    return result;
  }
  const ConstPixels from(picture);
  const Pixels to(result);
  const std::uint8_t greater = std::max(indices.first, indices.second);
  ForRows(picture, [&](std::int32_t y) {
    kernels::ThresholdToBits(from.Row(y), to.Row(y), static_cast<std::size_t>(picture.Width()), greater);
  });
  if (indices.first == greater) ExchangeIndices(result);
  result.SetPalette({first, second});
  return result;
}

// A picture of 8 bits with its own colours in fewer bits, in the order in which they first occur; empty if they do not
// fit.
Bitmap WithOwnColours(const Bitmap& picture, int bitsPerPixel) {
  if (bitsPerPixel == 1) {
    const FirstLevels indices = FirstLevelsOf(picture);
    if (indices.count != FirstLevels::Many) return WithOwnIndices(picture, indices);
  }
  std::array<Rgb, 256> colours{};
  std::ranges::copy(picture.Palette(), colours.begin());
  std::array<bool, 256> seen{};
  NewIndices indices{};
  std::vector<Rgb> palette;
  const auto see = [&](std::uint8_t index) {
    if (seen[index]) return true;
    seen[index] = true;
    const auto known = std::ranges::find(palette, colours[index]);
    if (known == palette.end() && palette.size() == std::size_t{1} << static_cast<unsigned>(bitsPerPixel)) return false;
    indices[index] = static_cast<std::uint8_t>(known - palette.begin());
    if (known == palette.end()) palette.push_back(colours[index]);
    return true;
  };
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    const auto row = picture.Row(y);
    std::array<std::uint8_t, 8> last{};
    std::array<std::uint8_t, 8> next{};
    std::size_t x = 0;
    for (; x + next.size() <= row.size(); x += next.size()) {
      std::memcpy(next.data(), row.data() + x, next.size());
      // Most of a page are runs of one colour.
      if (x != 0 && next == last) continue;
      if (!std::ranges::all_of(next, see)) return {};
      last = next;
    }
    if (!std::all_of(row.begin() + static_cast<std::ptrdiff_t>(x), row.end(), see)) return {};
  }
  Bitmap result = Like(picture, bitsPerPixel);
  result.SetPalette(std::move(palette));
  ChangeIndices(picture, indices, result);
  return result;
}

// Counts the colours of a picture of 24 bits, on several threads. Of a large one a quarter of the pixels are counted:
// runs of a row, and one of any four neighbours in a column, so that thin lines count, too. Returns true if all pixels
// were counted.
bool CountRows(const Bitmap& picture, MedianCutQuantizer& quantizer) {
  const auto width = static_cast<std::size_t>(picture.Width());
  const auto bands = CutIntoRowBands(picture.Height(), BytesOf(picture));
  constexpr std::size_t large = std::size_t{1} << 20U;
  constexpr std::size_t someOfRow = 64;
  constexpr std::array<std::size_t, 4> runs{0, 2, 1, 3};
  const bool isLarge = width * static_cast<std::size_t>(picture.Height()) >= large;
  const std::size_t run = isLarge ? someOfRow : width;
  struct Work {
    ColourHistogram::BinnedRow row;
    ColourHistogram::Counter counter;
  };
  std::vector<Work> works;
  works.reserve(ThreadsFor(bands.size()));
  while (works.size() < ThreadsFor(bands.size())) {
    works.push_back({ColourHistogram::BinnedRow(width), ColourHistogram::Counter(quantizer.Histogram())});
  }
  std::atomic<std::size_t> next{0};
  ParallelFor(works.size(), [&](std::size_t own) {
    Work& work = works[own];
    for (std::size_t i = next++; i < bands.size(); i = next++) {
      for (std::int32_t y = bands[i].begin; y < bands[i].end; ++y) {
        const std::uint8_t* const row = picture.Row(y).data();
        const std::size_t first = isLarge ? runs[static_cast<std::size_t>(y) % runs.size()] * run : 0;
        for (std::size_t x = first; x < width; x += runs.size() * run) {
          const std::size_t pixels = std::min(run, width - x);
          work.row.Split(row + 3 * x, pixels);
          work.counter.Add(work.row, pixels);
        }
      }
    }
    work.counter.Finish();
  });
  return !isLarge;
}

// Writes the palette indices of a picture of 24 bits whose palette is a median cut.
void IndexRows(const Bitmap& picture, const MedianCutQuantizer& quantizer, Bitmap& result) {
  const auto width = static_cast<std::size_t>(picture.Width());
  const auto bands = CutIntoRowBands(picture.Height(), BytesOf(picture));
  std::vector<std::vector<std::uint16_t>> bins(bands.size(), std::vector<std::uint16_t>(width));
  const Pixels to(result);
  ParallelFor(bands.size(), [&](std::size_t i) {
    for (std::int32_t y = bands[i].begin; y < bands[i].end; ++y) {
      if (y + 1 < bands[i].end) PrefetchRow(picture.Row(y + 1).data(), 3 * width);
      ColourHistogram::FindBins(picture.Row(y).data(), bins[i].data(), width);
      quantizer.IndexRow(bins[i].data(), to.Row(y), width);
    }
  });
}

// A picture of 8 bits whose colours are too many for fewer bits: only how often each index occurs matters.
Bitmap ToFewerColours(const Bitmap& picture, int bitsPerPixel) {
  std::array<Rgb, 256> colours{};
  std::ranges::copy(picture.Palette(), colours.begin());
  LevelCounter counter;
  for (std::int32_t y = 0; y < picture.Height(); ++y) counter.Add(picture.Row(y).data(), picture.RowBytes());
  LevelHistogram counts{};
  counter.AddTo(counts);
  MedianCutQuantizer quantizer(std::size_t{1} << static_cast<unsigned>(bitsPerPixel));
  for (std::size_t i = 0; i < counts.size(); ++i) {
    if (counts[i] != 0) quantizer.Count(colours[i], counts[i]);
  }
  quantizer.Quantize();
  NewIndices indices{};
  for (std::size_t i = 0; i < counts.size(); ++i) {
    if (counts[i] != 0) indices[i] = quantizer.IndexOf(colours[i]);
  }
  Bitmap result = Like(picture, bitsPerPixel);
  result.SetPalette(quantizer.Palette());
  ChangeIndices(picture, indices, result);
  return result;
}

Bitmap ToPalette(const Bitmap& picture, int bitsPerPixel) {
  // The tables of colours are large, and the result is of another size.
  FreeSparedBlock();
  if (picture.BitsPerPixel() == 8) {
    Bitmap result = WithOwnColours(picture, bitsPerPixel);
    if (!result.IsEmpty()) return result;
    return bitsPerPixel == 1 ? ToBlackAndWhite(picture) : ToFewerColours(picture, bitsPerPixel);
  }
  MedianCutQuantizer quantizer(std::size_t{1} << bitsPerPixel);
  const bool isPlain = picture.BitsPerPixel() == 24;
  std::int32_t seen = 0;
  // The order of the colours matters only as long as all of them may fit into the palette; if they do not fit into two,
  // nothing about them matters.
  while (seen < picture.Height() && (quantizer.IsExact() || (!isPlain && bitsPerPixel != 1))) {
    ForEachColour(picture, seen++, [&](std::size_t, Rgb colour) {
      if (isPlain) {
        quantizer.See(colour);
      } else {
        quantizer.Count(colour);
      }
    });
  }
  if (bitsPerPixel == 1 && !quantizer.IsExact()) return ToBlackAndWhite(picture);
  const bool areAllCounted = !isPlain || quantizer.IsExact() || CountRows(picture, quantizer);
  quantizer.Quantize();
  if (!areAllCounted) quantizer.FillUncounted();
  if (isPlain && bitsPerPixel == 8 && !quantizer.IsExact()) {
    Bitmap result = Like(picture, bitsPerPixel);
    result.SetPalette(quantizer.Palette());
    IndexRows(picture, quantizer, result);
    return result;
  }
  Bitmap result = ZeroedLike(picture, bitsPerPixel);
  result.SetPalette(quantizer.Palette());
  ForRows(picture, [&](std::int32_t y) {
    const auto to = result.MutableRow(y);
    Rgb last{};
    unsigned index = 0;
    ForEachColour(picture, y, [&](std::size_t x, Rgb colour) {
      if (x == 0 || !(colour == last)) index = quantizer.IndexOf(colour);
      last = colour;
      PutIndex(to, x, index, bitsPerPixel);
    });
  });
  return result;
}

}  // namespace

Bitmap ToDepth(const Bitmap& picture, int bitsPerPixel) {
  if (picture.IsEmpty()) Raise(ErrorNumber::ObjectVariableNotSet);
  const int depth = picture.BitsPerPixel();
  if (depth == bitsPerPixel) return picture;
  if (bitsPerPixel == 24 || bitsPerPixel == 32) return ToColours(picture, bitsPerPixel);
  if (bitsPerPixel != 1 && bitsPerPixel != 4 && bitsPerPixel != 8) Raise(ErrorNumber::InvalidProcedureCall);
  return depth < bitsPerPixel ? IndicesToMoreBits(picture, bitsPerPixel) : ToPalette(picture, bitsPerPixel);
}

bool HasGreyPalette(const Bitmap& picture) {
  return picture.BitsPerPixel() <= 8 &&
         std::ranges::all_of(picture.Palette(), [](const Rgb& c) { return c.red == c.green && c.green == c.blue; });
}

Bitmap ToGreyLevels(const Bitmap& picture) {
  Bitmap result = Like(picture, 8);
  ForRows(picture, [&](std::int32_t y) {
    const auto to = result.MutableRow(y);
    ForEachColour(picture, y, [&](std::size_t x, Rgb colour) { to[x] = colour.red; });
  });
  return result;
}

}  // namespace kw
