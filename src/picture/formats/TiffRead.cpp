#include "picture/formats/TiffParts.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "picture/DamageReport.h"
#include "picture/Orientation.h"
#include "picture/Unreadable.h"
#include "picture/formats/Formats.h"
#include "picture/formats/TiffBounds.h"
#include "picture/formats/TiffHandle.h"

namespace kw {
namespace {

// Memory that libtiff needs besides the pixels.
constexpr std::uint64_t CodecMemory = std::uint64_t{64} * 1024 * 1024;

enum class Alpha { None, Straight, Premultiplied };

struct Layout {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint16_t bits = 1;
  std::uint16_t samples = 1;
  std::uint16_t photometric = PHOTOMETRIC_MINISWHITE;
  std::uint16_t compression = COMPRESSION_NONE;
  bool planar = false;
  bool tiled = false;
  bool plainNumbers = true;
  Alpha alpha = Alpha::None;

  bool IsGrey() const { return photometric == PHOTOMETRIC_MINISWHITE || photometric == PHOTOMETRIC_MINISBLACK; }
  // The first sample is an index or a level of grey, and there is no alpha.
  bool IsIndexed() const {
    return plainNumbers && alpha == Alpha::None &&
           ((IsGrey() && bits <= 16) || (photometric == PHOTOMETRIC_PALETTE && bits <= 8));
  }
  // Red, green, blue and perhaps more.
  bool IsColour() const {
    return plainNumbers && photometric == PHOTOMETRIC_RGB && samples >= (alpha == Alpha::None ? 3 : 4) && bits <= 16;
  }
  int Depth() const {
    if (!IsIndexed()) return alpha == Alpha::None ? 24 : 32;
    return bits == 1 ? 1 : bits <= 4 ? 4 : 8;
  }
};

Alpha AlphaOf(TIFF* codec) {
  std::uint16_t count = 0;
  std::uint16_t* kinds = nullptr;
  if (TIFFGetFieldDefaulted(codec, TIFFTAG_EXTRASAMPLES, &count, &kinds) != 1 || count == 0) {
    return Alpha::None;
  }
  return kinds[0] == EXTRASAMPLE_UNASSALPHA   ? Alpha::Straight
         : kinds[0] == EXTRASAMPLE_ASSOCALPHA ? Alpha::Premultiplied
                                              : Alpha::None;
}

Layout LayoutOf(const TiffHandle& tiff) {
  Layout layout;
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

void SetTiffResolution(const TiffHandle& tiff, Bitmap& page) {
  const double perInch = TiffUnitsPerInch(tiff.Field(TIFFTAG_RESOLUTIONUNIT, std::uint16_t{RESUNIT_INCH}));
  page.SetResolution(static_cast<double>(tiff.Field(TIFFTAG_XRESOLUTION, 0.0F)) * perInch,
                     static_cast<double>(tiff.Field(TIFFTAG_YRESOLUTION, 0.0F)) * perInch);
}

std::vector<Rgb> PaletteOf(const TiffHandle& tiff, const Layout& layout) {
  const std::size_t count = std::size_t{1} << std::min<std::size_t>(layout.bits, 8);
  std::vector<Rgb> palette(count);
  if (layout.IsGrey()) {
    const std::size_t last = count - 1;
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t level = layout.photometric == PHOTOMETRIC_MINISWHITE ? last - i : i;
      const auto grey = static_cast<std::uint8_t>((level * 255 + last / 2) / last);
      palette[i] = {grey, grey, grey};
    }
    return palette;
  }
  std::uint16_t* red = nullptr;
  std::uint16_t* green = nullptr;
  std::uint16_t* blue = nullptr;
  tiff.Require(TIFFGetField(tiff.Get(), TIFFTAG_COLORMAP, &red, &green, &blue) == 1);
  // Old writers stored 8 bits in the 16 bits of a colour.
  const auto isByte = [](std::uint16_t value) { return value < 256; };
  const bool bytes = std::all_of(red, red + count, isByte) && std::all_of(green, green + count, isByte) &&
                     std::all_of(blue, blue + count, isByte);
  const unsigned drop = bytes ? 0 : 8;
  for (std::size_t i = 0; i < count; ++i) {
    palette[i] = {static_cast<std::uint8_t>(red[i] >> drop), static_cast<std::uint8_t>(green[i] >> drop),
                  static_cast<std::uint8_t>(blue[i] >> drop)};
  }
  return palette;
}

// Sample `index` of a row of samples, `bits` wide (1 to 16).
unsigned SampleAt(const std::uint8_t* row, std::size_t index, unsigned bits) {
  if (bits == 8) return row[index];
  if (bits == 16) {
    std::uint16_t value = 0;
    std::memcpy(&value, row + index * 2, 2);
    return value;
  }
  unsigned value = 0;
  for (std::size_t bit = index * bits; bit < (index + 1) * bits; ++bit) {
    value = value << 1U | (static_cast<unsigned>(row[bit / 8]) >> (7 - bit % 8) & 1U);
  }
  return value;
}

// Iterates over a stored row: all samples of its pixels, or those of one plane.
struct Part {
  std::int32_t y = 0;
  std::size_t x = 0;
  std::size_t count = 0;
  const std::uint8_t* samples = nullptr;
  std::uint16_t plane = 0;
};

// Unpacks the samples of grey, palette and RGB pages.
class SampleReader {
public:
  SampleReader(const TiffHandle& handle, const Layout& pageLayout, const ReadLimits& readLimits, DamageReport& lost)
      : tiff(handle),
        layout(pageLayout),
        limits(readLimits),
        damage(lost),
        page(EmptyPage(pageLayout, readLimits)),
        channels(static_cast<std::uint16_t>(layout.IsIndexed() ? 1 : layout.Depth() / 8)) {
    if (channels == 1) page.SetPalette(PaletteOf(tiff, layout));
  }

