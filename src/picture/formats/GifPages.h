#pragma once

#include <deque>
#include <optional>
#include <string>

#include "picture/PictureFormat.h"
#include "picture/formats/GifCanvas.h"

namespace kw {

// The pages of a GIF: each frame drawn over all before it.
//
// Who walks forward draws each frame once. Who walks from the last page to the first draws each at most twice: on the
// way to the last page, what every `span`-th frame left is kept, coded, and from there on the pages in between are
// drawn again and kept as they are.
class GifPages {
public:
  // `framePlaces`: where the records of each frame begin.
  GifPages(std::vector<std::uint64_t> framePlaces, const ReadLimits& readLimits)
      : places(std::move(framePlaces)), limits(readLimits) {}

  // `file` has the same bytes each time; `page` counts from 1. Raises DiskFull where what has to be kept takes more
  // memory than a page may.
  Bitmap Read(Stream& file, std::int32_t page, std::string& warning);

private:
  Bitmap ReadDrawn(Stream& file, std::size_t wanted);
  void DecodeFirst(Stream& file);
  void ChooseSpan(const GifDecoder& decoder);
  GifCanvas CanvasBehind(std::size_t frames, const GifDecoder& decoder);
  void Keep(const GifCanvas& behind);

  std::vector<std::uint64_t> places;
  ReadLimits limits;
  // The first frame, where it covers the whole page, with its own palette.
  Bitmap first;
  GifFrame firstFrame;
  std::string firstWarning;
  bool isFirstKnown = false;
  bool isFirstEmpty = false;
  // Frames between two grounds that are kept; grounds[i] is what is drawn on behind frame (i + 1) * span.
  std::size_t span = 0;
  std::deque<MemoryFile> grounds;
  std::uint64_t groundBytes = 0;
  // The first `drawn` frames.
  std::optional<GifCanvas> canvas;
  std::size_t drawn = 0;
  // The pages from `firstKept` on.
  std::vector<Bitmap> kept;
  std::size_t firstKept = 1;
  // The first page that a frame with missing rows was drawn on, as far as is known.
  std::size_t firstDamaged = MostPages + 1;
};

}  // namespace kw
