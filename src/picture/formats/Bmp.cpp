#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>
#include <optional>

#include "picture/Bytes.h"
#include "picture/DamageReport.h"
#include "picture/Unreadable.h"
#include "picture/formats/BmpRunLength.h"
#include "picture/formats/Formats.h"

namespace kw {
namespace {

constexpr std::uint32_t FileHeaderSize = 14;
constexpr std::uint32_t CoreHeaderSize = 12;
constexpr std::uint32_t InfoHeaderSize = 40;
constexpr std::uint32_t AlphaHeaderSize = 108;
// The last known header is 124 bytes long; the colour masks of an info header follow it.
constexpr std::uint32_t LargestHeaderSize = 124;

enum Compression : std::uint32_t { Plain = 0, RunLength8 = 1, RunLength4 = 2, BitFields = 3, AlphaBitFields = 6 };

constexpr double InchesPerMetre = 1 / 0.0254;

// A channel of pixels of 16 or 32 bits.
struct Channel {
  std::uint32_t mask = 0;
  int shift = 0;
  std::uint64_t most = 0;

  explicit Channel(std::uint32_t bits = 0)
      : mask(bits), shift(bits == 0 ? 0 : std::countr_zero(bits)), most(bits >> shift) {}

  std::uint8_t Of(std::uint32_t pixel) const {
    const std::uint64_t value = (pixel & mask) >> shift;
    return static_cast<std::uint8_t>((value * 255 + most / 2) / most);
  }
  std::uint8_t Of(std::uint32_t pixel, std::uint8_t absent) const { return most == 0 ? absent : Of(pixel); }
};

struct BmpHeader {
  std::uint32_t pixelOffset = 0;
  std::uint32_t paletteOffset = 0;
  std::uint32_t paletteEntrySize = 4;
  std::uint32_t paletteEntries = 0;
  std::uint64_t width = 0;
  std::uint64_t height = 0;
  bool topDown = false;
  std::uint16_t bits = 0;
  std::uint32_t compression = Plain;
  double horizontalResolution = 0;
  double verticalResolution = 0;
  std::array<Channel, 4> channels;  // red, green, blue, alpha

