#pragma once

#include <algorithm>
#include <cstdint>

#include "picture/PictureFormat.h"
#include "picture/formats/TiffHandle.h"

namespace kw {

enum class TiffAlpha { None, Straight, Premultiplied };

// How the samples of a page lie in the file.
struct TiffLayout {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint16_t bits = 1;
  std::uint16_t samples = 1;
  std::uint16_t photometric = PHOTOMETRIC_MINISWHITE;
  std::uint16_t compression = COMPRESSION_NONE;
  bool planar = false;
  bool tiled = false;
  bool plainNumbers = true;
  TiffAlpha alpha = TiffAlpha::None;

  bool operator==(const TiffLayout&) const = default;
  bool IsGrey() const { return photometric == PHOTOMETRIC_MINISWHITE || photometric == PHOTOMETRIC_MINISBLACK; }
  // The first sample is an index or a level of grey, and there is no alpha.
  bool IsIndexed() const {
    return plainNumbers && alpha == TiffAlpha::None &&
           ((IsGrey() && bits <= 16) || (photometric == PHOTOMETRIC_PALETTE && bits <= 8));
  }
  // Red, green, blue and perhaps more.
  bool IsColour() const {
    return plainNumbers && photometric == PHOTOMETRIC_RGB && samples >= (alpha == TiffAlpha::None ? 3 : 4) &&
           bits <= 16;
  }
  int Depth() const {
    if (!IsIndexed()) return alpha == TiffAlpha::None ? 24 : 32;
    return bits == 1 ? 1 : bits <= 4 ? 4 : 8;
  }
};

// A page of a file, selected in a handle of its own.
struct TiffPage {
  // Selects the page whose directory is at `directory`. Raises InvalidPicture.
  TiffPage(Stream& stream, std::uint64_t directoryPlace, const ReadLimits& readLimits);

  // A row of its samples, or of those of one plane, is decoded into that many bytes. Raises InvalidPicture.
  std::size_t LineBytes() const;
  std::uint32_t RowsPerStrip() const {
    return std::clamp<std::uint32_t>(tiff.Field(TIFFTAG_ROWSPERSTRIP, layout.height), 1, layout.height);
  }

  Stream& file;
  std::uint64_t directory;
  ReadLimits limits;
  TiffHandle tiff;
  TiffLayout layout;
};

}  // namespace kw