  Bitmap Read() {
    RequireWorkFits(tiff, page, 0, limits);
    const std::uint16_t planes = layout.planar ? channels : std::uint16_t{1};
    for (std::uint16_t plane = 0; plane < planes; ++plane) {
      if (layout.tiled)
        ReadTiles(plane);
      else if (NeedsWholeStrips(layout.compression))
        ReadStrips(plane);
      else
        ReadLines(plane);
    }
    return std::move(page);
  }

private:
  // Indices are combined bit by bit.
  static Bitmap EmptyPage(const Layout& layout, const ReadLimits& limits) {
    const auto make = layout.IsIndexed() ? NewPage : NewUnfilledPage;
    return make(layout.width, layout.height, layout.Depth(), limits);
  }

  std::uint32_t RowsPerStrip() const {
    return std::clamp<std::uint32_t>(tiff.Field(TIFFTAG_ROWSPERSTRIP, layout.height), 1, layout.height);
  }

  std::vector<std::uint8_t> Buffer(tmsize_t size) const {
    tiff.Require(size > 0);
    if (static_cast<std::uint64_t>(size) > limits.pageMemory) RaiseUnreadable("The picture is too large.");
    return std::vector<std::uint8_t>(static_cast<std::size_t>(size));
  }

  void ReadLines(std::uint16_t plane) {
    auto line = Buffer(TIFFScanlineSize(tiff.Get()));
    // Rows in the page's own layout are decoded straight into it.
    const bool inPlace = channels == 1 && (layout.samples == 1 || layout.planar) &&
                         layout.bits == page.BitsPerPixel() && line.size() <= page.RowBytes();
    const auto step = static_cast<std::int32_t>(RowsPerStrip());
    for (std::int32_t y = 0; y < page.Height(); ++y) {
      std::uint8_t* target = inPlace ? page.MutableRow(y).data() : line.data();
      if (TIFFReadScanline(tiff.Get(), target, static_cast<std::uint32_t>(y), plane) == 1) {
        if (!inPlace) Take({y, 0, layout.width, target, plane});
        continue;
      }
      // The next strip can still be decoded.
      const std::int32_t next = page.Height() - y > step ? (y / step + 1) * step : page.Height();
      damage.MissRows(page, y, std::min(next, page.Height()));
      y = next - 1;
    }
  }

