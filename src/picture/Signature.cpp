#include "picture/Signature.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <utility>
#include <vector>

#include "picture/Depth.h"
#include "picture/PictureFormat.h"
#include "picture/effects/Kernels.h"
#include "picture/effects/LumaHistogram.h"
#include "picture/effects/ParallelRows.h"
#include "picture/effects/Pixels.h"

namespace kw {
namespace {

// Paper is not uniform: a pixel nearly as light as the paper is paper too.
constexpr unsigned PaperSpread = 24;
constexpr unsigned DarkestPaper = 128;

// Gives the rows of a picture to several threads; the results of their bands are joined in any order.
template <typename Result, typename Work, typename Join>
Result OverRows(const Bitmap& picture, Result result, const Work& work, const Join& join) {
  std::mutex lock;
  const Result begin = result;
  ParallelForRows(picture.Height(), BytesOf(picture), [&](RowBand band) {
    Result own = begin;
    for (std::int32_t y = band.begin; y < band.end; ++y) work(y, own);
    const std::scoped_lock joining(lock);
    join(result, own);
  });
  return result;
}

// The new value of each channel value.
std::array<std::uint8_t, 256> Stretch(const LevelHistogram& counts) {
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
unsigned InkOf(const std::uint8_t* channels) { return 255U - std::min({channels[0], channels[1], channels[2]}); }

// The bounds of all ink in a picture of 24 bits; the whole picture if there is none.
struct Bounds {
  std::int32_t left, top, right, bottom;
};

Bounds InkBounds(const Bitmap& picture) {
  const auto searchRow = [&](std::int32_t y, Bounds& found) {
    const std::uint8_t* const row = picture.Row(y).data();
    const auto isInk = [row](std::int32_t x) { return InkOf(row + static_cast<std::ptrdiff_t>(x) * 3) > Haze; };
    std::int32_t left = 0;
    while (left < picture.Width() && !isInk(left)) ++left;
    if (left == picture.Width()) return;
    std::int32_t right = picture.Width();
    while (right > found.right && !isInk(right - 1)) --right;
    found = {std::min(found.left, left), std::min(found.top, y), std::max(found.right, right), y + 1};
  };
  const Bounds none = {picture.Width(), picture.Height(), 0, 0};
  const Bounds found = OverRows(picture, none, searchRow, [](Bounds& all, const Bounds& own) {
    all = {std::min(all.left, own.left), std::min(all.top, own.top), std::max(all.right, own.right),
           std::max(all.bottom, own.bottom)};
  });
  return found.right == 0 ? Bounds{0, 0, picture.Width(), picture.Height()} : found;
}

// Divides numbers below 2^16 by each amount of ink: n * 2^24 / ink, its second factor rounded up, is exact.
constexpr unsigned InkShift = 24;
constexpr auto InkReciprocals = [] {
  std::array<std::uint32_t, 256> reciprocals{};
  for (std::uint32_t ink = 1; ink < reciprocals.size(); ++ink) {
    reciprocals[ink] = ((1U << InkShift) + ink - 1) / ink;
  }
  return reciprocals;
}();

// Blended with white by its alpha, the pixel shows the scanned colour.
void WriteInk(const std::uint8_t* scanned, std::uint8_t* pixel) {
  const unsigned ink = InkOf(scanned);
  if (ink <= Haze) {
    pixel[0] = pixel[1] = pixel[2] = 255;
    pixel[3] = 0;
    return;
  }
  const std::uint64_t reciprocal = InkReciprocals[ink];
  for (std::size_t i = 0; i < 3; ++i) {
    const unsigned dividend = (255U - scanned[i]) * 255U + ink / 2;
    pixel[i] = static_cast<std::uint8_t>(255U - (dividend * reciprocal >> InkShift));
  }
  pixel[3] = static_cast<std::uint8_t>(ink);
}

void Whiten(Bitmap& picture) {
  const auto levels = Stretch(LumaHistogramOf(picture));
  if (picture.BitsPerPixel() <= 8) {
    std::vector<Rgb> palette(picture.Palette().begin(), picture.Palette().end());
    for (Rgb& entry : palette) entry = {levels[entry.red], levels[entry.green], levels[entry.blue]};
    picture.SetPalette(std::move(palette));
    return;
  }
  const Pixels pixels(picture);
  const std::size_t rowBytes = picture.RowBytes();
  ParallelForRows(picture.Height(), BytesOf(picture), [&](RowBand band) {
    for (std::int32_t y = band.begin; y < band.end; ++y) kernels::ApplyLut(pixels.Row(y), rowBytes, levels);
  });
}

}  // namespace

void WhitenPaper(Bitmap& picture) {
  if (picture.BitsPerPixel() != 32) return Whiten(picture);
  Bitmap colours = ToDepth(picture, 24);
  Whiten(colours);
  picture = std::move(colours);
}

Bitmap SignatureInk(const Bitmap& whitePaper) {
  if (whitePaper.IsEmpty()) return {};
  RequireResultFits(PixelMemory(whitePaper.Width(), whitePaper.Height(), 24), {});
  const Bitmap scan = ToDepth(whitePaper, 24);
  const Bounds bounds = InkBounds(scan);
  Bitmap ink = Bitmap::Unfilled(bounds.right - bounds.left, bounds.bottom - bounds.top, 32);
  ink.SetResolution(whitePaper.HorizontalResolution(), whitePaper.VerticalResolution());
  const Pixels pixels(ink);
  ParallelForRows(ink.Height(), BytesOf(ink), [&](RowBand band) {
    for (std::int32_t y = band.begin; y < band.end; ++y) {
      const std::uint8_t* const from = scan.Row(bounds.top + y).data() + static_cast<std::size_t>(bounds.left) * 3;
      std::uint8_t* const to = pixels.Row(y);
      for (std::size_t x = 0; x < static_cast<std::size_t>(ink.Width()); ++x) WriteInk(from + x * 3, to + x * 4);
    }
  });
  return ink;
}

}  // namespace kw
