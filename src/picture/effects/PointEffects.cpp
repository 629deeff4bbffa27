#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "picture/Depth.h"
#include "picture/effects/Families.h"
#include "picture/effects/Kernels.h"
#include "picture/effects/ParallelRows.h"
#include "picture/effects/Pixels.h"

namespace kw {
namespace {

using ColourLut = std::array<Rgb, 256>;

template <typename Change>
void ChangePalette(Bitmap& picture, const Change& change) {
  // An index past the end of the palette shows black, which may change too.
  std::vector<Rgb> palette(std::size_t{1} << static_cast<unsigned>(picture.BitsPerPixel()));
  std::ranges::copy(picture.Palette(), palette.begin());
  std::ranges::transform(palette, palette.begin(), change);
  picture.SetPalette(std::move(palette));
}

// The linear map of that gain (between -2 and 2) that equals the table, or none. It takes a fraction of the time of the
// look-ups.
std::optional<kernels::LinearMap> LinearMapOf(const Lut& table, double gain) {
  const double fixedGain = std::floor(std::fabs(gain) * 16384 + 0.5);
  if (!(fixedGain < 32768)) return std::nullopt;
  kernels::LinearMap map{};
  map.flip = gain < 0 ? 255 : 0;
  map.gain = static_cast<std::uint16_t>(fixedGain);
  // Each value narrows the range of the offset.
  std::int32_t least = -16384;
  std::int32_t most = 16383;
  for (std::uint32_t i = 0; i < 256; ++i) {
    const std::int32_t value = table[i ^ map.flip];
    const auto scaled = static_cast<std::int32_t>(i * 256 * map.gain >> 16U);
    if (value != 0) least = std::max(least, value * 64 - scaled);
    if (value != 255) most = std::min(most, value * 64 + 63 - scaled);
  }
  if (least > most) return std::nullopt;
  map.offset = static_cast<std::int16_t>(least);
  return map;
}

// Replaces each channel but alpha by its entry in the table, which may equal a linear map of that gain.
void MapChannels(Bitmap& picture, const Lut& table, double gain) {
  if (picture.BitsPerPixel() <= 8) {
    ChangePalette(picture, [&](Rgb c) { return Rgb{table[c.red], table[c.green], table[c.blue]}; });
    return;
  }
  Remade rows(picture);
  const std::size_t count = picture.RowBytes();
  const bool hasAlpha = picture.BitsPerPixel() == 32;
  const std::optional<kernels::LinearMap> linear = LinearMapOf(table, gain);
  ParallelForRows(picture.Height(), BytesOf(picture), [&](RowBand band) {
    for (std::int32_t y = band.begin; y < band.end; ++y) {
      std::uint8_t* const row = rows.Row(y);
      if (y + 1 < band.end) PrefetchRow(rows.Old().Row(y + 1), count);
      if (hasAlpha) {
        kernels::ApplyLutToColours(row, count, table);
      } else if (linear) {
        kernels::ApplyLinearMap(row, count, *linear);
      } else {
        kernels::ApplyLut(row, count, table);
      }
    }
  });
  rows.Finish();
}

// `percent` of the range of a channel.
std::int32_t StepsOf(double percent) { return static_cast<std::int32_t>(std::floor(255 * percent / 100 + 0.5)); }

// The table that adds `offset`, clamped.
Lut Shift(std::int32_t offset) {
  Lut table{};
  for (std::int32_t i = 0; i < 256; ++i) table[static_cast<std::size_t>(i)] = ToByte(i + offset);
  return table;
}

// Moves colours toward the table's entry for their luma, by `amount` 256ths of the way.
class Mixture {
public:
  Mixture(const ColourLut& table, std::uint32_t amount) : kept(256 - amount) {
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
  void Change(std::uint8_t* pixel, std::uint8_t luma) const {
    for (std::size_t i = 0; i < 3; ++i) {
      pixel[i] = static_cast<std::uint8_t>((kept * pixel[i] + added[luma][i]) >> 8U);
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
  const auto bands = CutIntoRowBands(picture.Height(), 4 * BytesOf(picture));
  std::vector<std::vector<std::uint8_t>> levels(bands.size(), std::vector<std::uint8_t>(width));
  Remade rows(picture);
  ParallelFor(bands.size(), [&](std::size_t i) {
    for (std::int32_t y = bands[i].begin; y < bands[i].end; ++y) {
      std::uint8_t* const row = rows.Row(y);
      if (hasAlpha) {
        for (std::uint8_t* at = row; at != row + width * 4; at += 4) mixture.Change(at, Luma({at[2], at[1], at[0]}));
      } else {
        kernels::Luma(row, levels[i].data(), width);
        for (std::size_t x = 0; x < width; ++x) mixture.Change(row + x * 3, levels[i][x]);
      }
    }
  });
  rows.Finish();
}

// The pure colour of a hue: red, green and blue, 0 to 1.
std::array<double, 3> PureColour(double hue) {
  std::array<double, 3> colour{};
  const std::array<double, 3> middle{0, 120, 240};
  for (std::size_t i = 0; i < 3; ++i) {
    const double away = std::fabs(std::remainder(hue - middle[i], 360.0));
    colour[i] = std::clamp(2 - away / 60, 0.0, 1.0);
  }
  return colour;
}

// The tint of each luma: from grey toward the hue until a channel reaches its limit.
ColourLut Tints(double hue) {
  std::array<double, 3> direction = PureColour(hue);
  const double luma = 0.299 * direction[0] + 0.587 * direction[1] + 0.114 * direction[2];
  for (double& channel : direction) channel -= luma;
  ColourLut table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    const auto level = static_cast<double>(i);
    double reach = 255;
    for (const double channel : direction) {
      if (channel > 0) reach = std::min(reach, (255 - level) / channel);
      if (channel < 0) reach = std::min(reach, level / -channel);
    }
    const auto at = [&](std::size_t channel) {
      const double value = level + reach * direction[channel];
      return ToByte(static_cast<std::int32_t>(std::floor(value + 0.5)));
    };
    table[i] = {at(0), at(1), at(2)};
  }
  return table;
}

void Invert(Bitmap& picture, std::span<const double> /*values*/) {
  Lut table{};
  for (std::size_t i = 0; i < table.size(); ++i) table[i] = static_cast<std::uint8_t>(255 - i);
  MapChannels(picture, table, -1);
}

void Lighten(Bitmap& picture, std::span<const double> values) { MapChannels(picture, Shift(StepsOf(values[0])), 1); }

void Darken(Bitmap& picture, std::span<const double> values) { MapChannels(picture, Shift(-StepsOf(values[0])), 1); }

void Contrast(Bitmap& picture, std::span<const double> values) {
  const double gain = 1 + values[0] / 100;
  Lut table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    const double value = 127.5 + (static_cast<double>(i) - 127.5) * gain;
    table[i] = ToByte(static_cast<std::int32_t>(std::floor(value + 0.5)));
  }
  MapChannels(picture, table, gain);
}

void GrayScale(Bitmap& picture, std::span<const double> /*values*/) {
  if (picture.BitsPerPixel() != 24) {
    ColourLut greys{};
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
  ParallelForRows(picture.Height(), BytesOf(picture), [&](RowBand band) {
    for (std::int32_t y = band.begin; y < band.end; ++y) {
      if (y + 1 < band.end) PrefetchRow(from.Row(y + 1), 3 * width);
      kernels::Luma(from.Row(y), to.Row(y), width);
    }
  });
  picture = std::move(result);
}

// The greys of 24 bits as 24 bits.
bool GrayScaleKeepingDepth(Bitmap& picture, std::span<const double> /*values*/) {
  if (picture.BitsPerPixel() != 24) return false;
  const auto width = static_cast<std::size_t>(picture.Width());
  const auto bands = CutIntoRowBands(picture.Height(), BytesOf(picture));
  std::vector<std::vector<std::uint8_t>> levels(bands.size(), std::vector<std::uint8_t>(width));
  Remade rows(picture);
  ParallelFor(bands.size(), [&](std::size_t i) {
    for (std::int32_t y = bands[i].begin; y < bands[i].end; ++y) {
      if (y + 1 < bands[i].end) PrefetchRow(rows.Old().Row(y + 1), 3 * width);
      kernels::Luma(rows.Old().Row(y), levels[i].data(), width);
      kernels::Triple(levels[i].data(), rows.New().Row(y), width);
    }
  });
  rows.Finish();
  return true;
}

void Colorize(Bitmap& picture, std::span<const double> values) {
  const auto amount = static_cast<std::uint32_t>(std::floor(values[1] * 2.56 + 0.5));
  Mix(picture, {Tints(values[0]), amount});
}

constexpr Parameter ColorizeParameters[] = {
    {.name = "Hue", .least = 0, .greatest = 360, .standard = 30, .unit = "degrees"},
    {.name = "Strength", .least = 0, .greatest = 100, .standard = 50, .unit = "%"}};
constexpr Parameter ContrastParameters[] = {
    {.name = "Percent", .least = -100, .greatest = 300, .standard = 20, .unit = "%"}};
constexpr Parameter LightnessParameters[] = {
    {.name = "Percent", .least = 0, .greatest = 100, .standard = 10, .unit = "%"}};

// Point effects look at each pixel alone. A picture with a palette gets another palette and keeps its pixels; alpha
// stays.
constexpr Effect PointEffectsRows[] = {
    {.command = "Colorize",
     .procedure = Colorize,
     .parameters = ColorizeParameters,
     .resultingDepth = SameDepth,
     .asks = true},
    {.command = "Contrast", .procedure = Contrast, .parameters = ContrastParameters, .resultingDepth = SameDepth},
    {.command = "Darken", .procedure = Darken, .parameters = LightnessParameters, .resultingDepth = SameDepth},
    {.command = "GrayScale",
     .procedure = GrayScale,
     .resultingDepth = "24: 8; others as before",
     .keepingDepth = GrayScaleKeepingDepth},
    {.command = "Invert", .procedure = Invert, .resultingDepth = SameDepth},
    {.command = "Lighten", .procedure = Lighten, .parameters = LightnessParameters, .resultingDepth = SameDepth},
};

}  // namespace

std::span<const Effect> PointEffects() { return PointEffectsRows; }

}  // namespace kw
