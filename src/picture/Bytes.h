#pragma once

#include <cstdint>
#include <span>
#include <type_traits>
#include <vector>

namespace kw {

enum class ByteOrder { Little, Big };

// The unsigned number in the first sizeof(Number) bytes at `offset`; the caller keeps it inside the block.
template <typename Number>
Number NumberAt(std::span<const std::uint8_t> bytes, std::size_t offset, ByteOrder order = ByteOrder::Little) {
  static_assert(std::is_unsigned_v<Number>);
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < sizeof(Number); ++i) {
    const std::size_t place = order == ByteOrder::Little ? sizeof(Number) - 1 - i : i;
    value = value << 8U | bytes[offset + place];
  }
  return static_cast<Number>(value);
}

// Appends the low `count` bytes of `value`.
inline void AppendNumber(std::vector<std::uint8_t>& to, std::uint64_t value, std::size_t count,
                         ByteOrder order = ByteOrder::Little) {
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t place = order == ByteOrder::Little ? i : count - 1 - i;
    to.push_back(static_cast<std::uint8_t>(value >> (8 * place)));
  }
}

}  // namespace kw
