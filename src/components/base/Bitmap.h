#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace kw {

// A palette entry or a single pixel's colour.
struct Rgb {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  friend bool operator==(const Rgb&, const Rgb&) = default;
};

// The pixels of a picture: a value that is cheap to copy (the pixels are shared) and copied when it is written to.
//
// Depths: 1, 4 and 8 bits per pixel index a palette (the leftmost pixel in the most significant bits), 24 is blue,
// green, red and 32 is blue, green, red, alpha (straight), one byte each. Rows run from the top downward. A row begins
// at a multiple of RowAlignment bytes; bytes behind the last pixel are unspecified padding.
class Bitmap {
public:
  static constexpr std::size_t RowAlignment = 64;

  // No picture at all ("is nothing").
  Bitmap() = default;
  // A black picture (all bytes zero); a depth up to 8 gets a grey ramp as its palette (0 black, last white).
  // Raises InvalidProcedureCall for a size below 1 or a depth not named above, OutOfMemory if the pixels do not fit.
  Bitmap(std::int32_t width, std::int32_t height, int bitsPerPixel);  // NOLINT(readability-*)
  // As above, but the pixels are uninitialised. For callers that overwrite every pixel.
  static Bitmap Unfilled(std::int32_t width, std::int32_t height, int bitsPerPixel);

  bool IsEmpty() const { return pixels == nullptr; }
  std::int32_t Width() const { return width; }
  std::int32_t Height() const { return height; }
  int BitsPerPixel() const { return bitsPerPixel; }
  // Bytes from one row to the next.
  std::size_t Stride() const { return stride; }
  // Bytes of a row that hold pixels.
  std::size_t RowBytes() const;

  // Dots per inch; 0 if the source does not say.
  double HorizontalResolution() const { return horizontalResolution; }
  double VerticalResolution() const { return verticalResolution; }
  void SetResolution(double horizontal, double vertical);

  // Empty for 24 and 32 bits; else at most 2^depth entries. An index past the end is black.
  std::span<const Rgb> Palette() const { return palette; }
  // Raises InvalidProcedureCall for more entries than that.
  void SetPalette(std::vector<Rgb> entries);

  // The RowBytes() bytes of row y (0 to Height() - 1; checked, SubscriptOutOfRange).
  std::span<const std::uint8_t> Row(std::int32_t y) const;
  // The same, to write; unshares the pixels first.
  std::span<std::uint8_t> MutableRow(std::int32_t y);

  // The colour of one pixel, whatever the depth (alpha left out). For tests and the colour picker, not for loops.
  Rgb PixelAt(std::int32_t x, std::int32_t y) const;

  // True if both show the same size, depth, palette and pixels (resolution and padding left out).
  friend bool SamePicture(const Bitmap& a, const Bitmap& b);
  // True if another picture has the same pixels in memory, so that the first write copies them.
  bool IsShared() const { return pixels.use_count() > 1; }
  // True if both are copies of one picture whose pixels nobody has changed since; also if both are empty.
  bool SharesPixelsWith(const Bitmap& other) const { return pixels == other.pixels; }

private:
  enum class Pixels { Zero, Any };
  Bitmap(std::int32_t width, std::int32_t height, int bitsPerPixel, Pixels initial);  // NOLINT(readability-*)
  void Unshare();

  std::int32_t width = 0;
  std::int32_t height = 0;
  int bitsPerPixel = 0;
  std::size_t stride = 0;
  double horizontalResolution = 0;
  double verticalResolution = 0;
  std::vector<Rgb> palette;
  std::shared_ptr<std::uint8_t[]> pixels;
};

bool SamePicture(const Bitmap& a, const Bitmap& b);

// Bytes of one row of `width` pixels without padding.
std::size_t PackedRowBytes(std::int32_t width, int bitsPerPixel);

// Bytes that the pixels of a picture of that size take, row padding included. Sizes from 0 up never overflow.
std::uint64_t PixelMemory(std::int32_t width, std::int32_t height, int bitsPerPixel);

// The palette index of pixel `x` in a row of depth 1, 4 or 8. The caller keeps x inside the row.
std::uint8_t PaletteIndexAt(std::span<const std::uint8_t> row, std::size_t x, int bitsPerPixel);

}  // namespace kw
