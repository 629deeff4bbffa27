#include "tests/picture/effects/ReferenceParts.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <numbers>
#include <string>

namespace kw::reference {
namespace {

Plain Invert(const Bitmap& picture, Values /*values*/) {
  return MapChannels(picture, [](std::int32_t v) { return 255 - v; });
}

Plain Lighten(const Bitmap& picture, Values values) {
  return MapChannels(picture, [&](std::int32_t v) { return v + Round(255 * values[0] / 100); });
}

Plain Darken(const Bitmap& picture, Values values) {
  return MapChannels(picture, [&](std::int32_t v) { return v - Round(255 * values[0] / 100); });
}

Plain Contrast(const Bitmap& picture, Values values) {
  return MapChannels(picture, [&](std::int32_t v) { return Round(127.5 + (v - 127.5) * (1 + values[0] / 100)); });
}

Plain GrayScale(const Bitmap& picture, Values /*values*/) {
  Plain plain = Read(picture);
  for (Pixel& p : plain.pixels) p = {Luma(p), Luma(p), Luma(p), p[3]};
  if (plain.bitsPerPixel == 24) plain.bitsPerPixel = 8;
  return plain;
}

// The six corners of the colour circle at multiples of 60 degrees, straight lines between.
double HueChannel(double hue, double offset) {
  const double sector = std::fmod(hue + offset + 720, 360) / 60;
  if (sector < 1 || sector >= 5) return 1;
  if (sector < 2) return 2 - sector;
  return sector >= 4 ? sector - 4 : 0;
}

Plain Colorize(const Bitmap& picture, Values values) {
  const std::array<double, 3> pure{HueChannel(values[0], -240), HueChannel(values[0], -120), HueChannel(values[0], 0)};
  const double pureLuma = 0.114 * pure[0] + 0.587 * pure[1] + 0.299 * pure[2];
  Plain plain = Read(picture);
  for (Pixel& p : plain.pixels) {
    const double luma = Luma(p);
    double room = 255;
    for (const double channel : pure) {
      if (channel > pureLuma) room = std::min(room, (255 - luma) / (channel - pureLuma));
      if (channel < pureLuma) room = std::min(room, luma / (pureLuma - channel));
    }
    const std::int32_t amount = Round(values[1] * 2.56);
    for (std::size_t c = 0; c < 3; ++c) {
      const std::int32_t tint = Byte(Round(luma + room * (pure[c] - pureLuma)));
      p[c] = Floored((256 - amount) * p[c] + amount * tint + 128, 256);
    }
  }
  return plain;
}

Plain HorizontalFlip(const Bitmap& picture, Values /*values*/) {
  const Plain plain = Read(picture);
  return Each(plain, [&](std::int32_t x, std::int32_t y) { return plain.At(plain.width - 1 - x, y); });
}

Plain VerticalFlip(const Bitmap& picture, Values /*values*/) {
  const Plain plain = Read(picture);
  return Each(plain, [&](std::int32_t x, std::int32_t y) { return plain.At(x, plain.height - 1 - y); });
}

Plain QuarterTurn(const Plain& plain) {
  return Each({plain.height, plain.width, plain.bitsPerPixel},
              [&](std::int32_t x, std::int32_t y) { return plain.At(y, plain.height - 1 - x); });
}

Plain FreeTurn(const Bitmap& picture, double degrees) {
  const Plain plain = Premultiplied(PlainValues(picture));
  const double radians = degrees / 180 * std::numbers::pi;
  const double cosine = std::cos(radians);
  const double sine = std::sin(radians);
  const double width = plain.width * std::fabs(cosine) + plain.height * std::fabs(sine);
  const double height = plain.width * std::fabs(sine) + plain.height * std::fabs(cosine);
  const Pixel paper = plain.bitsPerPixel == 32 ? Pixel{0, 0, 0, 0} : Pixel{255, 255, 255, 255};
  const auto at = [&](std::int32_t x, std::int32_t y) {
    const bool inside = x >= 0 && y >= 0 && x < plain.width && y < plain.height;
    return inside ? plain.At(x, y) : paper;
  };
  const Plain result(static_cast<std::int32_t>(std::ceil(width - 1e-6)),
                     static_cast<std::int32_t>(std::ceil(height - 1e-6)), plain.bitsPerPixel);
  return Unpremultiplied(Each(result, [&](std::int32_t x, std::int32_t y) {
    const double right = x + 0.5 - result.width / 2.0;
    const double down = y + 0.5 - result.height / 2.0;
    const std::int32_t fromX = Round(256 * (cosine * right + sine * down + plain.width / 2.0 - 0.5));
    const std::int32_t fromY = Round(256 * (cosine * down - sine * right + plain.height / 2.0 - 0.5));
    const std::int32_t column = Floored(fromX, 256);
    const std::int32_t line = Floored(fromY, 256);
    const std::int32_t a = fromX - 256 * column;
    const std::int32_t b = fromY - 256 * line;
    Pixel pixel{};
    for (std::size_t c = 0; c < 4; ++c) {
      const std::int32_t sum = (256 - a) * (256 - b) * at(column, line)[c] + a * (256 - b) * at(column + 1, line)[c] +
                               (256 - a) * b * at(column, line + 1)[c] + a * b * at(column + 1, line + 1)[c];
      pixel[c] = (sum + 32768) / 65536;
    }
    return pixel;
  }));
}

Plain Rotate(const Bitmap& picture, Values values) {
  const double degrees = std::fmod(values[0] + 360, 360);
  if (std::fmod(degrees, 90) != 0) return FreeTurn(picture, degrees);
  Plain plain = Read(picture);
  const std::int32_t turns = Round(degrees / 90);
  for (std::int32_t i = 0; i < turns; ++i) plain = QuarterTurn(plain);
  return plain;
}

std::int32_t OtsuLevel(const Plain& plain) {
  double best = 0;
  std::int32_t first = 128;
  std::int32_t last = 128;
  for (std::int32_t level = 1; level < 256; ++level) {
    std::array<double, 2> count{};
    std::array<double, 2> sum{};
    for (const Pixel& p : plain.pixels) {
      const std::size_t side = Luma(p) >= level ? 1 : 0;
      ++count[side];
      sum[side] += Luma(p);
    }
    if (count[0] == 0 || count[1] == 0) continue;
    const double apart = sum[0] / count[0] - sum[1] / count[1];
    const double between = count[0] * count[1] * apart * apart;
    if (between > best) {
      best = between;
      first = last = level;
    } else if (between == best && last == level - 1) {
      last = level;
    }
  }
  return (first + last) / 2;
}

Plain Threshold(const Bitmap& picture, Values values) {
  Plain plain = OnPaper(picture);
  const std::int32_t level = values[0] != 0 ? static_cast<std::int32_t>(values[0]) : OtsuLevel(plain);
  for (Pixel& p : plain.pixels) p = Grey(Luma(p) >= level ? 255 : 0);
  plain.bitsPerPixel = 1;
  return plain;
}

Plain Dither(const Bitmap& picture, Values /*values*/) {
  Plain plain = OnPaper(picture);
  std::map<std::pair<std::int32_t, std::int32_t>, std::int32_t> sixteenths;
  for (std::int32_t y = 0; y < plain.height; ++y) {
    for (std::int32_t x = 0; x < plain.width; ++x) {
      const std::int32_t value = Luma(plain.At(x, y)) + Floored(sixteenths[{x, y}] + 8, 16);
      const std::int32_t shown = value >= 128 ? 255 : 0;
      const std::int32_t error = value - shown;
      sixteenths[{x + 1, y}] += 7 * error;
      sixteenths[{x - 1, y + 1}] += 3 * error;
      sixteenths[{x, y + 1}] += 5 * error;
      sixteenths[{x + 1, y + 1}] += error;
      plain.At(x, y) = Grey(shown);
    }
  }
  plain.bitsPerPixel = 1;
  return plain;
}

}  // namespace

const Pixel& Plain::Near(std::int32_t x, std::int32_t y) const {
  return At(std::clamp(x, 0, width - 1), std::clamp(y, 0, height - 1));
}

Plain Read(const Bitmap& picture) {
  const Plain size(picture.Width(), picture.Height(), picture.BitsPerPixel());
  return Each(size, [&](std::int32_t x, std::int32_t y) {
    const Rgb colour = picture.PixelAt(x, y);
    const std::int32_t alpha = picture.BitsPerPixel() == 32 ? picture.Row(y)[static_cast<std::size_t>(x) * 4 + 3] : 255;
    return Pixel{colour.blue, colour.green, colour.red, alpha};
  });
}

Plain Expected(std::string_view command, const Bitmap& picture, std::span<const double> values) {
  static const std::map<std::string, Plain (*)(const Bitmap&, Values), std::less<>> effects{
      {"Blur", Blur},
      {"Colorize", Colorize},
      {"Contrast", Contrast},
      {"Darken", Darken},
      {"DecreaseBpp", DecreaseBpp},
      {"Dilate", Dilate},
      {"Dither", Dither},
      {"Edge", Edge},
      {"Emboss", Emboss},
      {"Erode", Erode},
      {"IncreaseBpp", IncreaseBpp},
      {"Invert", Invert},
      {"GrayScale", GrayScale},
      {"HorizontalFlip", HorizontalFlip},
      {"Lighten", Lighten},
      {"Resize", Resize},
      {"Rotate", Rotate},
      {"Sharpen", Sharpen},
      {"Soften", Soften},
      {"Threshold", Threshold},
      {"VerticalFlip", VerticalFlip}};
  return effects.find(command)->second(picture, values);
}

}  // namespace kw::reference
