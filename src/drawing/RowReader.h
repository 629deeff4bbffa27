#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "components/base/Bitmap.h"
#include "drawing/Blend.h"
#include "drawing/DrawOptions.h"

namespace kw {

// Reads parts of a picture's rows, of any depth, as frame-buffer pixels with straight alpha in the highest byte, and
// applies the draw options. The picture must outlive the reader.
class RowReader {
public:
  RowReader(const Bitmap& source, const DrawOptions& options);

  // Whether every pixel is opaque; then the highest byte of the pixels is 0, as in a frame buffer.
  bool IsOpaque() const { return opaque == 0; }
  // Whether every pixel is either opaque or fully transparent (then all its bytes are 0).
  bool IsMasked() const { return !IsOpaque() && picture.BitsPerPixel() < 32; }

  // Reads to.size() pixels of row `y` from `x` on; all must be inside the picture.
  void Read(std::int32_t x, std::int32_t y, std::span<std::uint32_t> to) const;

private:
  // Applies the draw options.
  void Finish(std::span<std::uint32_t> pixels) const;
  void ReadBits(std::span<const std::uint8_t> row, std::size_t first, std::span<std::uint32_t> to) const;

  const Bitmap& picture;
  bool isLightened;
  bool hasKey;
  std::uint32_t key = 0;
  std::uint32_t opaque = 0;  // alpha byte of an opaque pixel
  std::array<std::uint32_t, 256> colours = {};
};

}  // namespace kw
