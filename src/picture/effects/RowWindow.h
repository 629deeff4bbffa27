#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "components/base/Bitmap.h"
#include "picture/effects/Pixels.h"

namespace kw {

// A filter of rows: each new row is computed from the old rows around it, and only those are kept.
struct RowFilter {
  // Rows above and below that a row needs.
  std::int32_t radius = 1;
  // Bytes before and behind the pixels of a kept row.
  std::size_t margin = 0;
  // Bytes of scratch memory for `make`.
  std::size_t scratchBytes = 0;
  // Copies an old row to `to`, the beginning of its pixels, and fills the margins on both sides. May write up to
  // RowAlignment bytes behind the margin.
  std::function<void(const std::uint8_t* from, std::uint8_t* to)> take;
  // Computes a row. rows[0] to rows[2 * radius] are the kept rows from `radius` above to `radius` below; outside the
  // picture its first or last row is repeated. May write up to the end of the row's alignment.
  std::function<void(const std::uint8_t* const* rows, std::uint8_t* to, std::uint8_t* scratch)> make;
  // Bytes of a kept row's pixels, if they are not those of the picture.
  std::size_t keptBytes = 0;
};

// The rows that a filter takes and those that it makes, which may lie in the same place. `rowBytes` are those of an old
// row's pixels.
struct FilteredRows {
  ConstPixels old;
  Pixels made;
  std::int32_t height;
  std::size_t rowBytes;
};

// Filters every row. A large picture is filtered in row bands: the functions are called from several threads and must
// not throw.
void FilterRows(const FilteredRows& rows, const RowFilter& filter);
// Those of a picture.
void FilterRows(Bitmap& picture, const RowFilter& filter);

// Copies a row of `count` bytes and repeats its first and last pixel of `size` bytes over margins of `margin` bytes, a
// multiple of that size.
void TakeRepeated(const std::uint8_t* from, std::uint8_t* to, std::size_t count, std::size_t size, std::size_t margin);

}  // namespace kw
