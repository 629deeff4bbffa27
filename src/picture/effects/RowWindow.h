#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "components/base/Bitmap.h"

namespace kw {

// How a picture is filtered in place: each new row is made of the old rows around it, of which only those few are kept.
struct RowFilter {
  // Rows above and below that a row needs.
  std::int32_t radius = 1;
  // Bytes that lie before and behind a row that was taken.
  std::size_t margin = 0;
  // Bytes of working memory that each thread hands to `make`, besides.
  std::size_t scratchBytes = 0;
  // Takes an old row, at the beginning of its pixels, into `to` and fills the margins on both sides. Up to
  // RowAlignment bytes more behind the margin may be written.
  std::function<void(const std::uint8_t* from, std::uint8_t* to)> take;
  // Makes a row. rows[0] to rows[2 * radius] are the old ones, from `radius` above to `radius` below, beyond the first
  // and last row of the picture these again. Bytes up to the end of the row's alignment may be written.
  std::function<void(const std::uint8_t* const* rows, std::uint8_t* to, std::uint8_t* scratch)> make;
};

// Filters every row. Works in bands where `picture` is large; the functions are called from several threads and must
// not throw.
void FilterRows(Bitmap& picture, const RowFilter& filter);

// Copies a row of `count` bytes and repeats its first and last pixel of `size` bytes over margins of `margin` bytes, a
// multiple of that size.
void TakeRepeated(const std::uint8_t* from, std::uint8_t* to, std::size_t count, std::size_t size, std::size_t margin);

}  // namespace kw
