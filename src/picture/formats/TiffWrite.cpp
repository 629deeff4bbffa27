#include "picture/formats/TiffParts.h"

#include <algorithm>
#include <array>
#include <vector>

#include "picture/TiffPageWriter.h"
#include "picture/formats/TiffHandle.h"

namespace kw {
namespace {

// Uncompressed bytes of a strip.
constexpr std::size_t StripBytes = std::size_t{256} * 1024;

// How the palette of a picture up to 8 bits is stored.
std::uint16_t PhotometricOf(const Bitmap& picture) {
  const auto palette = picture.Palette();
  const std::size_t count = std::size_t{1} << picture.BitsPerPixel();
  if (palette.size() != count) return PHOTOMETRIC_PALETTE;
  bool rising = true;
  bool falling = true;
  for (std::size_t i = 0; i < count; ++i) {
    const auto level = static_cast<std::uint8_t>(i * 255 / (count - 1));
    const auto inverse = static_cast<std::uint8_t>(255 - level);
    rising = rising && palette[i] == Rgb{level, level, level};
    falling = falling && palette[i] == Rgb{inverse, inverse, inverse};
  }
  return rising ? PHOTOMETRIC_MINISBLACK : falling ? PHOTOMETRIC_MINISWHITE : PHOTOMETRIC_PALETTE;
}

void SetPalette(const TiffHandle& tiff, const Bitmap& picture) {
  std::array<std::vector<std::uint16_t>, 3> channels;
  for (auto& channel : channels) channel.resize(std::size_t{1} << picture.BitsPerPixel());
  const auto palette = picture.Palette();
  constexpr std::uint16_t widen = 257;
  for (std::size_t i = 0; i < palette.size(); ++i) {
    channels[0][i] = static_cast<std::uint16_t>(palette[i].red * widen);
    channels[1][i] = static_cast<std::uint16_t>(palette[i].green * widen);
    channels[2][i] = static_cast<std::uint16_t>(palette[i].blue * widen);
  }
  tiff.Set(TIFFTAG_COLORMAP, channels[0].data(), channels[1].data(), channels[2].data());
}

// `picture` may be the first band of a page of that height.
void Describe(const TiffHandle& tiff, const Bitmap& picture, std::int32_t pageHeight) {
  const int depth = picture.BitsPerPixel();
  const bool indexed = depth <= 8;
  const int photometric = indexed ? PhotometricOf(picture) : PHOTOMETRIC_RGB;
  const bool fax = depth == 1 && photometric != PHOTOMETRIC_PALETTE;
  tiff.Set(TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(picture.Width()));
  tiff.Set(TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(pageHeight));
  tiff.Set(TIFFTAG_BITSPERSAMPLE, indexed ? depth : 8);
  tiff.Set(TIFFTAG_SAMPLESPERPIXEL, indexed ? 1 : depth / 8);
  tiff.Set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  tiff.Set(TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
  tiff.Set(TIFFTAG_PHOTOMETRIC, photometric);
  tiff.Set(TIFFTAG_COMPRESSION, fax ? COMPRESSION_CCITTFAX4 : COMPRESSION_LZW);
  if (!fax && depth >= 8 && photometric != PHOTOMETRIC_PALETTE) tiff.Set(TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
  if (photometric == PHOTOMETRIC_PALETTE) SetPalette(tiff, picture);
  if (depth == 32) {
    std::uint16_t alpha = EXTRASAMPLE_UNASSALPHA;
    tiff.Set(TIFFTAG_EXTRASAMPLES, 1, &alpha);
  }
  const auto height = static_cast<std::size_t>(pageHeight);
  const std::size_t rows = fax ? height : std::clamp<std::size_t>(StripBytes / picture.RowBytes(), 1, height);
  tiff.Set(TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(rows));
  if (picture.HorizontalResolution() > 0 && picture.VerticalResolution() > 0) {
    tiff.Set(TIFFTAG_XRESOLUTION, picture.HorizontalResolution());
    tiff.Set(TIFFTAG_YRESOLUTION, picture.VerticalResolution());
    tiff.Set(TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
  }
}

}  // namespace

TiffPageWriter::TiffPageWriter(Stream& to, std::int32_t pageHeight)
    : tiff(std::make_unique<TiffHandle>(to, TiffHandle::Use::Write)), height(pageHeight) {}

TiffPageWriter::~TiffPageWriter() = default;

void TiffPageWriter::Add(const Bitmap& band) {
  if (next == 0) Describe(*tiff, band, height);
  // The library changes the rows that it gets.
  std::vector<std::uint8_t> row(band.RowBytes());
  const std::size_t pixelBytes = band.BitsPerPixel() > 8 ? static_cast<std::size_t>(band.BitsPerPixel() / 8) : 0;
  for (std::int32_t y = 0; y < band.Height(); ++y, ++next) {
    std::ranges::copy(band.Row(y), row.begin());
    for (std::size_t at = 0; pixelBytes != 0 && at < row.size(); at += pixelBytes) std::swap(row[at], row[at + 2]);
    tiff->Require(TIFFWriteScanline(tiff->Get(), row.data(), static_cast<std::uint32_t>(next), 0) == 1);
  }
}

void TiffPageWriter::Finish() { tiff->Require(TIFFWriteDirectory(tiff->Get()) == 1); }

void WriteTiff(const Bitmap& picture, Stream& to, const WriteOptions& /*options*/) {
  TiffPageWriter writer(to, picture.Height());
  writer.Add(picture);
  writer.Finish();
}

}  // namespace kw
