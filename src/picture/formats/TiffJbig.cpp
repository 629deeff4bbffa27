#include "picture/formats/TiffParts.h"

#include <algorithm>
#include <span>

#include "picture/Unreadable.h"
#include "picture/formats/TiffBounds.h"

namespace kw {
namespace {

constexpr std::size_t HeaderSize = 20;
constexpr std::uint32_t LengthFollows = 0xFFFFFFFF;

std::uint32_t BigEndian(std::span<const std::uint8_t> bytes, std::size_t at) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = value << 8U | bytes[at + i];
  return value;
}

// The most rows that a marker among the pixels sets. Bytes that only look like a marker count, too.
std::uint32_t LargestNewLength(std::span<const std::uint8_t> code) {
  std::uint32_t most = 0;
  for (std::size_t i = HeaderSize; i + 6 <= code.size(); ++i) {
    if (code[i] == 0xFF && code[i + 1] == 0x05) most = std::max(most, BigEndian(code, i + 2));
  }
  return most;
}

bool Fits(std::span<const std::uint8_t> code, std::uint64_t most) {
  // The decoder refuses so few bytes itself.
  if (code.size() < HeaderSize) return true;
  const std::uint64_t planes = code[2];
  const std::uint64_t rowSize = (std::uint64_t{BigEndian(code, 4)} + 7) / 8;
  std::uint64_t rows = BigEndian(code, 8);
  if (rows == LengthFollows) rows = LargestNewLength(code);
  if (planes * rowSize == 0 || rows == 0) return true;
  return rows <= most / (planes * rowSize);
}

}  // namespace

void RequireJbigFits(const TiffHandle& tiff, std::uint64_t fileSize) {
  if (TIFFIsCODECConfigured(COMPRESSION_JBIG) != 1) RaiseUnreadable("This kind of TIFF is not supported: JBIG pixels.");
  TIFF* const codec = tiff.Get();
  const tmsize_t size = TIFFIsTiled(codec) != 0 ? TIFFTileSize(codec) : TIFFStripSize(codec);
  tiff.Require(size > 0);
  // The codec stores the bits in the opposite order of the usual one.
  const bool reversed = tiff.Field(TIFFTAG_FILLORDER, std::uint16_t{FILLORDER_MSB2LSB}) == FILLORDER_MSB2LSB;
  ForCodedPieces(tiff, fileSize, [&](std::span<std::uint8_t> code) {
    if (reversed) TIFFReverseBits(code.data(), static_cast<tmsize_t>(code.size()));
    if (!Fits(code, static_cast<std::uint64_t>(size))) RaiseUnreadable("The JBIG pixels are more than the page has.");
  });
}

}  // namespace kw