  void ReadStrips(std::uint16_t plane) {
    auto strip = Buffer(TIFFStripSize(tiff.Get()));
    const auto lineSize = static_cast<std::size_t>(TIFFScanlineSize(tiff.Get()));
    const std::uint32_t step = RowsPerStrip();
    for (std::uint32_t top = 0; top < layout.height; top += step) {
      const auto index = TIFFComputeStrip(tiff.Get(), top, plane);
      const std::uint32_t rows = std::min(step, layout.height - top);
      if (TIFFReadEncodedStrip(tiff.Get(), index, strip.data(), static_cast<tmsize_t>(strip.size())) <= 0) {
        damage.MissRows(page, static_cast<std::int32_t>(top), static_cast<std::int32_t>(top + rows));
      } else
        for (std::uint32_t i = 0; i < rows && (i + 1) * lineSize <= strip.size(); ++i) {
          Take({static_cast<std::int32_t>(top + i), 0, layout.width, strip.data() + i * lineSize, plane});
        }
      if (step >= layout.height) break;
    }
  }

  void ReadTiles(std::uint16_t plane) {
    const auto tileWidth = tiff.Field(TIFFTAG_TILEWIDTH, std::uint32_t{0});
    const auto tileHeight = tiff.Field(TIFFTAG_TILELENGTH, std::uint32_t{0});
    tiff.Require(tileWidth != 0 && tileHeight != 0);
    auto tile = Buffer(TIFFTileSize(tiff.Get()));
    const auto lineSize = static_cast<std::size_t>(TIFFTileRowSize(tiff.Get()));
    for (std::uint64_t top = 0; top < layout.height; top += tileHeight) {
      for (std::uint64_t left = 0; left < layout.width; left += tileWidth) {
        const std::uint64_t rows = std::min<std::uint64_t>(tileHeight, layout.height - top);
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(tileWidth, layout.width - left));
        if (TIFFReadTile(tiff.Get(), tile.data(), static_cast<std::uint32_t>(left), static_cast<std::uint32_t>(top), 0,
                         plane) <= 0) {
          damage.Miss({static_cast<std::int32_t>(left), static_cast<std::int32_t>(top),
                       static_cast<std::int32_t>(left + count), static_cast<std::int32_t>(top + rows)});
          continue;
        }
        for (std::uint64_t i = 0; i < rows; ++i) {
          Take({static_cast<std::int32_t>(top + i), static_cast<std::size_t>(left), count,
                tile.data() + static_cast<std::size_t>(i) * lineSize, plane});
        }
      }
    }
  }

  void Take(const Part& part) {
    const auto row = page.MutableRow(part.y);
    if (channels == 1)
      TakeIndices(part, row);
    else
      TakeColours(part, row);
  }

  void TakeIndices(const Part& part, std::span<std::uint8_t> row) const {
    const auto depth = static_cast<unsigned>(page.BitsPerPixel());
    const std::size_t step = layout.planar ? 1 : layout.samples;
    for (std::size_t i = 0; i < part.count; ++i) {
      unsigned value = SampleAt(part.samples, i * step, layout.bits);
      if (layout.bits > 8) value = Scaled(value);
      const std::size_t bit = (part.x + i) * depth;
      const unsigned shift = 8 - depth - static_cast<unsigned>(bit % 8);
      row[bit / 8] = static_cast<std::uint8_t>(row[bit / 8] | value << shift);
    }
  }

