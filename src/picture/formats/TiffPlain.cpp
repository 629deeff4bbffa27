#include "picture/formats/TiffPlain.h"

#include <algorithm>
#include <vector>

namespace kw {

PlainRows::PlainRows(const TiffPage& page)
    : height(page.layout.height),
      rowsPerStrip(page.RowsPerStrip()),
      rowBytes(page.LineBytes()),
      rowsPerPiece(
          static_cast<std::uint32_t>(std::max(PieceBytes / std::max(rowBytes, std::size_t{1}), std::size_t{1}))) {}

bool PlainRows::Suits(const TiffPage& page) {
  return page.layout.compression == COMPRESSION_NONE && !page.layout.tiled && page.LineBytes() <= PieceBytes &&
         page.tiff.Field(TIFFTAG_FILLORDER, std::uint16_t{FILLORDER_MSB2LSB}) == FILLORDER_MSB2LSB;
}

// What lies behind a strip that is too short is not its own.
bool PlainRows::IsWhole(const TiffPage& own) const {
  for (std::uint32_t begin = 0; begin < height; begin += std::min(rowsPerStrip, height - begin)) {
    const std::uint64_t rows = std::min(rowsPerStrip, height - begin);
    if (TIFFGetStrileByteCount(own.tiff.Get(), begin / rowsPerStrip) < rows * rowBytes) return false;
  }
  return true;
}

bool PlainRows::Read(const TiffPage& own, const std::function<void(const std::uint8_t* bytes, std::uint32_t y)>& take) {
  if (!IsWhole(own)) return false;
  const auto placeOf = [&](std::uint32_t y) {
    return TIFFGetStrileOffset(own.tiff.Get(), y / rowsPerStrip) + std::uint64_t{y % rowsPerStrip} * rowBytes;
  };
  std::vector<std::uint8_t> piece(rowsPerPiece * rowBytes);
  const std::uint32_t pieces = (height - 1) / rowsPerPiece + 1;
  for (std::uint32_t i = nextPiece++; i < pieces; i = nextPiece++) {
    const std::uint32_t begin = i * rowsPerPiece;
    const std::uint32_t end = height - begin > rowsPerPiece ? begin + rowsPerPiece : height;
    for (std::uint32_t y = begin; y < end;) {
      const std::uint64_t place = placeOf(y);
      std::uint32_t rows = 1;
      // As long as the strips lie one behind the other.
      while (y + rows < end && placeOf(y + rows) == place + rows * rowBytes) ++rows;
      if (!own.file.Seek(place) || !own.file.ReadAll(piece.data(), rows * rowBytes)) return false;
      for (std::uint32_t row = 0; row < rows; ++row, ++y) take(piece.data() + row * rowBytes, y);
    }
  }
  return true;
}

}  // namespace kw
