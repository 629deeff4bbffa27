#include "components/base/Bitmap.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "components/base/PixelBlock.h"
#include "components/base/RowPadding.h"
#include "components/base/RunTimeError.h"

namespace kw {
namespace {

bool IsDepth(int bitsPerPixel) {
  return bitsPerPixel == 1 || bitsPerPixel == 4 || bitsPerPixel == 8 || bitsPerPixel == 24 || bitsPerPixel == 32;
}

std::vector<Rgb> GreyRamp(int bitsPerPixel) {
  if (bitsPerPixel > 8) return {};
  const unsigned last = (1U << static_cast<unsigned>(bitsPerPixel)) - 1;
  std::vector<Rgb> ramp;
  ramp.reserve(last + 1);
  for (unsigned i = 0; i <= last; ++i) {
    const auto level = static_cast<std::uint8_t>(i * 255U / last);
    ramp.push_back({level, level, level});
  }
  return ramp;
}

constexpr std::uint8_t PaddingNoise = 0xA5;

// Rows that begin at a multiple of the row alignment, zeroed if that is wanted. Where the padding is forbidden, it also
// has another value than is usual, so that a result that depends on it differs.
std::shared_ptr<std::uint8_t[]> AllocatePixels(std::size_t bytes, std::size_t stride, std::size_t rowBytes,
                                               bool zeroed) {
  if (bytes > std::numeric_limits<std::size_t>::max() - Bitmap::RowAlignment) Raise(ErrorNumber::OutOfMemory);
  const std::size_t all = bytes + Bitmap::RowAlignment;
  const PixelBlock block = zeroed ? TakeZeroedPixelBlock(all) : TakePixelBlock(all);
  if (block.begin == nullptr) Raise(ErrorNumber::OutOfMemory);
  const std::size_t excess = reinterpret_cast<std::uintptr_t>(block.begin) % Bitmap::RowAlignment;
  auto* aligned = static_cast<std::uint8_t*>(block.begin) + (excess == 0 ? 0 : Bitmap::RowAlignment - excess);
  if constexpr (ForbidsPadding) {
    const std::size_t height = bytes / stride;
    for (std::size_t y = 0; y < height; ++y) {
      std::memset(aligned + y * stride + rowBytes, PaddingNoise, stride - rowBytes);
    }
    ForbidPadding({aligned, stride, rowBytes, height});
    const auto before = static_cast<std::size_t>(aligned - static_cast<std::uint8_t*>(block.begin));
    ForbidBytes(block.begin, before);
    ForbidBytes(aligned + bytes, block.bytes - before - bytes);
  }
  return {aligned, [block](std::uint8_t*) { GiveBack(block); }};
}

}  // namespace

std::size_t PackedRowBytes(std::int32_t width, int bitsPerPixel) {
  const auto pixels = static_cast<std::size_t>(width);
  if (bitsPerPixel >= 8) return pixels * static_cast<std::size_t>(bitsPerPixel / 8);
  const auto perByte = static_cast<std::size_t>(8 / bitsPerPixel);
  return (pixels + perByte - 1) / perByte;
}

std::uint64_t PixelMemory(std::int32_t width, std::int32_t height, int bitsPerPixel) {
  const std::uint64_t bits = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(bitsPerPixel);
  constexpr std::uint64_t rowBits = Bitmap::RowAlignment * 8;
  return (bits + rowBits - 1) / rowBits * Bitmap::RowAlignment * static_cast<std::uint64_t>(height);
}

Bitmap::Bitmap(std::int32_t pixelWidth, std::int32_t pixelHeight, int depth)
    : Bitmap(pixelWidth, pixelHeight, depth, Pixels::Zero) {}

Bitmap Bitmap::Unfilled(std::int32_t width, std::int32_t height, int bitsPerPixel) {
  return {width, height, bitsPerPixel, Pixels::Any};
}

Bitmap::Bitmap(std::int32_t pixelWidth, std::int32_t pixelHeight, int depth, Pixels initial)
    : width(pixelWidth), height(pixelHeight), bitsPerPixel(depth) {
  if (width < 1 || height < 1 || !IsDepth(depth)) Raise(ErrorNumber::InvalidProcedureCall);
  const std::uint64_t bytes = PixelMemory(width, height, depth);
  if (bytes > std::numeric_limits<std::size_t>::max() / 2) Raise(ErrorNumber::OutOfMemory);
  stride = static_cast<std::size_t>(bytes) / static_cast<std::size_t>(height);
  palette = GreyRamp(depth);
  pixels =
      AllocatePixels(static_cast<std::size_t>(bytes), stride, PackedRowBytes(width, depth), initial == Pixels::Zero);
}

std::size_t Bitmap::RowBytes() const { return IsEmpty() ? 0 : PackedRowBytes(width, bitsPerPixel); }

void Bitmap::SetResolution(double horizontal, double vertical) {
  horizontalResolution = horizontal;
  verticalResolution = vertical;
}

void Bitmap::SetPalette(std::vector<Rgb> entries) {
  const std::size_t most = bitsPerPixel >= 1 && bitsPerPixel <= 8 ? std::size_t{1} << bitsPerPixel : 0;
  if (entries.size() > most) Raise(ErrorNumber::InvalidProcedureCall);
  palette = std::move(entries);
}

std::span<const std::uint8_t> Bitmap::Row(std::int32_t y) const {
  if (y < 0 || y >= height) Raise(ErrorNumber::SubscriptOutOfRange);
  return {pixels.get() + static_cast<std::size_t>(y) * stride, RowBytes()};
}

std::span<std::uint8_t> Bitmap::MutableRow(std::int32_t y) {
  if (y < 0 || y >= height) Raise(ErrorNumber::SubscriptOutOfRange);
  Unshare();
  return {pixels.get() + static_cast<std::size_t>(y) * stride, RowBytes()};
}

void Bitmap::Unshare() {
  if (pixels.use_count() == 1) return;
  const std::size_t bytes = stride * static_cast<std::size_t>(height);
  auto copy = AllocatePixels(bytes, stride, PackedRowBytes(width, bitsPerPixel), false);
  if constexpr (ForbidsPadding) {
    for (std::size_t at = 0; at < bytes; at += stride) {
      std::memcpy(copy.get() + at, pixels.get() + at, PackedRowBytes(width, bitsPerPixel));
    }
  } else {
    std::memcpy(copy.get(), pixels.get(), bytes);
  }
  pixels = std::move(copy);
}

Rgb Bitmap::PixelAt(std::int32_t x, std::int32_t y) const {
  if (x < 0 || x >= width) Raise(ErrorNumber::SubscriptOutOfRange);
  const auto row = Row(y);
  const auto column = static_cast<std::size_t>(x);
  if (bitsPerPixel > 8) {
    const auto pixel = row.subspan(column * static_cast<std::size_t>(bitsPerPixel / 8), 3);
    return {pixel[2], pixel[1], pixel[0]};
  }
  const std::size_t index = PaletteIndexAt(row, column, bitsPerPixel);
  return index < palette.size() ? palette[index] : Rgb{};
}

std::uint8_t PaletteIndexAt(std::span<const std::uint8_t> row, std::size_t x, int bitsPerPixel) {
  const auto bits = static_cast<unsigned>(bitsPerPixel);
  const std::size_t perByte = 8 / bits;
  const auto shift = 8 - bits * (static_cast<unsigned>(x % perByte) + 1);
  return static_cast<std::uint8_t>((static_cast<unsigned>(row[x / perByte]) >> shift) & ((1U << bits) - 1));
}

bool SamePicture(const Bitmap& a, const Bitmap& b) {
  if (a.width != b.width || a.height != b.height || a.bitsPerPixel != b.bitsPerPixel || a.palette != b.palette) {
    return false;
  }
  if (a.pixels == b.pixels) return true;
  const unsigned tailBits = static_cast<unsigned>(a.width) * static_cast<unsigned>(a.bitsPerPixel) % 8;
  const unsigned tailMask = tailBits == 0 ? 0xFFU : 0xFFU << (8 - tailBits);
  for (std::int32_t y = 0; y < a.height; ++y) {
    const auto rowA = a.Row(y);
    const auto rowB = b.Row(y);
    if (!std::equal(rowA.begin(), rowA.end() - 1, rowB.begin())) return false;
    if (((rowA.back() ^ rowB.back()) & tailMask & 0xFFU) != 0) return false;
  }
  return true;
}

}  // namespace kw
