#include "drawing/RowReader.h"

#include <bit>
#include <cstddef>
#include <cstring>

#include "drawing/FrameBuffer.h"
#include "drawing/Unpack.h"

namespace kw {
static_assert(std::endian::native == std::endian::little, "pixels are read as little-endian words");

RowReader::RowReader(const Bitmap& source, const DrawOptions& options)
    : picture(source), isLightened(options.isLightened), hasKey(options.transparent.has_value()) {
  if (hasKey) key = PixelOf(*options.transparent);
  if (hasKey || picture.BitsPerPixel() == 32) opaque = Opaque;
  if (picture.BitsPerPixel() > 8) return;
  const auto palette = picture.Palette();
  const std::size_t count = std::size_t{1} << static_cast<unsigned>(picture.BitsPerPixel());
  for (std::size_t i = 0; i < count; ++i) {
    const Rgb entry = i < palette.size() ? palette[i] : Rgb{};
    colours[i] = PixelOf(MakeColour(entry.red, entry.green, entry.blue)) | opaque;
  }
  Finish(std::span(colours).first(count));
}

void RowReader::Read(std::int32_t x, std::int32_t y, std::span<std::uint32_t> to) const {
  if (to.empty()) return;
  const auto row = picture.Row(y);
  const auto first = static_cast<std::size_t>(x);
  switch (picture.BitsPerPixel()) {
    case 1:
      ReadBits(row, first, to);
      return;
    case 4:
      for (std::size_t i = 0; i < to.size(); ++i) to[i] = colours[PaletteIndexAt(row, first + i, 4)];
      return;
    case 8:
      for (std::size_t i = 0; i < to.size(); ++i) to[i] = colours[row[first + i]];
      return;
    case 24:
      // The common case, a transparent colour alone, needs no second pass. Otherwise `hidden` is a value that no pixel
      // has.
      UnpackThreeBytes(row.subspan(first * 3), to, opaque, hasKey && !isLightened ? key | opaque : opaque ^ Opaque);
      if (!isLightened) return;
      break;
    default:
      std::memcpy(to.data(), row.data() + first * 4, to.size_bytes());
  }
  Finish(to);
}

void RowReader::Finish(std::span<std::uint32_t> pixels) const {
  const std::uint32_t left = key;
  if (hasKey && isLightened) {
    for (std::uint32_t& pixel : pixels) pixel = (pixel & ColourBits) == left ? 0 : Lightened(pixel);
  } else if (hasKey) {
    for (std::uint32_t& pixel : pixels) pixel = (pixel & ColourBits) == left ? 0 : pixel;
  } else if (isLightened) {
    for (std::uint32_t& pixel : pixels) pixel = Lightened(pixel);
  }
}

void RowReader::ReadBits(std::span<const std::uint8_t> row, std::size_t first, std::span<std::uint32_t> to) const {
  const std::uint32_t clear = colours[0];
  const std::uint32_t set = colours[1];
  const auto one = [&](std::size_t at) { return ((row[at / 8] >> (7 - at % 8)) & 1) != 0 ? set : clear; };
  std::size_t i = 0;
  for (; i < to.size() && (first + i) % 8 != 0; ++i) to[i] = one(first + i);
  for (; i + 8 <= to.size(); i += 8) {
    static constexpr std::array<std::uint32_t, 8> Bits = {128, 64, 32, 16, 8, 4, 2, 1};
    const std::uint32_t byte = row[(first + i) / 8];
    for (std::size_t bit = 0; bit < 8; ++bit) to[i + bit] = (byte & Bits[bit]) != 0 ? set : clear;
  }
  for (; i < to.size(); ++i) to[i] = one(first + i);
}

}  // namespace kw
