#include "picture/formats/TiffSamples.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "picture/Unreadable.h"
#include "picture/effects/Kernels.h"
#include "picture/formats/PackedRows.h"
#include "picture/formats/TiffBounds.h"
#include "picture/formats/TiffPlain.h"
#include "picture/formats/TiffStrips.h"

namespace kw {
namespace {

std::vector<Rgb> PaletteOf(const TiffHandle& tiff, const TiffLayout& layout) {
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

// Of a codec whose strips are decoded whole; others do not know the tag.
bool AreDifferences(const TiffHandle& tiff, int compression) {
  return PaysWhole(compression) && compression != COMPRESSION_NONE &&
         tiff.Field(TIFFTAG_PREDICTOR, std::uint16_t{PREDICTOR_NONE}) != PREDICTOR_NONE;
}

// Iterates over a stored row: all samples of its pixels, or those of one plane.
struct Part {
  std::int32_t y = 0;
  std::size_t x = 0;
  std::size_t count = 0;
  const std::uint8_t* samples = nullptr;
  std::uint16_t plane = 0;
};

// Finishes what a thread streams.
struct StreamsOfThread {
  StreamsOfThread() = default;
  StreamsOfThread(const StreamsOfThread&) = delete;
  StreamsOfThread& operator=(const StreamsOfThread&) = delete;
  ~StreamsOfThread() { kernels::FinishStreams(); }
};

// Of a larger page, nothing would be left in them when it is whole.
constexpr std::size_t BytesOfCaches = std::size_t{4} << 20U;

// Unpacks the samples of grey, palette and RGB pages.
class SampleReader {
public:
  SampleReader(const TiffPage& from, DamageReport& lost)
      : source(from),
        tiff(source.tiff),
        layout(source.layout),
        limits(source.limits),
        damage(lost),
        page(EmptyPage()),
        rowsPerStrip(source.RowsPerStrip()),
        rowBytes(layout.tiled || NeedsWholeStrips(layout.compression) ? 0 : source.LineBytes()),
        areDifferences(AreDifferences(tiff, layout.compression)),
        channels(static_cast<std::uint16_t>(layout.IsIndexed() ? 1 : layout.Depth() / 8)),
        exchange(page.Stride() * layout.height > BytesOfCaches ? kernels::StreamExchanged
                                                               : kernels::ExchangeRedAndBlue) {}

  Bitmap Read() {
    RequireWorkFits(tiff, page, 0, limits);
    if (!ReadApart()) {
      const std::uint16_t planes = layout.planar ? channels : std::uint16_t{1};
      for (std::uint16_t plane = 0; plane < planes; ++plane) ReadPlane(plane);
      kernels::FinishStreams();
    }
    return std::move(page);
  }

private:
  // Indices are combined bit by bit.
  Bitmap EmptyPage() const {
    const auto make = layout.IsIndexed() ? NewPage : NewUnfilledPage;
    Bitmap made = make(layout.width, layout.height, layout.Depth(), limits);
    if (layout.IsIndexed()) made.SetPalette(PaletteOf(tiff, layout));
    return made;
  }

  void ReadPlane(std::uint16_t plane) {
    if (layout.tiled)
      ReadTiles(plane);
    else if (NeedsWholeStrips(layout.compression))
      ReadStrips(plane);
    else
      ReadLines(plane);
  }

  std::vector<std::uint8_t> Buffer(tmsize_t size) const {
    tiff.Require(size > 0);
    if (static_cast<std::uint64_t>(size) > limits.pageMemory) RaiseUnreadable("The picture is too large.");
    return std::vector<std::uint8_t>(static_cast<std::size_t>(size));
  }

  // A row of samples has the layout of the page's rows, but for the order of colours.
  bool IsInPlace() const {
    if (rowBytes > page.RowBytes()) return false;
    if (channels == 1) return (layout.samples == 1 || layout.planar) && layout.bits == page.BitsPerPixel();
    return !layout.planar && layout.samples == channels && layout.bits == 8;
  }

  // Decodes a row with a handle of the page and, if `line` is not empty, by way of it. Returns false if the library
  // cannot.
  bool ReadLine(const TiffHandle& handle, std::int32_t y, std::uint16_t plane, std::span<std::uint8_t> line) {
    std::uint8_t* const target = line.empty() ? page.MutableRow(y).data() : line.data();
    if (TIFFReadScanline(handle.Get(), target, static_cast<std::uint32_t>(y), plane) != 1) return false;
    if (!line.empty()) Take({y, 0, layout.width, target, plane});
    return true;
  }

  // A row of samples, if it is not decoded in place.
  class LineBuffer {
  public:
    explicit LineBuffer(const SampleReader& reader) {
      if (reader.channels == 1 && reader.IsInPlace()) return;
      // The codec writes rows that begin at an even address past the caches.
      begin = reader.layout.compression == COMPRESSION_JPEG ? 1 : 0;
      bytes.resize(begin + reader.rowBytes);
    }
    std::span<std::uint8_t> Bytes() { return std::span(bytes).subspan(begin); }

  private:
    std::size_t begin = 0;
    std::vector<std::uint8_t> bytes;
  };

  // Decodes a whole strip. If its code goes on behind its end, the library says that it is sound but may have left out
  // the last pixels: then the last byte is not written.
  bool DecodeWhole(const TiffHandle& handle, std::uint32_t strip, std::span<std::uint8_t> to) const {
    const auto size = static_cast<tmsize_t>(to.size());
    const auto decode = [&] { return TIFFReadEncodedStrip(handle.Get(), strip, to.data(), size) == size; };
    if (layout.compression == COMPRESSION_NONE) return decode();
    const bool hasLeft = areDifferences && layout.width > 1;
    for (const std::uint8_t unwritten : {std::uint8_t{0x80}, std::uint8_t{0x7F}}) {
      to.back() = unwritten;
      if (!decode()) return false;
      const std::size_t step = layout.planar ? 1 : layout.samples;
      const unsigned left = hasLeft ? to[to.size() - 1 - step] : 0U;
      if (static_cast<std::uint8_t>(to.back() - left) != unwritten) return true;
    }
    return false;
  }

  // Decodes whole strips, packed into the end of the memory of their rows, from where these move to their places.
  bool ReadWhole(const TiffHandle& handle, StripRange range, const Pixels& pixels) const {
    const std::uint32_t step = rowsPerStrip;
    const std::uint32_t begin = range.begin * step;
    const std::uint32_t end =
        layout.height - begin > (range.end - range.begin) * step ? range.end * step : layout.height;
    std::uint8_t* const first = pixels.Row(static_cast<std::int32_t>(begin));
    std::uint8_t* to = first + (end - begin) * (pixels.stride - rowBytes);
    for (std::uint32_t strip = range.begin; strip < range.end; ++strip) {
      const std::size_t size = std::min(step, layout.height - strip * step) * rowBytes;
      if (!DecodeWhole(handle, strip, {to, size})) return false;
      to += size;
    }
    SpreadRows({first, pixels.stride, rowBytes, end - begin}, [&](const std::uint8_t* from, std::uint8_t* row) {
      if (channels != 1)
        kernels::ExchangeRedAndBlue(from, row, layout.width, channels);
      else
        std::memmove(row, from, rowBytes);
    });
    return true;
  }

  void TakeWhole(const std::uint8_t* from, std::uint32_t y, const Pixels& pixels) const {
    std::uint8_t* const row = pixels.Row(static_cast<std::int32_t>(y));
    if (channels != 1)
      exchange(from, row, layout.width, channels);
    else
      std::memcpy(row, from, rowBytes);
  }

  bool ReadRows(const TiffHandle& handle, StripRange range) {
    const std::uint32_t step = rowsPerStrip;
    const std::uint32_t stripsOfPlane = (layout.height + step - 1) / step;
    LineBuffer line(*this);
    for (std::uint32_t strip = range.begin; strip < range.end; ++strip) {
      const auto plane = static_cast<std::uint16_t>(strip / stripsOfPlane);
      if (plane >= (layout.planar ? channels : 1)) return true;
      const std::uint32_t begin = strip % stripsOfPlane * step;
      for (std::uint32_t y = begin; y < begin + std::min(step, layout.height - begin); ++y) {
        if (!ReadLine(handle, static_cast<std::int32_t>(y), plane, line.Bytes())) return false;
      }
    }
    return true;
  }

  // If that is not possible, the page is empty again.
  bool ReadApart() {
    if (layout.tiled || NeedsWholeStrips(layout.compression)) return false;
    const bool areWhole = IsInPlace() && PaysWhole(layout.compression);
    const bool areShared = areWhole && PlainRows::Suits(source);
    const Pixels pixels(page);
    PlainRows plain(source);
    const auto calls = areShared ? StripCalls::Shared : areWhole ? StripCalls::Whole : StripCalls::Rows;
    const bool isRead = DecodeStripsApart(source, calls, [&](const TiffPage& own, StripRange range) {
      const StreamsOfThread streams;
      if (!areWhole) return ReadRows(own.tiff, range);
      if (!areShared) return ReadWhole(own.tiff, range, pixels);
      return plain.Read(own, [&](const std::uint8_t* from, std::uint32_t y) { TakeWhole(from, y, pixels); });
    });
    if (!isRead && layout.IsIndexed()) {
      page = {};
      page = EmptyPage();
    }
    return isRead;
  }

  void ReadLines(std::uint16_t plane) {
    LineBuffer line(*this);
    const auto step = static_cast<std::int32_t>(rowsPerStrip);
    for (std::int32_t y = 0; y < page.Height(); ++y) {
      if (ReadLine(tiff, y, plane, line.Bytes())) continue;
      // The next strip can still be decoded.
      const std::int32_t next = page.Height() - y > step ? (y / step + 1) * step : page.Height();
      damage.MissRows(page, y, std::min(next, page.Height()));
      y = next - 1;
    }
  }

  void ReadStrips(std::uint16_t plane) {
    auto strip = Buffer(TIFFStripSize(tiff.Get()));
    const auto lineSize = static_cast<std::size_t>(TIFFScanlineSize(tiff.Get()));
    const std::uint32_t step = rowsPerStrip;
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
    if (step == 1 && layout.bits == depth && part.x * depth % 8 == 0) return TakeBits(part, row, part.x * depth / 8);
    for (std::size_t i = 0; i < part.count; ++i) {
      unsigned value = SampleAt(part.samples, i * step, layout.bits);
      if (layout.bits > 8) value = Scaled(value);
      const std::size_t bit = (part.x + i) * depth;
      const unsigned shift = 8 - depth - static_cast<unsigned>(bit % 8);
      row[bit / 8] = static_cast<std::uint8_t>(row[bit / 8] | value << shift);
    }
  }

  // Indices that lie in the part as they do in the row, from a whole byte on.
  void TakeBits(const Part& part, std::span<std::uint8_t> row, std::size_t at) const {
    const std::size_t bits = part.count * layout.bits;
    std::memcpy(row.data() + at, part.samples, bits / 8);
    const unsigned left = bits % 8;
    if (left == 0) return;
    // The rest of the byte may be another part's.
    std::uint8_t& last = row[at + bits / 8];
    last = static_cast<std::uint8_t>(last | (part.samples[bits / 8] & ~(0xFFU >> left)));
  }

  void TakeColours(const Part& part, std::span<std::uint8_t> row) const {
    // The file has red, green, blue, alpha; the page blue, green, red, alpha.
    if (layout.bits == 8 && !layout.planar && layout.samples == channels) {
      exchange(part.samples, row.data() + part.x * channels, part.count, channels);
      return;
    }
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

  const TiffPage& source;
  const TiffHandle& tiff;
  const TiffLayout& layout;
  const ReadLimits& limits;
  DamageReport& damage;
  Bitmap page;
  // Read once: libtiff stores in a handle which field was asked for last, so threads must not ask the page's handle.
  std::uint32_t rowsPerStrip;
  std::size_t rowBytes;
  bool areDifferences;
  std::uint16_t channels;
  decltype(&kernels::ExchangeRedAndBlue) exchange;
};

}  // namespace

Bitmap ReadTiffSamples(const TiffPage& source, DamageReport& damage) { return SampleReader(source, damage).Read(); }

}  // namespace kw
