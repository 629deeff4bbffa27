#pragma once

#include <deque>
#include <optional>
#include <string>

#include "picture/PictureFormat.h"
#include "picture/formats/GifCanvas.h"

namespace kw {

// The pages of a GIF: each frame drawn over all before it.
//
// Reading the pages forward draws each frame once. Reading them backward draws each at most twice: on the way to the
// last page, the background after every `span`-th frame is kept in coded form; later the pages from one background to
// the next are drawn again and kept as they are.
class GifPages {
public:
  // `framePlaces`: the positions of each frame's records in the file.
  GifPages(std::vector<std::uint64_t> framePlaces, const ReadLimits& readLimits)
      : places(std::move(framePlaces)), limits(readLimits) {}

  // `file` has the same bytes each time; `page` counts from 1. Raises DiskFull if the backgrounds take more memory than
  // a page may.
  Bitmap Read(Stream& file, std::int32_t page, std::string& warning);

private:
  Bitmap ReadDrawn(Stream& file, std::size_t wanted);
  void DecodeFirst(Stream& file);
  void ChooseSpan(const GifDecoder& decoder);
  GifCanvas CanvasBehind(std::size_t frames, const GifDecoder& decoder);
  void Keep(const GifCanvas& behind);

  std::vector<std::uint64_t> places;
  ReadLimits limits;
  // The first frame with its own palette, if it covers the whole page.
  Bitmap first;
  GifFrame firstFrame;
  std::string firstWarning;
  bool isFirstKnown = false;
  bool isFirstEmpty = false;
  // The number of frames from one kept background to the next; backgrounds[i] follows frame (i + 1) * span.
  std::size_t span = 0;
  std::deque<MemoryFile> backgrounds;
  std::uint64_t backgroundBytes = 0;
  // The first `drawn` frames, drawn.
  std::optional<GifCanvas> canvas;
  std::size_t drawn = 0;
  // The pages from `firstKept` on.
  std::vector<Bitmap> kept;
  std::size_t firstKept = 1;
  // The first page that has a frame with missing rows, as far as is known.
  std::size_t firstDamaged = MostPages + 1;
};

// Writes a GIF file of one frame, without loss up to 8 bits per pixel; deeper pictures get a palette. If there is
// alpha, pixels that are more transparent than opaque get the transparent colour.
void WriteGif(const Bitmap& picture, Stream& to, const WriteOptions& options);

}  // namespace kw