  // The depth that the pixels are decoded to.
  int Depth() const {
    switch (bits) {
      case 1:
        return 1;
      case 2:
      case 4:
        return 4;
      case 8:
        return 8;
      case 32:
        return 32;
      default:
        return channels[3].mask != 0 ? 32 : 24;
    }
  }
};

void ReadCoreSizes(BmpHeader& header, std::span<const std::uint8_t> info) {
  header.width = NumberAt<std::uint16_t>(info, 4);
  header.height = NumberAt<std::uint16_t>(info, 6);
  header.bits = NumberAt<std::uint16_t>(info, 10);
  header.paletteEntrySize = 3;
}

void ReadInfoSizes(BmpHeader& header, std::span<const std::uint8_t> info) {
  const auto width = static_cast<std::int32_t>(NumberAt<std::uint32_t>(info, 4));
  const auto height = static_cast<std::int32_t>(NumberAt<std::uint32_t>(info, 8));
  if (width <= 0) RaiseUnreadable("The bitmap has no width.");
  header.width = static_cast<std::uint64_t>(width);
  header.topDown = height < 0;
  header.height = static_cast<std::uint64_t>(height < 0 ? -std::int64_t{height} : height);
  header.bits = NumberAt<std::uint16_t>(info, 14);
  // The short headers of OS/2 end anywhere behind the depth; the missing fields are zero.
  header.compression = NumberAt<std::uint32_t>(info, 16);
  header.horizontalResolution = NumberAt<std::uint32_t>(info, 24) / InchesPerMetre;
  header.verticalResolution = NumberAt<std::uint32_t>(info, 28) / InchesPerMetre;
  header.paletteEntries = NumberAt<std::uint32_t>(info, 32);
}

void ReadChannels(BmpHeader& header, std::span<const std::uint8_t> info, std::uint32_t infoSize) {
  const bool masked = header.compression == BitFields || header.compression == AlphaBitFields;
  if (masked) {
    const bool hasAlpha = infoSize >= 56 || header.compression == AlphaBitFields;
    for (std::size_t i = 0; i < (hasAlpha ? 4U : 3U); ++i) {
      header.channels[i] = Channel(NumberAt<std::uint32_t>(info, InfoHeaderSize + 4 * i));
    }
  } else if (header.bits == 16) {
    header.channels = {Channel(0x7C00), Channel(0x03E0), Channel(0x001F), Channel()};
  } else {
    // The fourth byte of an uncompressed pixel of 32 bits has no meaning.
    header.channels = {Channel(0xFF0000), Channel(0x00FF00), Channel(0x0000FF), Channel()};
  }
}

void Check(const BmpHeader& header) {
  const auto is = [&header](std::uint32_t compression, std::initializer_list<int> depths) {
    return header.compression == compression && std::find(depths.begin(), depths.end(), header.bits) != depths.end();
  };
  const bool known = is(Plain, {1, 2, 4, 8, 16, 24, 32}) || is(RunLength8, {8}) || is(RunLength4, {4}) ||
                     is(BitFields, {16, 32}) || is(AlphaBitFields, {16, 32});
  if (!known) {
    RaiseUnreadable("The bitmap has " + std::to_string(header.bits) + " bits per pixel in compression " +
                    std::to_string(header.compression) + ", which is not supported.");
  }
}

BmpHeader ReadHeader(Stream& file) {
  std::array<std::uint8_t, FileHeaderSize + LargestHeaderSize> bytes{};
  if (!file.Seek(0)) RaiseUnreadable("The file cannot be read.");
  const std::size_t present = file.Read(bytes.data(), bytes.size());
  if (present < FileHeaderSize + CoreHeaderSize) RaiseUnreadable("The bitmap is cut short.");

  BmpHeader header;
  const std::span<const std::uint8_t> all(bytes);
  const auto infoSize = NumberAt<std::uint32_t>(all, FileHeaderSize);
  if (infoSize < CoreHeaderSize || infoSize > LargestHeaderSize) RaiseUnreadable("The bitmap's header is not known.");
  if (present < FileHeaderSize + infoSize) RaiseUnreadable("The bitmap is cut short.");

  // Only the header; the fields of a longer one stay zero.
  std::array<std::uint8_t, LargestHeaderSize> info{};
  std::uint32_t headerEnd = FileHeaderSize + infoSize;
  if (infoSize == InfoHeaderSize) {
    const auto compression = NumberAt<std::uint32_t>(all, FileHeaderSize + 16);
    if (compression == BitFields) headerEnd += 12;
    if (compression == AlphaBitFields) headerEnd += 16;
    if (present < headerEnd) RaiseUnreadable("The bitmap is cut short.");
  }
  std::ranges::copy(all.subspan(FileHeaderSize, headerEnd - FileHeaderSize), info.begin());

  if (infoSize == CoreHeaderSize)
    ReadCoreSizes(header, info);
  else
    ReadInfoSizes(header, info);
  ReadChannels(header, info, infoSize);
  Check(header);

  header.paletteOffset = headerEnd;
  header.pixelOffset = NumberAt<std::uint32_t>(all, 10);
  if (header.bits <= 8) {
    const std::uint32_t most = 1U << header.bits;
    if (header.paletteEntries == 0 || header.paletteEntries > most) header.paletteEntries = most;
    // Some writers omit the unused end of the palette without saying so.
    if (header.pixelOffset > headerEnd) {
      header.paletteEntries =
          std::min(header.paletteEntries, (header.pixelOffset - headerEnd) / header.paletteEntrySize);
    }
  } else {
    header.paletteEntries = 0;
  }
  if (header.pixelOffset < headerEnd) {
    header.pixelOffset = headerEnd + header.paletteEntries * header.paletteEntrySize;
  }
  return header;
}

std::vector<Rgb> ReadPalette(Stream& file, const BmpHeader& header) {
  std::vector<std::uint8_t> bytes(std::size_t{header.paletteEntries} * header.paletteEntrySize);
  if (!file.Seek(header.paletteOffset) || !file.ReadAll(bytes.data(), bytes.size())) {
    RaiseUnreadable("The bitmap is cut short.");
  }
  std::vector<Rgb> palette;
  for (std::size_t at = 0; at < bytes.size(); at += header.paletteEntrySize) {
    palette.push_back({bytes[at + 2], bytes[at + 1], bytes[at]});
  }
  return palette;
}

void WidenTwoBits(std::span<const std::uint8_t> from, std::span<std::uint8_t> to) {
  for (std::size_t i = 0; i < to.size(); ++i) {
    const unsigned pair = i % 2 == 0 ? from[i / 2] >> 4U : from[i / 2] & 15U;
    to[i] = static_cast<std::uint8_t>((pair & 12U) << 2U | (pair & 3U));
  }
}

void DecodeMasked(const BmpHeader& header, std::span<const std::uint8_t> from, std::span<std::uint8_t> to) {
  const std::size_t fromSize = header.bits / 8U;
  const std::size_t toSize = header.Depth() == 32 ? 4 : 3;
  const auto& [red, green, blue, alpha] = header.channels;
  for (std::size_t x = 0; x < header.width; ++x) {
    const std::uint32_t pixel =
        fromSize == 2 ? NumberAt<std::uint16_t>(from, x * 2) : NumberAt<std::uint32_t>(from, x * 4);
    std::uint8_t* at = to.data() + x * toSize;
    at[0] = blue.Of(pixel, 0);
    at[1] = green.Of(pixel, 0);
    at[2] = red.Of(pixel, 0);
    if (toSize == 4) at[3] = alpha.Of(pixel, 255);
  }
}

// Returns the number of rows.
std::int32_t ReadRows(Stream& file, const BmpHeader& header, Bitmap& page) {
  const std::uint64_t fileRow = (header.width * header.bits + 31) / 32 * 4;
  // The padding of the last row may be missing.
  const auto usedBytes = static_cast<std::size_t>((header.width * header.bits + 7) / 8);
  if (!file.Seek(header.pixelOffset)) RaiseUnreadable("The file cannot be read.");
  std::vector<std::uint8_t> row(static_cast<std::size_t>(fileRow));
  const std::int32_t height = page.Height();
  for (std::int32_t i = 0; i < height; ++i) {
    const std::size_t got = file.Read(row.data(), row.size());
    if (got < usedBytes) return i;
    const auto to = page.MutableRow(header.topDown ? i : height - 1 - i);
    if (header.bits == 2)
      WidenTwoBits(row, to);
    else if (header.bits == 16 || header.bits == 32)
      DecodeMasked(header, row, to);
    else
      std::copy_n(row.begin(), to.size(), to.begin());
  }
  return height;
}

class BmpSource : public PictureSource {
public:
  BmpSource(Stream& file, const ReadLimits& readLimits) : header(ReadHeader(file)), limits(readLimits) {
    RequirePageFits(header.width, header.height, header.Depth(), limits);
  }

