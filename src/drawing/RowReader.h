#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "components/base/Bitmap.h"
#include "drawing/Blend.h"
#include "drawing/DrawOptions.h"

namespace kw {

// Reads pieces of a picture's rows, of any depth, as frame-buffer pixels with straight alpha in the highest byte; the
// look is applied. The picture must outlive the reader.
class RowReader {
public:
  RowReader(const Bitmap& source, const DrawOptions& options);

  // Whether every pixel is opaque; pixels then come with nothing in the highest byte, as a frame buffer holds them.
  bool IsOpaque() const { return opaque == 0; }
  // Whether every pixel is either opaque or wholly transparent (then all its bytes are 0).
  bool IsMasked() const { return !IsOpaque() && picture.BitsPerPixel() < 32; }

  // Pixels from `x` on of row `y`; as many as `to` holds, all inside the picture.
  void Read(std::int32_t x, std::int32_t y, std::span<std::uint32_t> to) const;

private:
  // Applies the look.
  void Finish(std::span<std::uint32_t> pixels) const;
  void ReadBits(std::span<const std::uint8_t> row, std::size_t first, std::span<std::uint32_t> to) const;

  const Bitmap& picture;
  bool isLightened;
  bool hasKey;
  std::uint32_t key = 0;
  std::uint32_t opaque = 0;  // the alpha bits of an opaque pixel
  std::array<std::uint32_t, 256> colours = {};
};

}  // namespace kw
