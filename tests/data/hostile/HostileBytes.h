#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace kw::test {

using HostileBytes = std::vector<std::uint8_t>;

inline void Add(HostileBytes& to, std::uint64_t value, unsigned size) {
  for (unsigned i = 0; i < size; ++i) to.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}
inline void AddBigEndian(HostileBytes& to, std::uint64_t value, unsigned size) {
  for (unsigned i = size; i > 0; --i) to.push_back(static_cast<std::uint8_t>(value >> (8 * (i - 1))));
}
inline void Add(HostileBytes& to, std::string_view text) { to.insert(to.end(), text.begin(), text.end()); }
inline void Add(HostileBytes& to, std::span<const std::uint8_t> bytes) {
  to.insert(to.end(), bytes.begin(), bytes.end());
}

// Bits from the highest of a byte down.
class HighBits {
public:
  void Put(std::uint32_t code, unsigned count) {
    for (unsigned i = count; i > 0; --i) {
      if (used % 8 == 0) bytes.push_back(0);
      bytes.back() = static_cast<std::uint8_t>(bytes.back() | ((code >> (i - 1)) & 1U) << (7 - used % 8));
      ++used;
    }
  }
  HostileBytes bytes;

private:
  std::size_t used = 0;
};

// Bits from the lowest of a byte up.
class LowBits {
public:
  void Put(std::uint32_t code, unsigned count) {
    for (unsigned i = 0; i < count; ++i) {
      if (used % 8 == 0) bytes.push_back(0);
      bytes.back() = static_cast<std::uint8_t>(bytes.back() | ((code >> i) & 1U) << (used % 8));
      ++used;
    }
  }
  HostileBytes bytes;

private:
  std::size_t used = 0;
};

}  // namespace kw::test
