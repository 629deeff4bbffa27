#include "picture/Signature.h"

#include <algorithm>
#include <array>
#include <span>

#include "picture/Depth.h"
#include "picture/PictureFormat.h"

namespace kw {
namespace {

// Paper is not uniform: a pixel nearly as light as the paper is paper too.
constexpr unsigned PaperSpread = 24;
constexpr unsigned DarkestPaper = 128;

using LumaCounts = std::array<std::uint64_t, 256>;

LumaCounts LumaCountsOf(const Bitmap& picture) {
  LumaCounts counts{};
  const auto width = static_cast<std::size_t>(picture.Width());
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    const auto row = picture.Row(y);
    for (std::size_t x = 0; x < width; ++x) {
      if (picture.BitsPerPixel() == 24) {
        ++counts[Luma({row[x * 3 + 2], row[x * 3 + 1], row[x * 3]})];
      } else {
        const std::size_t index = PaletteIndexAt(row, x, picture.BitsPerPixel());
        ++counts[index < picture.Palette().size() ? Luma(picture.Palette()[index]) : 0];
      }
    }
  }
  return counts;
}

// The new value of each channel value.
std::array<std::uint8_t, 256> Stretch(const LumaCounts& counts) {
  const auto paper = std::max_element(counts.begin() + DarkestPaper, counts.end()) - counts.begin();
  const unsigned white = *std::max_element(counts.begin() + DarkestPaper, counts.end()) == 0
                             ? 255
                             : std::max(DarkestPaper, static_cast<unsigned>(paper) - PaperSpread);
  std::array<std::uint8_t, 256> levels{};
  for (unsigned i = 0; i < levels.size(); ++i) levels[i] = static_cast<std::uint8_t>(std::min(255U, i * 255 / white));
  return levels;
}

// How much darker than white a pixel may be and still count as paper: scanners and lossy files leave such a haze.
constexpr unsigned Haze = 24;

// How much ink covers the paper, 0 to 255. The channel that the ink darkens most tells.
unsigned InkOf(std::span<const std::uint8_t> channels) {
  return 255U - *std::min_element(channels.begin(), channels.end());
}

// The bounds of all ink in a picture of 24 bits; the whole picture if there is none.
struct Bounds {
  std::int32_t left, top, right, bottom;
};

Bounds InkBounds(const Bitmap& picture) {
  Bounds found = {picture.Width(), picture.Height(), 0, 0};
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    const auto row = picture.Row(y);
    for (std::int32_t x = 0; x < picture.Width(); ++x) {
      if (InkOf(row.subspan(static_cast<std::size_t>(x) * 3, 3)) <= Haze) continue;
      found = {std::min(found.left, x), std::min(found.top, y), std::max(found.right, x + 1), y + 1};
    }
  }
  return found.right == 0 ? Bounds{0, 0, picture.Width(), picture.Height()} : found;
}

// Blended with white by its alpha, the pixel shows the scanned colour.
void WriteInk(std::span<const std::uint8_t> scanned, std::span<std::uint8_t> pixel) {
  const unsigned ink = InkOf(scanned);
  if (ink <= Haze) {
    pixel[0] = pixel[1] = pixel[2] = 255;
    pixel[3] = 0;
    return;
  }
  for (std::size_t i = 0; i < 3; ++i) {
    pixel[i] = static_cast<std::uint8_t>(255U - ((255U - scanned[i]) * 255U + ink / 2) / ink);
  }
  pixel[3] = static_cast<std::uint8_t>(ink);
}

}  // namespace

Bitmap WithWhitePaper(const Bitmap& picture) {
  Bitmap result = picture.BitsPerPixel() == 32 ? ToDepth(picture, 24) : picture;
  const auto levels = Stretch(LumaCountsOf(result));
  if (result.BitsPerPixel() <= 8) {
    std::vector<Rgb> palette(result.Palette().begin(), result.Palette().end());
    for (Rgb& entry : palette) entry = {levels[entry.red], levels[entry.green], levels[entry.blue]};
    result.SetPalette(std::move(palette));
    return result;
  }
  for (std::int32_t y = 0; y < result.Height(); ++y) {
    for (std::uint8_t& value : result.MutableRow(y)) value = levels[value];
  }
  return result;
}

Bitmap SignatureInk(const Bitmap& whitePaper) {
  if (whitePaper.IsEmpty()) return {};
  RequireResultFits(PixelMemory(whitePaper.Width(), whitePaper.Height(), 24), {});
  const Bitmap scan = ToDepth(whitePaper, 24);
  const Bounds bounds = InkBounds(scan);
  Bitmap ink(bounds.right - bounds.left, bounds.bottom - bounds.top, 32);
  ink.SetResolution(whitePaper.HorizontalResolution(), whitePaper.VerticalResolution());
  for (std::int32_t y = 0; y < ink.Height(); ++y) {
    const auto from = scan.Row(bounds.top + y).subspan(static_cast<std::size_t>(bounds.left) * 3);
    const auto to = ink.MutableRow(y);
    for (std::size_t x = 0; x < static_cast<std::size_t>(ink.Width()); ++x) {
      WriteInk(from.subspan(x * 3, 3), to.subspan(x * 4, 4));
    }
  }
  return ink;
}

}  // namespace kw
