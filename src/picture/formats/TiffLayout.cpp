#include "picture/formats/TiffLayout.h"

#include "picture/Unreadable.h"

namespace kw {
namespace {

// Memory that libtiff needs besides the pixels.
constexpr std::uint64_t CodecMemory = std::uint64_t{64} * 1024 * 1024;

TiffAlpha AlphaOf(TIFF* codec) {
  std::uint16_t count = 0;
  std::uint16_t* kinds = nullptr;
  if (TIFFGetFieldDefaulted(codec, TIFFTAG_EXTRASAMPLES, &count, &kinds) != 1 || count == 0) {
    return TiffAlpha::None;
  }
  return kinds[0] == EXTRASAMPLE_UNASSALPHA   ? TiffAlpha::Straight
         : kinds[0] == EXTRASAMPLE_ASSOCALPHA ? TiffAlpha::Premultiplied
                                              : TiffAlpha::None;
}

// Sets the library's colour mode so that it is what the library will decode.
TiffLayout LayoutOf(const TiffHandle& tiff) {
  TiffLayout layout;
  layout.width = tiff.Field(TIFFTAG_IMAGEWIDTH, layout.width);
  layout.height = tiff.Field(TIFFTAG_IMAGELENGTH, layout.height);
  layout.bits = tiff.Field(TIFFTAG_BITSPERSAMPLE, layout.bits);
  layout.samples = tiff.Field(TIFFTAG_SAMPLESPERPIXEL, layout.samples);
  layout.compression = tiff.Field(TIFFTAG_COMPRESSION, layout.compression);
  layout.planar = tiff.Field(TIFFTAG_PLANARCONFIG, std::uint16_t{PLANARCONFIG_CONTIG}) == PLANARCONFIG_SEPARATE &&
                  layout.samples > 1;
  const auto format = tiff.Field(TIFFTAG_SAMPLEFORMAT, std::uint16_t{SAMPLEFORMAT_UINT});
  layout.plainNumbers = (format == SAMPLEFORMAT_UINT || format == SAMPLEFORMAT_VOID) && layout.bits >= 1;
  layout.tiled = TIFFIsTiled(tiff.Get()) != 0;
  if (TIFFGetField(tiff.Get(), TIFFTAG_PHOTOMETRIC, &layout.photometric) != 1) {
    // If the file does not say it, three samples are colours and one is a fax (0 is white).
    layout.photometric = layout.samples >= 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISWHITE;
  }
  if (layout.compression == COMPRESSION_JPEG && layout.photometric == PHOTOMETRIC_YCBCR && !layout.planar) {
    tiff.Set(TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    layout.photometric = PHOTOMETRIC_RGB;
  }
  layout.alpha = AlphaOf(tiff.Get());
  return layout;
}

}  // namespace

TiffPage::TiffPage(Stream& stream, std::uint64_t directoryPlace, const ReadLimits& readLimits)
    : file(stream),
      directory(directoryPlace),
      limits(readLimits),
      tiff(file, TiffHandle::Use::Read, limits.pageMemory + CodecMemory) {
  tiff.Require(TIFFSetSubDirectory(tiff.Get(), directory) == 1);
  layout = LayoutOf(tiff);
}

std::size_t TiffPage::LineBytes() const {
  const tmsize_t size = TIFFScanlineSize(tiff.Get());
  tiff.Require(size > 0);
  if (static_cast<std::uint64_t>(size) > limits.pageMemory) RaiseUnreadable("The picture is too large.");
  return static_cast<std::size_t>(size);
}

}  // namespace kw
