#include "picture/effects/PointEffects.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "picture/Depth.h"
#include "picture/effects/Bands.h"
#include "picture/effects/Kernels.h"
#include "picture/effects/Pixels.h"

namespace kw {
namespace {

using ColourTable = std::array<Rgb, 256>;

template <typename Change>
void ChangePalette(Bitmap& picture, const Change& change) {
  // An index past the end shows black, which may change too.
  std::vector<Rgb> palette(std::size_t{1} << static_cast<unsigned>(picture.BitsPerPixel()));
  std::ranges::copy(picture.Palette(), palette.begin());
  std::ranges::transform(palette, palette.begin(), change);
  picture.SetPalette(std::move(palette));
}

// The line of that slope (-2 to 2, neither of them) that gives what the table gives; null where there is none. Going
// along a line takes a fraction of the look-ups' time.
std::optional<kernels::Line> LineOf(const ByteTable& table, double slope) {
  const double steepness = std::floor(std::fabs(slope) * 16384 + 0.5);
  if (!(steepness < 32768)) return std::nullopt;
  kernels::Line line{};
  line.flip = slope < 0 ? 255 : 0;
  line.slope = static_cast<std::uint16_t>(steepness);
  // Every value leaves some room to the offset.
  std::int32_t least = -16384;
  std::int32_t most = 16383;
  for (std::uint32_t i = 0; i < 256; ++i) {
    const std::int32_t value = table[i ^ line.flip];
    const auto scaled = static_cast<std::int32_t>(i * 256 * line.slope >> 16U);
    if (value != 0) least = std::max(least, value * 64 - scaled);
    if (value != 255) most = std::min(most, value * 64 + 63 - scaled);
  }
  if (least > most) return std::nullopt;
  line.offset = static_cast<std::int16_t>(least);
  return line;
}

// Each channel goes through the table, which may follow a line of that slope; alpha does not.
void MapChannels(Bitmap& picture, const ByteTable& table, double slope) {
  if (picture.BitsPerPixel() <= 8) {
    ChangePalette(picture, [&](Rgb c) { return Rgb{table[c.red], table[c.green], table[c.blue]}; });
    return;
  }
  const Pixels pixels(picture);
  const std::size_t count = picture.RowBytes();
  const bool hasAlpha = picture.BitsPerPixel() == 32;
  const std::optional<kernels::Line> line = LineOf(table, slope);
  ForBands(picture.Height(), BytesOf(picture), [&](Band band) {
    for (std::int32_t y = band.begin; y < band.end; ++y) {
      std::uint8_t* const row = pixels.Row(y);
      if (hasAlpha) {
        kernels::MapColours(row, count, table);
      } else if (line) {
        kernels::MapAlong(row, count, *line);
      } else {
        kernels::MapBytes(row, count, table);
      }
    }
  });
}

// So many steps of brightness are `percent` of the range.
std::int32_t StepsOf(double percent) { return static_cast<std::int32_t>(std::floor(255 * percent / 100 + 0.5)); }

// What each value becomes when `offset` is added.
ByteTable Shift(std::int32_t offset) {
  ByteTable table{};
  for (std::int32_t i = 0; i < 256; ++i) table[static_cast<std::size_t>(i)] = ToByte(i + offset);
  return table;
}

// Moves colours toward those that a table has for their brightness, by `amount` 256ths of the way.
class Mixture {
public:
  Mixture(const ColourTable& table, std::uint32_t amount) : kept(256 - amount) {
    const auto share = [amount](std::uint8_t value) { return amount * value + 128; };
    for (std::size_t i = 0; i < added.size(); ++i) {
      added[i] = {share(table[i].blue), share(table[i].green), share(table[i].red)};
    }
  }

