#include "picture/formats/GifPages.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "components/base/RunTimeError.h"
#include "picture/DamageReport.h"
#include "picture/Depth.h"
#include "picture/LimitedStream.h"
#include "picture/Unreadable.h"
#include "picture/formats/Formats.h"

namespace kw {
namespace {

constexpr const char* CutShort = "The GIF data is damaged or cut short.";
// Memory for drawn pages, unless the number of pages asks for more.
constexpr std::uint64_t KeptBytes = std::uint64_t{64} * 1024 * 1024;

int DepthOf(const ColorMapObject* colours) { return colours->ColorCount <= 2 ? 1 : colours->ColorCount <= 16 ? 4 : 8; }

GifFrame FrameAt(GifDecoder& decoder, std::uint64_t place) {
  GifFrame frame;
  decoder.GoTo(place);
  if (!decoder.Next(frame)) RaiseUnreadable("The GIF is cut short.");
  return frame;
}

bool Covers(const GifFrame& frame, const GifDecoder& decoder) {
  return frame.left == 0 && frame.top == 0 && frame.width == decoder.Width() && frame.height == decoder.Height();
}

}  // namespace

Bitmap GifPages::Read(Stream& file, std::int32_t page, std::string& warning) {
  warning.clear();
  if (!isFirstKnown) DecodeFirst(file);
  if (page == 1 && isFirstEmpty) RaiseUnreadable(CutShort);
  if (page == 1 && !first.IsEmpty()) {
    warning = firstWarning;
    return first;
  }
  Bitmap picture = ReadDrawn(file, static_cast<std::size_t>(page));
  if (static_cast<std::size_t>(page) >= firstDamaged) {
    warning = "A frame of the GIF up to this page is damaged or cut short.";
  }
  return picture;
}

// A frame that covers the page keeps its palette; its transparent colour shows white.
void GifPages::DecodeFirst(Stream& file) {
  GifDecoder decoder(file);
  firstFrame = FrameAt(decoder, places.front());
  if (Covers(firstFrame, decoder)) {
    const ColorMapObject* colours = decoder.Colours();
    const int depth = DepthOf(colours);
    std::vector<Rgb> palette;
    for (std::size_t i = 0; i < static_cast<std::size_t>(colours->ColorCount); ++i) {
      palette.push_back(static_cast<int>(i) == firstFrame.transparent ? GifPaper : GifColourOf(colours, i));
    }
    Bitmap page = NewPage(firstFrame.width, firstFrame.height, depth, limits);
    page.SetPalette(std::move(palette));
    const auto bits = static_cast<unsigned>(depth);
    const unsigned mask = (1U << bits) - 1;
    std::vector<bool> present(firstFrame.height);
    const auto take = [&](std::size_t y, const std::vector<GifPixelType>& indices) {
      present[y] = true;
      const auto row = page.MutableRow(static_cast<std::int32_t>(y));
      unsigned gathered = 0;
      for (std::size_t x = 0; x < row.size() * 8 / bits; ++x) {
        gathered = gathered << bits | (x < indices.size() ? indices[x] & mask : 0);
        row[x * bits / 8] = static_cast<std::uint8_t>(gathered);
      }
    };
    const std::size_t rows = decoder.ReadPixels(firstFrame, take);
    isFirstEmpty = rows == 0;
    if (rows < firstFrame.height) firstDamaged = 1;
    DamageReport damage;
    for (std::int32_t y = 0; y < page.Height(); ++y) {
      if (!present[static_cast<std::size_t>(y)]) damage.MissRows(page, y, y + 1);
    }
    firstWarning = damage.Finish(page, CutShort);
    first = std::move(page);
  }
  isFirstKnown = true;
}

// Balances the memory for pages and for backgrounds.
void GifPages::ChooseSpan(const GifDecoder& decoder) {
  const std::uint64_t page =
      PixelMemory(static_cast<std::int32_t>(decoder.Width()), static_cast<std::int32_t>(decoder.Height()), 24);
  const auto even = static_cast<std::uint64_t>(std::ceil(std::sqrt(static_cast<double>(places.size()))));
  const std::uint64_t most = limits.pageMemory / 2 / page;
  span = static_cast<std::size_t>(std::max<std::uint64_t>(1, std::min(most, std::max(even, KeptBytes / page))));
}

GifCanvas GifPages::CanvasBehind(std::size_t frames, const GifDecoder& decoder) {
  if (frames != 0) {
    MemoryReader background(backgrounds[frames / span - 1].Bytes());
    std::string none;
    return GifCanvas(TiffFormat.open(background, limits)->Read(background, 1, none));
  }
  Bitmap page = NewUnfilledPage(decoder.Width(), decoder.Height(), 24, limits);
  for (std::int32_t y = 0; y < page.Height(); ++y) std::ranges::fill(page.MutableRow(y), std::uint8_t{255});
  return GifCanvas(std::move(page));
}

void GifPages::Keep(const GifCanvas& behind) {
  LimitedStream limited(backgrounds.emplace_back(), limits.pageMemory - backgroundBytes);
  try {
    TiffFormat.write(behind.Background(), limited, {});
  } catch (...) {
    backgrounds.clear();
    backgroundBytes = 0;
    limited.RaiseIfFull();
    throw;
  }
  backgroundBytes += limited.Size();
}

Bitmap GifPages::ReadDrawn(Stream& file, std::size_t wanted) {
  if (wanted >= firstKept && wanted < firstKept + kept.size()) return kept[wanted - firstKept];
  GifDecoder decoder(file);
  if (span == 0) ChooseSpan(decoder);
  const std::size_t begin = (wanted - 1) / span * span;
  const std::size_t reached = std::min(begin / span, backgrounds.size()) * span;
  // If anything fails on the way, the next call begins at a kept background.
  std::optional<GifCanvas> current = std::exchange(canvas, std::nullopt);
  std::size_t frames = drawn;
  if (!current || frames >= wanted || frames < reached) {
    current.emplace(CanvasBehind(reached, decoder));
    frames = reached;
  }
  const bool jumps = wanted > frames + 1;
  for (; frames < wanted; ++frames) {
    if (frames % span == 0) {
      kept.clear();
      firstKept = frames + 1;
      if (jumps && frames != 0 && backgrounds.size() + 1 == frames / span) Keep(*current);
    }
    if (frames == 0 && !first.IsEmpty()) {
      current->Cover(ToDepth(first, 24), firstFrame);
    } else {
      const GifFrame frame = FrameAt(decoder, places[frames]);
      if (!current->Draw(decoder, frame)) firstDamaged = std::min(firstDamaged, frames + 1);
    }
    if (frames >= begin) kept.push_back(current->Picture());
  }
  canvas = std::move(current);
  drawn = frames;
  return kept.back();
}

}  // namespace kw
