#include "fuzz/EffectCase.h"

#include <array>
#include <bit>

#include "picture/Bytes.h"

namespace kw {
namespace {

constexpr std::array<int, 5> Depths{1, 4, 8, 24, 32};
constexpr std::size_t HeadBytes = 4;

// Repeats the bytes for ever; zeros if there are none.
class Endless {
public:
  explicit Endless(std::span<const std::uint8_t> source) : bytes(source) {}
  std::uint8_t Next() { return bytes.empty() ? std::uint8_t{0} : bytes[at++ % bytes.size()]; }

private:
  std::span<const std::uint8_t> bytes;
  std::size_t at = 0;
};

}  // namespace

std::optional<EffectCase> ReadEffectCase(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < HeadBytes) return std::nullopt;
  EffectCase result;
  result.effect = &Effects()[bytes[0] % Effects().size()];
  const std::size_t count = result.effect->parameters.size();
  if (bytes.size() < HeadBytes + count * 8) return std::nullopt;
  for (std::size_t i = 0; i < count; ++i) {
    result.values.push_back(std::bit_cast<double>(NumberAt<std::uint64_t>(bytes, HeadBytes + i * 8)));
  }
  const int depth = Depths[bytes[1] % Depths.size()];
  result.picture = Bitmap(bytes[2] % 64 + 1, bytes[3] % 64 + 1, depth);
  Endless rest(bytes.subspan(HeadBytes + count * 8));
  if (depth <= 8) {
    std::vector<Rgb> palette((std::size_t{1} << depth) / (bytes[1] >= 128 ? 2 : 1));
    for (Rgb& entry : palette) entry = {rest.Next(), rest.Next(), rest.Next()};
    result.picture.SetPalette(std::move(palette));
  }
  for (std::int32_t y = 0; y < result.picture.Height(); ++y) {
    for (std::uint8_t& byte : result.picture.MutableRow(y)) byte = rest.Next();
  }
  return result;
}

std::vector<std::uint8_t> WriteEffectCase(std::size_t effect, std::size_t depth, std::uint8_t width,
                                          std::uint8_t height) {
  std::vector<std::uint8_t> bytes{static_cast<std::uint8_t>(effect), static_cast<std::uint8_t>(depth), width, height};
  for (const Parameter& parameter : Effects()[effect].parameters) {
    AppendNumber(bytes, std::bit_cast<std::uint64_t>(parameter.standard), 8);
  }
  for (unsigned i = 0; i < 97; ++i) bytes.push_back(static_cast<std::uint8_t>(i * i * 29));
  return bytes;
}

}  // namespace kw
