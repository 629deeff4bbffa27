#pragma once

#include <string>
#include <vector>

#include <tiffio.h>

#include "tests/picture/Scratch.h"

namespace kw {

// Writes TIFF files with the codec library itself, page by page, so that what the engine reads was not written by it.
class TiffMaker {
public:
  explicit TiffMaker(const std::string& path, const char* mode = "w") : codec(TIFFOpen(path.c_str(), mode)) {
    if (codec == nullptr) throw std::runtime_error("cannot create " + path);
  }
  TiffMaker(const TiffMaker&) = delete;
  TiffMaker& operator=(const TiffMaker&) = delete;
  ~TiffMaker() { TIFFClose(codec); }

  template <typename... Value>
  TiffMaker& Set(std::uint32_t tag, Value... value) {
    EXPECT_EQ(1, TIFFSetField(codec, tag, value...)) << "tag " << tag;
    return *this;
  }

  // The tags that every page has; strips of `rows` rows.
  TiffMaker& Page(std::uint32_t width, std::uint32_t height, int bits, int samples, int photometric, int compression,
                  std::uint32_t rows) {
    Set(TIFFTAG_IMAGEWIDTH, width).Set(TIFFTAG_IMAGELENGTH, height).Set(TIFFTAG_BITSPERSAMPLE, bits);
    Set(TIFFTAG_SAMPLESPERPIXEL, samples).Set(TIFFTAG_PHOTOMETRIC, photometric).Set(TIFFTAG_COMPRESSION, compression);
    Set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    if (rows != 0) Set(TIFFTAG_ROWSPERSTRIP, rows);
    return *this;
  }

  // One row of one plane.
  void Line(std::uint32_t y, Bytes samples, std::uint16_t plane = 0) {
    EXPECT_EQ(1, TIFFWriteScanline(codec, samples.data(), y, plane));
  }

  void Tile(std::uint32_t x, std::uint32_t y, Bytes samples, std::uint16_t plane = 0) {
    EXPECT_GT(TIFFWriteTile(codec, samples.data(), x, y, 0, plane), 0);
  }

  // A strip whose bytes are coded already.
  void CodedStrip(std::uint32_t strip, Bytes bytes) {
    EXPECT_GT(TIFFWriteRawStrip(codec, strip, bytes.data(), static_cast<tmsize_t>(bytes.size())), 0);
  }

  std::size_t TileSize() const { return static_cast<std::size_t>(TIFFTileSize(codec)); }

  void EndPage() { EXPECT_EQ(1, TIFFWriteDirectory(codec)); }

  // A whole page of black and white.
  void FaxPageOf(const Bitmap& picture, int compression, std::uint32_t rowsPerStrip) {
    Page(static_cast<std::uint32_t>(picture.Width()), static_cast<std::uint32_t>(picture.Height()), 1, 1,
         PHOTOMETRIC_MINISWHITE, compression, rowsPerStrip);
    Set(TIFFTAG_XRESOLUTION, 300.0).Set(TIFFTAG_YRESOLUTION, 300.0).Set(TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    // Whole strips, since not every codec takes single rows.
    for (std::int32_t top = 0; top < picture.Height(); top += static_cast<std::int32_t>(rowsPerStrip)) {
      Bytes strip;
      for (std::int32_t y = top; y < std::min(top + static_cast<std::int32_t>(rowsPerStrip), picture.Height()); ++y) {
        strip.insert(strip.end(), picture.Row(y).begin(), picture.Row(y).end());
      }
      const auto index = TIFFComputeStrip(codec, static_cast<std::uint32_t>(top), 0);
      EXPECT_GT(TIFFWriteEncodedStrip(codec, index, strip.data(), static_cast<tmsize_t>(strip.size())), 0);
    }
    EndPage();
  }

private:
  TIFF* codec;
};

// The coded bytes of each strip or tile of page `page` (from 0).
inline std::vector<Bytes> CodedPieces(const std::string& path, std::uint16_t page) {
  // Not mapped into memory: libtiff forgets to unmap a file of JBIG pixels, and Windows keeps it locked.
  TIFF* codec = TIFFOpen(path.c_str(), "rm");
  std::vector<Bytes> pieces;
  if (codec == nullptr || TIFFSetDirectory(codec, page) != 1) {
    if (codec != nullptr) TIFFClose(codec);
    return pieces;
  }
  const bool tiled = TIFFIsTiled(codec) != 0;
  const std::uint32_t count = tiled ? TIFFNumberOfTiles(codec) : TIFFNumberOfStrips(codec);
  for (std::uint32_t i = 0; i < count; ++i) {
    Bytes piece(static_cast<std::size_t>(TIFFGetStrileByteCount(codec, i)));
    const auto size = static_cast<tmsize_t>(piece.size());
    const tmsize_t got =
        tiled ? TIFFReadRawTile(codec, i, piece.data(), size) : TIFFReadRawStrip(codec, i, piece.data(), size);
    EXPECT_EQ(size, got);
    pieces.push_back(std::move(piece));
  }
  TIFFClose(codec);
  return pieces;
}

}  // namespace kw
