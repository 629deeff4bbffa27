#include "picture/formats/PackedRows.h"

#include <algorithm>
#include <vector>

#include "picture/effects/ParallelRows.h"

namespace kw {

void SpreadRows(const PackedRows& rows, const std::function<void(const std::uint8_t* from, std::uint8_t* to)>& move) {
  const std::size_t gap = rows.stride - rows.rowBytes;
  const std::uint8_t* const packed = rows.base + rows.count * gap;
  // The first rows of a band come to lie on so many packed ones of the band before it, or fewer.
  const std::size_t covered = rows.count * gap / rows.rowBytes + 2;
  const std::size_t threads = ThreadsForWork(2 * rows.count * rows.rowBytes);
  const std::size_t most = std::max(std::min(threads, rows.count / covered), std::size_t{1});
  const std::size_t height = (rows.count + most - 1) / most;
  const std::size_t bands = (rows.count + height - 1) / height;
  const auto endOf = [&](std::size_t band) { return std::min((band + 1) * height, rows.count); };
  // Those of each band but the last one.
  std::vector<std::uint8_t> copies((bands - 1) * covered * rows.rowBytes);
  for (std::size_t band = 0; band + 1 < bands; ++band) {
    std::copy_n(packed + (endOf(band) - covered) * rows.rowBytes, covered * rows.rowBytes,
                copies.data() + band * covered * rows.rowBytes);
  }
  ParallelFor(bands, [&](std::size_t band) {
    const std::size_t end = endOf(band);
    const std::size_t copied = band + 1 < bands ? end - covered : end;
    for (std::size_t y = band * height; y < copied; ++y) {
      move(packed + y * rows.rowBytes, rows.base + y * rows.stride);
    }
    for (std::size_t y = copied; y < end; ++y) {
      move(copies.data() + (band * covered + y - copied) * rows.rowBytes, rows.base + y * rows.stride);
    }
  });
}

}  // namespace kw
