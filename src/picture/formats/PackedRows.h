#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace kw {

// The memory of `count` rows, `stride` bytes from one to the next, whose last bytes hold the `rowBytes` of each row one
// behind the other. `stride` is not smaller than `rowBytes`, which is not 0.
struct PackedRows {
  std::uint8_t* base = nullptr;
  std::size_t stride = 0;
  std::size_t rowBytes = 0;
  std::size_t count = 0;
};

// Calls move(from, to) for each row, which writes the row at its place, and which may be called by several threads at
// once. The two may overlap; `from` may also be a copy. Throws std::bad_alloc before the first call.
void SpreadRows(const PackedRows& rows, const std::function<void(const std::uint8_t* from, std::uint8_t* to)>& move);

}  // namespace kw
