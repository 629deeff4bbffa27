#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <vector>

#include <gif_lib.h>

#include "picture/Depth.h"
#include "picture/Unreadable.h"
#include "picture/formats/GifPages.h"

namespace kw {
namespace {

// A pixel of at least this alpha counts as opaque.
constexpr std::uint8_t HalfAlpha = 128;

int WriteFile(GifFileType* codec, const GifByteType* from, int count) {
  return static_cast<int>(static_cast<Stream*>(codec->UserData)->Write(from, static_cast<std::size_t>(count)));
}

// A file that is being written.
class GifEncoder {
public:
  explicit GifEncoder(Stream& to) {
    int error = 0;
    codec = EGifOpen(&to, WriteFile, &error);
    Require(codec != nullptr ? GIF_OK : GIF_ERROR);
  }
  GifEncoder(const GifEncoder&) = delete;
  GifEncoder& operator=(const GifEncoder&) = delete;
  ~GifEncoder() {
    GifFreeMapObject(colours);
    if (codec != nullptr) EGifCloseFile(codec, nullptr);
  }

  // `transparent` is the palette index of the transparent colour, if there is one.
  void Write(const Bitmap& picture, std::optional<int> transparent) {
    std::array<GifColorType, 256> entries{};
    std::ranges::transform(picture.Palette(), entries.begin(), [](const Rgb& c) {
      return GifColorType{c.red, c.green, c.blue};
    });
    EGifSetGifVersion(codec, transparent.has_value());
    colours = GifMakeMapObject(1 << picture.BitsPerPixel(), entries.data());
    Require(colours != nullptr ? GIF_OK : GIF_ERROR);
    Require(EGifPutScreenDesc(codec, picture.Width(), picture.Height(), colours->BitsPerPixel, 0, colours));
    if (transparent) {
      const GraphicsControlBlock control{DISPOSAL_UNSPECIFIED, false, 0, *transparent};
      std::array<GifByteType, 4> bytes{};
      EGifGCBToExtension(&control, bytes.data());
      Require(EGifPutExtension(codec, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(bytes.size()), bytes.data()));
    }
    Require(EGifPutImageDesc(codec, 0, 0, picture.Width(), picture.Height(), false, nullptr));
    std::vector<GifPixelType> row(static_cast<std::size_t>(picture.Width()));
    for (std::int32_t y = 0; y < picture.Height(); ++y) {
      const auto from = picture.Row(y);
      for (std::size_t x = 0; x < row.size(); ++x) row[x] = PaletteIndexAt(from, x, picture.BitsPerPixel());
      Require(EGifPutLine(codec, row.data(), static_cast<int>(row.size())));
    }
    GifFileType* finished = codec;
    codec = nullptr;
    Require(EGifCloseFile(finished, nullptr));
  }

private:
  static void Require(int result) {
    if (result == GIF_ERROR) RaiseUnreadable("The picture cannot be written as GIF.");
  }

  GifFileType* codec = nullptr;
  ColorMapObject* colours = nullptr;
};

bool IsTransparent(std::span<const std::uint8_t> row, std::size_t x) { return row[x * 4 + 3] < HalfAlpha; }

bool HasTransparency(const Bitmap& picture) {
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    const auto row = picture.Row(y);
    for (std::size_t x = 0; x < static_cast<std::size_t>(picture.Width()); ++x) {
      if (IsTransparent(row, x)) return true;
    }
  }
  return false;
}

int Distance(Rgb a, Rgb b) {
  const int red = a.red - b.red;
  const int green = a.green - b.green;
  const int blue = a.blue - b.blue;
  return red * red + green * green + blue * blue;
}

// Returns a palette index that no pixel has: the first behind a palette that is not full, else that of the rarest
// colour, whose pixels get the nearest other colour.
int FreeIndex(Bitmap& indexed) {
  std::vector<Rgb> palette(indexed.Palette().begin(), indexed.Palette().end());
  if (palette.size() < 256) {
    palette.resize(palette.size() + 1, Rgb{255, 255, 255});
    indexed.SetPalette(palette);
    return static_cast<int>(palette.size()) - 1;
  }
  std::array<std::size_t, 256> counts{};
  for (std::int32_t y = 0; y < indexed.Height(); ++y) {
    for (const std::uint8_t index : indexed.Row(y)) ++counts[index];
  }
  const auto rarest = static_cast<std::size_t>(std::ranges::min_element(counts) - counts.begin());
  std::size_t nearest = rarest == 0 ? 1 : 0;
  for (std::size_t i = 0; i < palette.size(); ++i) {
    if (i != rarest && Distance(palette[i], palette[rarest]) < Distance(palette[nearest], palette[rarest])) nearest = i;
  }
  for (std::int32_t y = 0; y < indexed.Height(); ++y) {
    std::ranges::replace(indexed.MutableRow(y), static_cast<std::uint8_t>(rarest), static_cast<std::uint8_t>(nearest));
  }
  return static_cast<int>(rarest);
}

}  // namespace

void WriteGif(const Bitmap& picture, Stream& to, const WriteOptions& /*options*/) {
  constexpr std::int32_t most = std::numeric_limits<std::uint16_t>::max();
  if (picture.Width() > most || picture.Height() > most)
    RaiseUnreadable("The picture is too large for the GIF format.");
  Bitmap indexed = picture.BitsPerPixel() > 8 ? ToDepth(picture, 8) : picture;
  std::optional<int> transparent;
  if (picture.BitsPerPixel() == 32 && HasTransparency(picture)) {
    transparent = FreeIndex(indexed);
    for (std::int32_t y = 0; y < picture.Height(); ++y) {
      const auto from = picture.Row(y);
      const auto row = indexed.MutableRow(y);
      for (std::size_t x = 0; x < row.size(); ++x) {
        if (IsTransparent(from, x)) row[x] = static_cast<std::uint8_t>(*transparent);
      }
    }
  }
  GifEncoder(to).Write(indexed, transparent);
}

}  // namespace kw
