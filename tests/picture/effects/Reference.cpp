#include "picture/effects/Reference.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <numbers>
#include <string>

namespace kw::reference {
namespace {

using Values = std::span<const double>;

std::int32_t Floor(double value) { return static_cast<std::int32_t>(std::floor(value)); }
std::int32_t Round(double value) { return Floor(value + 0.5); }
std::int32_t Byte(std::int32_t value) { return std::clamp(value, 0, 255); }
// Division that rounds down.
std::int32_t Floored(std::int32_t value, std::int32_t by) { return (value - (value % by + by) % by) / by; }

std::int32_t Luma(const Pixel& p) { return (299 * p[2] + 587 * p[1] + 114 * p[0] + 500) / 1000; }

bool HasColours(const Bitmap& picture) {
  return std::ranges::any_of(picture.Palette(), [](Rgb c) { return c.red != c.green || c.green != c.blue; });
}

// The picture with the depth that filters give it.
Plain InValues(const Bitmap& picture) {
  Plain plain = Read(picture);
  if (plain.bitsPerPixel <= 8) plain.bitsPerPixel = HasColours(picture) ? 24 : 8;
  return plain;
}

// Each pixel from its place.
Plain Each(const Plain& like, const std::function<Pixel(std::int32_t, std::int32_t)>& make) {
  Plain result(like.width, like.height, like.bitsPerPixel);
  for (std::int32_t y = 0; y < like.height; ++y) {
    for (std::int32_t x = 0; x < like.width; ++x) result.At(x, y) = make(x, y);
  }
  return result;
}

// Each channel of each pixel, alpha left alone.
Plain EachChannel(const Plain& picture,
                  const std::function<std::int32_t(std::int32_t, std::int32_t, std::size_t)>& make) {
  return Each(picture, [&](std::int32_t x, std::int32_t y) {
    Pixel pixel = picture.At(x, y);
    for (std::size_t c = 0; c < 3; ++c) pixel[c] = Byte(make(x, y, c));
    return pixel;
  });
}

Plain MapChannels(const Bitmap& picture, const std::function<std::int32_t(std::int32_t)>& map) {
  const Plain plain = Read(picture);
  return EachChannel(plain, [&](std::int32_t x, std::int32_t y, std::size_t c) { return map(plain.At(x, y)[c]); });
}

Plain Premultiplied(Plain picture) {
  for (Pixel& p : picture.pixels) {
    for (std::size_t c = 0; c < 3; ++c) p[c] = (p[c] * p[3] + 127) / 255;
  }
  return picture;
}

Plain Unpremultiplied(Plain picture) {
  for (Pixel& p : picture.pixels) {
    for (std::size_t c = 0; c < 3; ++c) p[c] = p[3] == 0 ? 0 : std::min(255, (p[c] * 255 + p[3] / 2) / p[3]);
  }
  return picture;
}

Plain OnPaper(const Bitmap& picture) {
  Plain plain = Read(picture);
  for (Pixel& p : plain.pixels) {
    for (std::size_t c = 0; c < 3; ++c) p[c] = (p[c] * p[3] + 255 * (255 - p[3]) + 127) / 255;
  }
  return plain;
}

Pixel Grey(std::int32_t level) { return {level, level, level, 255}; }

// Weighted sum of the channel over a 3x3 neighbourhood; weights row by row.
std::int32_t Weighted(const Plain& p, std::int32_t x, std::int32_t y, std::size_t c,
                      const std::array<std::int32_t, 9>& weights) {
  std::int32_t sum = 0;
  for (std::int32_t i = 0; i < 9; ++i) {
    sum += weights[static_cast<std::size_t>(i)] * p.Near(x + i % 3 - 1, y + i / 3 - 1)[c];
  }
  return sum;
}

constexpr std::array<std::int32_t, 9> Binomial{1, 2, 1, 2, 4, 2, 1, 2, 1};

Plain Invert(const Bitmap& picture, Values /*values*/) {
  return MapChannels(picture, [](std::int32_t v) { return 255 - v; });
}

Plain Lighten(const Bitmap& picture, Values values) {
  return MapChannels(picture, [&](std::int32_t v) { return v + Round(255 * values[0] / 100); });
}

Plain Darken(const Bitmap& picture, Values values) {
  return MapChannels(picture, [&](std::int32_t v) { return v + Round(-255 * values[0] / 100); });
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
    for (std::size_t c = 0; c < 3; ++c) p[c] = Byte(Round(luma + values[1] / 100 * room * (pure[c] - pureLuma)));
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
  const Plain plain = Premultiplied(InValues(picture));
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

// Old pixels and their weights in 16384ths for one new pixel.
std::map<std::int32_t, std::int32_t> Taps(std::int32_t i, std::int32_t from, std::int32_t to, bool bicubic) {
  const double step = static_cast<double>(from) / to;
  std::map<std::int32_t, double> exact;
  if (from == to) {
    exact[i] = 1;
  } else if (from > to) {
    for (std::int32_t j = 0; j < from; ++j) {
      const double covered = std::min((i + 1) * step, j + 1.0) - std::max(i * step, 1.0 * j);
      if (covered > 0) exact[j] = covered;
    }
  } else {
    const double middle = (i + 0.5) * step - 0.5;
    const std::int32_t reach = bicubic ? 2 : 3;
    for (std::int32_t j = Floor(middle) - reach + 1; j <= Floor(middle) + reach; ++j) {
      const double x = std::fabs(middle - j);
      const double turn = std::numbers::pi * x;
      if (!bicubic) {
        exact[j] = x == 0 ? 1 : x < 3 ? std::sin(turn) / turn * (std::sin(turn / 3) / (turn / 3)) : 0;
      } else {
        exact[j] = x < 1 ? 1.5 * x * x * x - 2.5 * x * x + 1 : x < 2 ? -0.5 * x * x * x + 2.5 * x * x - 4 * x + 2 : 0;
      }
    }
  }
  double sum = 0;
  for (const auto& [j, weight] : exact) sum += weight;
  double due = 0;
  std::int32_t given = 0;
  std::map<std::int32_t, std::int32_t> taps;
  for (const auto& [j, weight] : exact) {
    due += weight / sum * 16384;
    taps[j] = static_cast<std::int32_t>(std::lround(due)) - given;
    given += taps[j];
  }
  return taps;
}

Plain Resize(const Bitmap& picture, Values values) {
  const Plain plain = Premultiplied(InValues(picture));
  const auto newSize = [&](std::int32_t old, double pixels) {
    return pixels != 0 ? static_cast<std::int32_t>(pixels) : std::max(1, Round(old * values[0] / 100));
  };
  const Plain result(newSize(plain.width, values[1]), newSize(plain.height, values[2]), plain.bitsPerPixel);
  std::vector<std::map<std::int32_t, std::int32_t>> across;
  across.reserve(static_cast<std::size_t>(result.width));
  for (std::int32_t x = 0; x < result.width; ++x) across.push_back(Taps(x, plain.width, result.width, values[3] != 0));
  std::vector<Pixel> mixed(static_cast<std::size_t>(plain.width));
  Plain resized = result;
  for (std::int32_t y = 0; y < result.height; ++y) {
    const auto down = Taps(y, plain.height, result.height, values[3] != 0);
    for (std::int32_t x = 0; x < plain.width; ++x) {
      for (std::size_t c = 0; c < 4; ++c) {
        std::int32_t sum = 128;
        for (const auto& [line, weight] : down) sum += weight * plain.Near(x, line)[c];
        mixed[static_cast<std::size_t>(x)][c] = Floored(sum, 256);
      }
    }
    for (std::int32_t x = 0; x < result.width; ++x) {
      for (std::size_t c = 0; c < 4; ++c) {
        std::int32_t sum = 1 << 19;
        for (const auto& [column, weight] : across[static_cast<std::size_t>(x)]) {
          sum += weight * mixed[static_cast<std::size_t>(std::clamp(column, 0, plain.width - 1))][c];
        }
        resized.At(x, y)[c] = Byte(Floored(sum, 1 << 20));
      }
    }
  }
  return Unpremultiplied(resized);
}

Plain Blur(const Bitmap& picture, Values values) {
  const Plain plain = Premultiplied(InValues(picture));
  const auto radius = static_cast<std::int32_t>(std::ceil(3 * values[0]));
  std::vector<double> bell;
  double sum = 0;
  for (std::int32_t i = -radius; i <= radius; ++i) sum += std::exp(-0.5 * i * i / (values[0] * values[0]));
  std::vector<std::int32_t> weights{0};
  std::int32_t rest = 32768;
  for (std::int32_t i = 1; i <= radius; ++i) {
    weights.push_back(Round(32768 * std::exp(-0.5 * i * i / (values[0] * values[0])) / sum));
    rest -= 2 * weights.back();
  }
  weights[0] = rest;
  const auto times = [](std::int32_t value, std::int32_t weight) { return Floored(value * weight + 16384, 32768); };
  const auto mixed = [&](std::int32_t x, std::int32_t y, std::size_t c) {
    std::int32_t total = times(64 * plain.Near(x, y)[c], weights[0]);
    for (std::int32_t i = 1; i <= radius; ++i) {
      total += times(64 * (plain.Near(x, y - i)[c] + plain.Near(x, y + i)[c]), weights[static_cast<std::size_t>(i)]);
    }
    return std::min(total, 16383);
  };
  std::vector<Pixel> columns;
  for (std::int32_t y = 0; y < plain.height; ++y) {
    for (std::int32_t x = 0; x < plain.width; ++x) {
      columns.push_back({mixed(x, y, 0), mixed(x, y, 1), mixed(x, y, 2), mixed(x, y, 3)});
    }
  }
  const auto column = [&](std::int32_t x, std::int32_t y, std::size_t c) {
    return columns[plain.Index(std::clamp(x, 0, plain.width - 1), y)][c];
  };
  return Unpremultiplied(Each(plain, [&](std::int32_t x, std::int32_t y) {
    Pixel pixel{};
    for (std::size_t c = 0; c < 4; ++c) {
      std::int32_t total = times(column(x, y, c), weights[0]);
      for (std::int32_t i = 1; i <= radius; ++i) {
        total += times(column(x - i, y, c) + column(x + i, y, c), weights[static_cast<std::size_t>(i)]);
      }
      pixel[c] = Byte(Floored(total + 32, 64));
    }
    return pixel;
  }));
}

Plain Soften(const Bitmap& picture, Values /*values*/) {
  const Plain plain = Premultiplied(InValues(picture));
  return Unpremultiplied(Each(plain, [&](std::int32_t x, std::int32_t y) {
    Pixel pixel{};
    for (std::size_t c = 0; c < 4; ++c) pixel[c] = (Weighted(plain, x, y, c, Binomial) + 8) / 16;
    return pixel;
  }));
}

Plain Sharpen(const Bitmap& picture, Values values) {
  const Plain plain = InValues(picture);
  const std::int32_t amount = Round(values[0] * 2.56);
  return EachChannel(plain, [&](std::int32_t x, std::int32_t y, std::size_t c) {
    const std::int32_t self = plain.At(x, y)[c];
    return self + Floored(amount * (16 * self - Weighted(plain, x, y, c, Binomial)) + 2048, 4096);
  });
}

Plain Emboss(const Bitmap& picture, Values values) {
  const Plain plain = InValues(picture);
  const std::int32_t amount = Round(values[0] * 2.56);
  return EachChannel(plain, [&](std::int32_t x, std::int32_t y, std::size_t c) {
    const std::int32_t slope = Weighted(plain, x, y, c, {-2, -1, 0, -1, 0, 1, 0, 1, 2});
    return plain.At(x, y)[c] + Floored(amount * slope + 128, 256);
  });
}

Plain Edge(const Bitmap& picture, Values /*values*/) {
  const Plain plain = InValues(picture);
  return EachChannel(plain, [&](std::int32_t x, std::int32_t y, std::size_t c) {
    const double across = Weighted(plain, x, y, c, {-1, 0, 1, -2, 0, 2, -1, 0, 1});
    const double down = Weighted(plain, x, y, c, {-1, -2, -1, 0, 0, 0, 1, 2, 1});
    return Round(std::sqrt(across * across + down * down));
  });
}

Plain Spread(const Bitmap& picture, bool light) {
  const bool oneBit = picture.BitsPerPixel() == 1;
  const Plain plain = oneBit ? Read(picture) : InValues(picture);
  if (!oneBit) {
    return EachChannel(plain, [&](std::int32_t x, std::int32_t y, std::size_t c) {
      std::int32_t most = plain.At(x, y)[c];
      for (std::int32_t i = 0; i < 9; ++i) {
        const std::int32_t value = plain.Near(x + i % 3 - 1, y + i / 3 - 1)[c];
        most = light ? std::max(most, value) : std::min(most, value);
      }
      return most;
    });
  }
  // Of two colours the lighter one spreads, or the darker.
  const auto weight = [](const Pixel& p) { return 299 * p[2] + 587 * p[1] + 114 * p[0]; };
  return Each(plain, [&](std::int32_t x, std::int32_t y) {
    Pixel most = plain.At(x, y);
    for (std::int32_t i = 0; i < 9; ++i) {
      const Pixel& other = plain.Near(x + i % 3 - 1, y + i / 3 - 1);
      if (light ? weight(other) > weight(most) : weight(other) < weight(most)) most = other;
    }
    return most;
  });
}

Plain Dilate(const Bitmap& picture, Values /*values*/) { return Spread(picture, true); }
Plain Erode(const Bitmap& picture, Values /*values*/) { return Spread(picture, false); }

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
      {"Dilate", Dilate},
      {"Dither", Dither},
      {"Edge", Edge},
      {"Emboss", Emboss},
      {"Erode", Erode},
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
