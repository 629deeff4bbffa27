#include "picture/Signature.h"

#include <algorithm>
#include <array>

#include "picture/Depth.h"

namespace kw {
namespace {

// Paper is not of one shade: what is nearly as light as the paper is paper too.
constexpr unsigned PaperSpread = 24;
constexpr unsigned DarkestPaper = 128;

using Histogram = std::array<std::uint64_t, 256>;

Histogram BrightnessOf(const Bitmap& picture) {
  Histogram counts{};
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

// What each channel value becomes.
std::array<std::uint8_t, 256> Stretch(const Histogram& counts) {
  const auto paper = std::max_element(counts.begin() + DarkestPaper, counts.end()) - counts.begin();
  const unsigned white = *std::max_element(counts.begin() + DarkestPaper, counts.end()) == 0
                             ? 255
                             : std::max(DarkestPaper, static_cast<unsigned>(paper) - PaperSpread);
  std::array<std::uint8_t, 256> levels{};
  for (unsigned i = 0; i < levels.size(); ++i) levels[i] = static_cast<std::uint8_t>(std::min(255U, i * 255 / white));
  return levels;
}

}  // namespace

Bitmap WithWhitePaper(const Bitmap& picture) {
  Bitmap result = picture.BitsPerPixel() == 32 ? ToDepth(picture, 24) : picture;
  const auto levels = Stretch(BrightnessOf(result));
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

}  // namespace kw
