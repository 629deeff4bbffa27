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

// Iterates over the frames of a file. All operations raise InvalidPicture for damaged data.
class GifDecoder {
public:
  // Starts before the first frame.
  explicit GifDecoder(Stream& stream);
  GifDecoder(const GifDecoder&) = delete;
  GifDecoder& operator=(const GifDecoder&) = delete;
  ~GifDecoder() { DGifCloseFile(codec, nullptr); }

  std::size_t Width() const { return static_cast<std::size_t>(codec->SWidth); }
  std::size_t Height() const { return static_cast<std::size_t>(codec->SHeight); }

  // Between two frames: the position of the next one's records.
  std::uint64_t Place() const { return file.Position(); }
  // Continues at a position that Place() returned for the same file.
  void GoTo(std::uint64_t place);

  // Moves to the next frame; false behind the last.
  bool Next(GifFrame& frame);

  // Goes behind the pixels of the current frame; false if the file ends before they do.
  bool SkipPixels();
  // The same; raises InvalidPicture for an undefined code.
  bool CheckPixels(const GifFrame& frame);

  // Calls take(y, row of palette indices) for each row that can be decoded, in the order of the file. Returns their
  // number.
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
  template <typename Take>
  bool ForCodedPixels(const Take& take);
  void Require(int result) const;
  void ReadExtension(GifFrame& frame);
  void ReadDescription(GifFrame& frame);

  Stream& file;
  GifFileType* codec = nullptr;
};

}  // namespace kw