  Rgb Of(Rgb colour) const {
    std::uint8_t pixel[] = {colour.blue, colour.green, colour.red};
    Change(pixel, Luma(colour));
    return {pixel[2], pixel[1], pixel[0]};
  }
  void Change(std::uint8_t* pixel, std::uint8_t brightness) const {
    for (std::size_t i = 0; i < 3; ++i) {
      pixel[i] = static_cast<std::uint8_t>((kept * pixel[i] + added[brightness][i]) >> 8U);
    }
  }

private:
  std::uint32_t kept;
  std::array<std::array<std::uint32_t, 3>, 256> added{};
};

void Mix(Bitmap& picture, const Mixture& mixture) {
  if (picture.BitsPerPixel() <= 8) {
    ChangePalette(picture, [&](Rgb c) { return mixture.Of(c); });
    return;
  }
  const bool hasAlpha = picture.BitsPerPixel() == 32;
  const auto width = static_cast<std::size_t>(picture.Width());
  const auto bands = CutIntoBands(picture.Height(), 4 * BytesOf(picture));
  std::vector<std::vector<std::uint8_t>> levels(bands.size(), std::vector<std::uint8_t>(width));
  const Pixels pixels(picture);
  RunTogether(bands.size(), [&](std::size_t i) {
    for (std::int32_t y = bands[i].begin; y < bands[i].end; ++y) {
      std::uint8_t* const row = pixels.Row(y);
      if (hasAlpha) {
        for (std::uint8_t* at = row; at != row + width * 4; at += 4) mixture.Change(at, Luma({at[2], at[1], at[0]}));
      } else {
        kernels::Brightness(row, levels[i].data(), width);
        for (std::size_t x = 0; x < width; ++x) mixture.Change(row + x * 3, levels[i][x]);
      }
    }
  });
}

// The pure colour of a hue, its channels 0 to 1 (red, green, blue).
std::array<double, 3> PureColour(double hue) {
  std::array<double, 3> colour{};
  const std::array<double, 3> middle{0, 120, 240};
  for (std::size_t i = 0; i < 3; ++i) {
    const double away = std::fabs(std::remainder(hue - middle[i], 360.0));
    colour[i] = std::clamp(2 - away / 60, 0.0, 1.0);
  }
  return colour;
}

// The colour of each brightness: from grey toward the hue, as far as there is room.
ColourTable Tints(double hue) {
  std::array<double, 3> direction = PureColour(hue);
  const double luma = 0.299 * direction[0] + 0.587 * direction[1] + 0.114 * direction[2];
  for (double& channel : direction) channel -= luma;
  ColourTable table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    const auto level = static_cast<double>(i);
    double room = 255;
    for (const double channel : direction) {
      if (channel > 0) room = std::min(room, (255 - level) / channel);
      if (channel < 0) room = std::min(room, level / -channel);
    }
    const auto at = [&](std::size_t channel) {
      const double value = level + room * direction[channel];
      return ToByte(static_cast<std::int32_t>(std::floor(value + 0.5)));
    };
    table[i] = {at(0), at(1), at(2)};
  }
  return table;
}

}  // namespace

void Invert(Bitmap& picture, std::span<const double> /*values*/) {
  ByteTable table{};
  for (std::size_t i = 0; i < table.size(); ++i) table[i] = static_cast<std::uint8_t>(255 - i);
  MapChannels(picture, table, -1);
}

void Lighten(Bitmap& picture, std::span<const double> values) { MapChannels(picture, Shift(StepsOf(values[0])), 1); }

void Darken(Bitmap& picture, std::span<const double> values) { MapChannels(picture, Shift(-StepsOf(values[0])), 1); }

void Contrast(Bitmap& picture, std::span<const double> values) {
  const double gain = 1 + values[0] / 100;
  ByteTable table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    const double value = 127.5 + (static_cast<double>(i) - 127.5) * gain;
    table[i] = ToByte(static_cast<std::int32_t>(std::floor(value + 0.5)));
  }
  MapChannels(picture, table, gain);
}

void GrayScale(Bitmap& picture, std::span<const double> /*values*/) {
  if (picture.BitsPerPixel() != 24) {
    ColourTable greys{};
    for (std::size_t i = 0; i < greys.size(); ++i) {
      const auto level = static_cast<std::uint8_t>(i);
      greys[i] = {level, level, level};
    }
    Mix(picture, {greys, 256});
    return;
  }
  Bitmap result = Like(picture, picture.Width(), picture.Height(), 8);
  const ConstPixels from(picture);
  const Pixels to(result);
  const auto width = static_cast<std::size_t>(picture.Width());
  ForBands(picture.Height(), BytesOf(picture), [&](Band band) {
    for (std::int32_t y = band.begin; y < band.end; ++y) kernels::Brightness(from.Row(y), to.Row(y), width);
  });
  picture = std::move(result);
}

void Colorize(Bitmap& picture, std::span<const double> values) {
  const auto amount = static_cast<std::uint32_t>(std::floor(values[1] * 2.56 + 0.5));
  Mix(picture, {Tints(values[0]), amount});
}

}  // namespace kw