  PageHeader Header(Stream& /*file*/, std::int32_t /*page*/) override {
    return {{header.width, header.height},
            static_cast<std::int16_t>(header.bits),
            header.horizontalResolution,
            header.verticalResolution};
  }

  Bitmap Read(Stream& file, std::int32_t /*page*/, std::string& warning) override {
    Bitmap page = NewPage(header.width, header.height, header.Depth(), limits);
    page.SetResolution(header.horizontalResolution, header.verticalResolution);
    if (header.bits <= 8) page.SetPalette(ReadPalette(file, header));
    const bool runs = header.compression == RunLength8 || header.compression == RunLength4;
    if (runs && !file.Seek(header.pixelOffset)) RaiseUnreadable("The file cannot be read.");
    const std::int32_t rows = runs ? DecodeRunLength(file, header.topDown, page) : ReadRows(file, header, page);
    if (rows == 0) RaiseUnreadable("The bitmap is cut short.");
    DamageReport damage;
    if (rows < page.Height()) {
      const std::int32_t missing = page.Height() - rows;
      damage.MissRows(page, header.topDown ? rows : 0, header.topDown ? page.Height() : missing);
    }
    warning = damage.Finish(page, "The bitmap is cut short.");
    return page;
  }

  bool Copy(Stream& file, std::int32_t /*page*/, Stream& to) override {
    CopyBytes(file, 0, file.Size(), to);
    return true;
  }

private:
  BmpHeader header;
  ReadLimits limits;
};

bool RecogniseBmp(std::span<const std::uint8_t> head) {
  // The size of the header tells a bitmap from a text that begins with "BM".
  return head.size() >= FileHeaderSize + 2 && head[0] == 'B' && head[1] == 'M' && head[15] == 0 &&
         head[14] >= CoreHeaderSize && head[14] <= LargestHeaderSize;
}

std::unique_ptr<PictureSource> OpenBmp(Stream& file, const ReadLimits& limits) {
  return std::make_unique<BmpSource>(file, limits);
}

std::uint32_t PerMetre(double perInch) {
  const double value = perInch * InchesPerMetre + 0.5;
  return value >= 1 && value < std::numeric_limits<std::int32_t>::max() ? static_cast<std::uint32_t>(value) : 0;
}

void WriteBmp(const Bitmap& picture, Stream& to, const WriteOptions& /*options*/) {
  const bool hasAlpha = picture.BitsPerPixel() == 32;
  const std::uint32_t infoSize = hasAlpha ? AlphaHeaderSize : InfoHeaderSize;
  const std::size_t fileRow = (picture.RowBytes() + 3) / 4 * 4;
  const std::uint64_t pixelBytes = std::uint64_t{fileRow} * static_cast<std::uint64_t>(picture.Height());
  std::vector<Rgb> palette(picture.Palette().begin(), picture.Palette().end());
  // An empty palette would mean one of full length.
  if (palette.empty() && picture.BitsPerPixel() <= 8) palette.resize(1);
  const std::uint64_t pixelOffset = FileHeaderSize + infoSize + palette.size() * 4;
  if (pixelOffset + pixelBytes > std::numeric_limits<std::uint32_t>::max()) {
    RaiseUnreadable("The picture is too large for the BMP format.");
  }

  std::vector<std::uint8_t> head{'B', 'M'};
  AppendNumber(head, pixelOffset + pixelBytes, 4);
  AppendNumber(head, 0, 4);
  AppendNumber(head, pixelOffset, 4);
  AppendNumber(head, infoSize, 4);
  AppendNumber(head, static_cast<std::uint32_t>(picture.Width()), 4);
  AppendNumber(head, static_cast<std::uint32_t>(picture.Height()), 4);
  AppendNumber(head, 1, 2);
  AppendNumber(head, static_cast<std::uint32_t>(picture.BitsPerPixel()), 2);
  AppendNumber(head, hasAlpha ? BitFields : Plain, 4);
  AppendNumber(head, pixelBytes, 4);
  AppendNumber(head, PerMetre(picture.HorizontalResolution()), 4);
  AppendNumber(head, PerMetre(picture.VerticalResolution()), 4);
  AppendNumber(head, palette.size(), 4);
  AppendNumber(head, 0, 4);
  if (hasAlpha) {
    for (const std::uint32_t mask : {0x00FF0000U, 0x0000FF00U, 0x000000FFU, 0xFF000000U}) AppendNumber(head, mask, 4);
    for (const char c : {'B', 'G', 'R', 's'}) head.push_back(static_cast<std::uint8_t>(c));  // colour space sRGB
    head.resize(FileHeaderSize + AlphaHeaderSize);
  }
  for (const Rgb& entry : palette) {
    head.insert(head.end(), {entry.blue, entry.green, entry.red, std::uint8_t{0}});
  }
  bool good = to.WriteAll(head);

  // Blocks of some rows; the bytes between two rows stay zero.
  constexpr std::size_t blockBytes = std::size_t{256} * 1024;
  const auto most = static_cast<std::int32_t>(std::clamp<std::size_t>(blockBytes / fileRow, 1, 1000));
  std::vector<std::uint8_t> block(fileRow * static_cast<std::size_t>(most));
  for (std::int32_t left = picture.Height(); left > 0 && good;) {
    const std::int32_t rows = std::min(left, most);
    std::uint8_t* at = block.data();
    for (const std::int32_t end = left - rows; left > end; at += fileRow) {
      const auto row = picture.Row(--left);
      std::memcpy(at, row.data(), row.size());
    }
    good = to.WriteAll({block.data(), at});
  }
}

}  // namespace

const PictureFormat BmpFormat{"BMP", BmpExtensions, RecogniseBmp, OpenBmp, WriteBmp, nullptr};

}  // namespace kw