  void TakeColours(const Part& part, std::span<std::uint8_t> row) const {
    // The file has red, green, blue, alpha; the page blue, green, red, alpha.
    constexpr std::array<std::size_t, 4> places{2, 1, 0, 3};
    const std::size_t step = layout.planar ? 1 : layout.samples;
    const std::uint16_t begin = layout.planar ? part.plane : 0;
    const auto end = static_cast<std::uint16_t>(layout.planar ? part.plane + 1 : channels);
    for (std::uint16_t channel = begin; channel < end; ++channel) {
      std::uint8_t* to = row.data() + part.x * channels + places[channel];
      const std::size_t first = layout.planar ? 0 : channel;
      if (layout.bits == 8) {
        for (std::size_t i = 0; i < part.count; ++i) to[i * channels] = part.samples[first + i * step];
      } else {
        for (std::size_t i = 0; i < part.count; ++i) {
          to[i * channels] = static_cast<std::uint8_t>(Scaled(SampleAt(part.samples, first + i * step, layout.bits)));
        }
      }
    }
  }

  unsigned Scaled(unsigned value) const {
    const unsigned most = (1U << layout.bits) - 1;
    return (value * 255U + most / 2) / most;
  }

  const TiffHandle& tiff;
  const Layout& layout;
  const ReadLimits& limits;
  DamageReport& damage;
  Bitmap page;
  std::uint16_t channels;
};

struct RgbaImage {
  RgbaImage() = default;
  RgbaImage(const RgbaImage&) = delete;
  RgbaImage& operator=(const RgbaImage&) = delete;
  ~RgbaImage() { TIFFRGBAImageEnd(&image); }
  TIFFRGBAImage image{};
};

// Lets libtiff convert the colour spaces that the sample reader does not know (inks, luma and chroma, others) to RGB.
// Sets `alpha` to the kind of the result.
Bitmap ReadByLibrary(const TiffHandle& tiff, const Layout& layout, const ReadLimits& limits, Alpha& alpha,
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
  alpha = image.alpha == 0 ? Alpha::None : Alpha::Premultiplied;
  Bitmap page = NewPage(layout.width, layout.height, alpha == Alpha::None ? 24 : 32, limits);
  const std::size_t pixelBytes = alpha == Alpha::None ? 3 : 4;

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
  const TiffHandle tiff(file, TiffHandle::Use::Read, limits.pageMemory + CodecMemory);
  tiff.Require(TIFFSetSubDirectory(tiff.Get(), directory) == 1);
  const Layout layout = LayoutOf(tiff);
  RequirePageFits(layout.width, layout.height, layout.Depth(), limits);
  if (layout.tiled) RequireTilesFit(tiff, layout.Depth(), limits);
  RequireBoundedPieces(tiff, file.Size());
  if (layout.compression == COMPRESSION_JBIG) RequireJbigFits(tiff, file.Size());
  if (layout.compression == COMPRESSION_LZMA) {
    const std::uint64_t pixels =
        PixelMemory(static_cast<std::int32_t>(layout.width), static_cast<std::int32_t>(layout.height), layout.Depth());
    RequireLzmaFits(tiff, file.Size(), limits.pageMemory - pixels);
  }
  Alpha alpha = layout.alpha;
  DamageReport damage;
  Bitmap page = layout.IsIndexed() || layout.IsColour() ? SampleReader(tiff, layout, limits, damage).Read()
                                                        : ReadByLibrary(tiff, layout, limits, alpha, damage);
  tiff.RequireMemory();
  tiff.Require(!damage.IsNothingLeft(page));
  if (alpha == Alpha::Premultiplied && page.BitsPerPixel() == 32) Straighten(page);
  warning = damage.IsWhole() ? tiff.Damage() : damage.Finish(page, tiff.Damage());
  SetTiffResolution(tiff, page);
  return Upright(page, tiff.Field(TIFFTAG_ORIENTATION, Orientation{1}), limits);
}

}  // namespace kw
