#include "picture/formats/TiffBounds.h"

#include <algorithm>
#include <vector>

#include "picture/Unreadable.h"

namespace kw {
namespace {

constexpr std::uint64_t TimesNamed = 4;

class NamedBytes {
public:
  explicit NamedBytes(std::uint64_t size) : fileSize(size), left(TimesNamed * size) {}

  void Take(std::uint64_t bytes) {
    if (bytes > left) RaiseUnreadable("The TIFF file names the same bytes too often.");
    left -= bytes;
  }

  // How much of a piece that begins there is inside the file.
  void TakePiece(std::uint64_t position, std::uint64_t size) {
    if (position < fileSize) Take(std::min(size, fileSize - position));
  }

private:
  std::uint64_t fileSize;
  std::uint64_t left;
};

std::uint32_t PieceCount(TIFF* codec) {
  return TIFFIsTiled(codec) != 0 ? TIFFNumberOfTiles(codec) : TIFFNumberOfStrips(codec);
}

}  // namespace

void RequireBoundedPages(const TiffStructure& structure, Stream& file) {
  NamedBytes named(file.Size());
  const auto takePieces = [&](const std::vector<TiffEntry>& entries, std::uint16_t offsetTag, std::uint16_t countTag) {
    const TiffEntry* offsets = FindEntry(entries, offsetTag);
    const TiffEntry* counts = FindEntry(entries, countTag);
    if (offsets == nullptr || counts == nullptr) return;
    const auto positions = structure.ReadNumbers(file, *offsets);
    const auto sizes = structure.ReadNumbers(file, *counts);
    for (std::size_t i = 0; i < std::min(positions.size(), sizes.size()); ++i) named.TakePiece(positions[i], sizes[i]);
  };
  for (const std::uint64_t directory : structure.Directories()) {
    // Each part is counted before it is read.
    named.Take(structure.LinkOf(file, directory) - directory);
    const auto entries = structure.ReadDirectory(file, directory);
    for (const TiffEntry& entry : entries) {
      if (entry.valueBytes > structure.OffsetSize()) named.Take(entry.valueBytes);
    }
    takePieces(entries, TiffTag::StripOffsets, TiffTag::StripByteCounts);
    takePieces(entries, TiffTag::TileOffsets, TiffTag::TileByteCounts);
  }
}

void RequireBoundedPieces(const TiffHandle& tiff, std::uint64_t fileSize) {
  NamedBytes named(fileSize);
  TIFF* const codec = tiff.Get();
  const std::uint32_t count = PieceCount(codec);
  for (std::uint32_t i = 0; i < count; ++i) {
    named.TakePiece(TIFFGetStrileOffset(codec, i), TIFFGetStrileByteCount(codec, i));
  }
}

void RequireTilesFit(const TiffHandle& tiff, int bitsPerPixel, const ReadLimits& limits) {
  const auto whole = [&tiff](std::uint32_t sizeTag, std::uint32_t tileTag) {
    const std::uint64_t size = tiff.Field(sizeTag, std::uint32_t{0});
    const auto given = tiff.Field(tileTag, std::uint32_t{0});
    tiff.Require(given != 0);
    const std::uint64_t tile = std::max(given, std::uint32_t{1});
    return (size + tile - 1) / tile * tile;
  };
  RequirePageFits(whole(TIFFTAG_IMAGEWIDTH, TIFFTAG_TILEWIDTH), whole(TIFFTAG_IMAGELENGTH, TIFFTAG_TILELENGTH),
                  bitsPerPixel, limits);
}

bool NeedsWholeStrips(int compression) {
  return compression == COMPRESSION_JBIG || compression == COMPRESSION_LERC || compression == COMPRESSION_WEBP;
}

void RequireWorkFits(const TiffHandle& tiff, const Bitmap& page, std::uint64_t bandBytes, const ReadLimits& limits) {
  TIFF* const codec = tiff.Get();
  const bool tiled = TIFFIsTiled(codec) != 0;
  const std::uint64_t piece = tiled ? TIFFTileSize64(codec) : TIFFStripSize64(codec);
  // Bounded here so that no sum overflows.
  RequireWorkFits(piece, limits);
  const int compression = tiff.Field(TIFFTAG_COMPRESSION, std::uint16_t{COMPRESSION_NONE});
  std::uint64_t needed = PixelMemory(page.Width(), page.Height(), page.BitsPerPixel()) + bandBytes;
  if (tiled || bandBytes > 0 || NeedsWholeStrips(compression)) needed += piece;
  // Measured: WebP keeps four bytes for three samples, LERC as much; the logarithmic codecs keep numbers.
  if (NeedsWholeStrips(compression)) needed += piece / 3 * 4;
  if (compression == COMPRESSION_PIXARLOG || compression == COMPRESSION_SGILOG || compression == COMPRESSION_SGILOG24) {
    needed += piece * 2;
  }
  RequireWorkFits(needed, limits);
}

void ForCodedPieces(const TiffHandle& tiff, std::uint64_t fileSize,
                    const std::function<void(std::span<std::uint8_t> code)>& take) {
  TIFF* const codec = tiff.Get();
  const bool tiled = TIFFIsTiled(codec) != 0;
  const std::uint32_t count = PieceCount(codec);
  for (std::uint32_t i = 0; i < count; ++i) {
    std::vector<std::uint8_t> code(static_cast<std::size_t>(std::min(TIFFGetStrileByteCount(codec, i), fileSize)));
    const auto size = static_cast<tmsize_t>(code.size());
    const tmsize_t got =
        tiled ? TIFFReadRawTile(codec, i, code.data(), size) : TIFFReadRawStrip(codec, i, code.data(), size);
    take(std::span(code).first(static_cast<std::size_t>(std::max<tmsize_t>(got, 0))));
  }
}

}  // namespace kw
