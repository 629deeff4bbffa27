#pragma once

#include <cstdint>
#include <vector>

#include <gif_lib.h>

#include "picture/Stream.h"

namespace kw {

struct GifFrame {
  std::size_t left = 0;
  std::size_t top = 0;
  std::size_t width = 0;
  std::size_t height = 0;
  bool interlaced = false;
  int transparent = NO_TRANSPARENT_COLOR;
  int disposal = DISPOSAL_UNSPECIFIED;
};

// A pass through the frames of a file. Everything raises InvalidPicture for damaged data.
class GifDecoder {
public:
  // Begins with the first frame.
  explicit GifDecoder(Stream& stream);
  GifDecoder(const GifDecoder&) = delete;
  GifDecoder& operator=(const GifDecoder&) = delete;
  ~GifDecoder() { DGifCloseFile(codec, nullptr); }

  std::size_t Width() const { return static_cast<std::size_t>(codec->SWidth); }
  std::size_t Height() const { return static_cast<std::size_t>(codec->SHeight); }

  // Between two frames: where the records of the next one begin.
  std::uint64_t Place() const { return file.Position(); }
  // Goes on at a place where a pass through the same file was.
  void GoTo(std::uint64_t place);

  // Goes on to the next frame; false behind the last.
  bool Next(GifFrame& frame);

  // False where the file ends before the pixels do. Raises InvalidPicture for a code out of range.
  bool SkipPixels(const GifFrame& frame);

  // Calls take(y, row of palette indices) for each row, in the order of the file, as far as the rows can be decoded.
  // Returns how many those are.
  template <typename Take>
  std::size_t ReadPixels(const GifFrame& frame, const Take& take) {
    std::vector<GifPixelType> row(frame.width);
    std::size_t count = 0;
    bool good = true;
    const auto read = [&](std::size_t first, std::size_t step) {
      for (std::size_t y = first; y < frame.height && good; y += step) {
        good = DGifGetLine(codec, row.data(), static_cast<int>(row.size())) != GIF_ERROR;
        if (!good) break;
        ++count;
        take(y, row);
      }
    };
    if (frame.interlaced) {
      read(0, 8);
      read(4, 8);
      read(2, 4);
      read(1, 2);
    } else {
      read(0, 1);
    }
    return count;
  }

  // The palette of the current frame.
  const ColorMapObject* Colours() const;

private:
  void Require(int result) const;
  void ReadExtension(GifFrame& frame);
  void ReadDescription(GifFrame& frame);

  Stream& file;
  GifFileType* codec = nullptr;
};

}  // namespace kw
