#include "picture/formats/TiffParts.h"

#include <algorithm>
#include <array>

#include "picture/DamageReport.h"
#include "picture/Orientation.h"
#include "picture/Unreadable.h"
#include "picture/formats/Formats.h"
#include "picture/formats/TiffBounds.h"
#include "picture/formats/TiffLayout.h"
#include "picture/formats/TiffSamples.h"

namespace kw {
namespace {

void SetTiffResolution(const TiffHandle& tiff, Bitmap& page) {
  const double perInch = TiffUnitsPerInch(tiff.Field(TIFFTAG_RESOLUTIONUNIT, std::uint16_t{RESUNIT_INCH}));
  page.SetResolution(static_cast<double>(tiff.Field(TIFFTAG_XRESOLUTION, 0.0F)) * perInch,
                     static_cast<double>(tiff.Field(TIFFTAG_YRESOLUTION, 0.0F)) * perInch);
}

struct RgbaImage {
  RgbaImage() = default;
  RgbaImage(const RgbaImage&) = delete;
  RgbaImage& operator=(const RgbaImage&) = delete;
  ~RgbaImage() { TIFFRGBAImageEnd(&image); }
  TIFFRGBAImage image{};
};

// Lets libtiff convert the colour spaces that the sample reader does not know (inks, luma and chroma, others) to RGB.
// Sets `alpha` to the kind of the result.
Bitmap ReadByLibrary(const TiffHandle& tiff, const TiffLayout& layout, const ReadLimits& limits, TiffAlpha& alpha,
                     DamageReport& damage) {
  std::array<char, 1024> message{};
  RgbaImage holder;
  TIFFRGBAImage& image = holder.image;
  if (TIFFRGBAImageOK(tiff.Get(), message.data()) != 1 ||
      TIFFRGBAImageBegin(&image, tiff.Get(), 1, message.data()) != 1) {
    RaiseUnreadable(std::string("This kind of TIFF is not supported: ") + message.data() + ".");
  }
  image.orientation = ORIENTATION_TOPLEFT;
  image.req_orientation = ORIENTATION_TOPLEFT;
  alpha = image.alpha == 0 ? TiffAlpha::None : TiffAlpha::Premultiplied;
  Bitmap page = NewPage(layout.width, layout.height, alpha == TiffAlpha::None ? 24 : 32, limits);
  const std::size_t pixelBytes = alpha == TiffAlpha::None ? 3 : 4;

  const auto bandRows = tiff.Field(layout.tiled ? TIFFTAG_TILELENGTH : TIFFTAG_ROWSPERSTRIP, layout.height);
  const std::uint32_t step = std::clamp<std::uint32_t>(bandRows, 1, layout.height);
  RequireWorkFits(tiff, page, std::uint64_t{layout.width} * step * sizeof(std::uint32_t), limits);
  std::vector<std::uint32_t> band(std::size_t{layout.width} * step);
  for (std::uint32_t top = 0; top < layout.height;) {
    const std::uint32_t rows = std::min(step, layout.height - top);
    image.row_offset = static_cast<int>(top);
    if (TIFFRGBAImageGet(&image, band.data(), layout.width, rows) != 1) {
      damage.MissRows(page, static_cast<std::int32_t>(top), static_cast<std::int32_t>(top + rows));
    }
    for (std::uint32_t i = 0; i < rows; ++i) {
      const std::uint32_t* from = band.data() + std::size_t{i} * layout.width;
      std::uint8_t* to = page.MutableRow(static_cast<std::int32_t>(top + i)).data();
      for (std::size_t x = 0; x < layout.width; ++x, to += pixelBytes) {
        to[0] = static_cast<std::uint8_t>(TIFFGetB(from[x]));
        to[1] = static_cast<std::uint8_t>(TIFFGetG(from[x]));
        to[2] = static_cast<std::uint8_t>(TIFFGetR(from[x]));
        if (pixelBytes == 4) to[3] = static_cast<std::uint8_t>(TIFFGetA(from[x]));
      }
    }
    top += rows;
  }
  return page;
}

void Straighten(Bitmap& page) {
  for (std::int32_t y = 0; y < page.Height(); ++y) {
    const auto row = page.MutableRow(y);
    for (std::size_t at = 0; at < row.size(); at += 4) {
      const unsigned alpha = row[at + 3];
      if (alpha == 0 || alpha == 255) continue;
      for (std::size_t i = at; i < at + 3; ++i) {
        row[i] = static_cast<std::uint8_t>(std::min(255U, (row[i] * 255U + alpha / 2) / alpha));
      }
    }
  }
}

}  // namespace

Bitmap ReadTiffPage(Stream& file, std::uint64_t directory, const ReadLimits& limits, std::string& warning) {
  const TiffPage source(file, directory, limits);
  const TiffHandle& tiff = source.tiff;
  const TiffLayout& layout = source.layout;
  RequirePageFits(layout.width, layout.height, layout.Depth(), limits);
  if (layout.tiled) RequireTilesFit(tiff, layout.Depth(), limits);
  RequireBoundedPieces(tiff, file.Size());
  if (layout.compression == COMPRESSION_JBIG) RequireJbigFits(tiff, file.Size());
  if (layout.compression == COMPRESSION_LZMA) {
    const std::uint64_t pixels =
        PixelMemory(static_cast<std::int32_t>(layout.width), static_cast<std::int32_t>(layout.height), layout.Depth());
    RequireLzmaFits(tiff, file.Size(), limits.pageMemory - pixels);
  }
  TiffAlpha alpha = layout.alpha;
  DamageReport damage;
  Bitmap page = layout.IsIndexed() || layout.IsColour() ? ReadTiffSamples(source, damage)
                                                        : ReadByLibrary(tiff, layout, limits, alpha, damage);
  tiff.RequireMemory();
  tiff.Require(!damage.IsNothingLeft(page));
  if (alpha == TiffAlpha::Premultiplied && page.BitsPerPixel() == 32) Straighten(page);
  warning = damage.IsWhole() ? tiff.Damage() : damage.Finish(page, tiff.Damage());
  SetTiffResolution(tiff, page);
  return Upright(page, tiff.Field(TIFFTAG_ORIENTATION, Orientation{1}), limits);
}

}  // namespace kw
