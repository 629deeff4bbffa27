#pragma once

#include <cstddef>
#include <cstdint>

// What lies in a Bitmap's memory besides its pixels: the padding from the end of a row to the next, and a few bytes
// around all rows. Builds with the address sanitizer forbid it, so that they find who goes past the end of a row.
//
// Kernels that work on whole vectors may read the padding, and write it in a picture that is theirs: Pixels and
// ConstPixels, by which they get at the rows, allow it. What they make must not depend on it. The bytes around all rows
// stay forbidden.

#if defined(__SANITIZE_ADDRESS__)
#define KW_FORBIDS_PADDING 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KW_FORBIDS_PADDING 1
#endif
#endif

#ifdef KW_FORBIDS_PADDING
#include <sanitizer/asan_interface.h>
#endif

namespace kw {

// The rows of a picture in memory.
struct RowPlaces {
  const std::uint8_t* first = nullptr;
  std::size_t stride = 0;
  std::size_t rowBytes = 0;
  std::size_t height = 0;
};

#ifdef KW_FORBIDS_PADDING
inline void ForbidBytes(const void* from, std::size_t count) { __asan_poison_memory_region(from, count); }
inline void AllowBytes(const void* from, std::size_t count) { __asan_unpoison_memory_region(from, count); }
inline void ForbidPadding(const RowPlaces& rows) {
  for (std::size_t y = 0; y < rows.height; ++y) {
    ForbidBytes(rows.first + y * rows.stride + rows.rowBytes, rows.stride - rows.rowBytes);
  }
}
inline void AllowPadding(const RowPlaces& rows) { AllowBytes(rows.first, rows.stride * rows.height); }
constexpr bool ForbidsPadding = true;
#else
inline void ForbidBytes(const void* /*from*/, std::size_t /*count*/) {}
inline void AllowBytes(const void* /*from*/, std::size_t /*count*/) {}
inline void ForbidPadding(const RowPlaces& /*rows*/) {}
inline void AllowPadding(const RowPlaces& /*rows*/) {}
constexpr bool ForbidsPadding = false;
#endif

}  // namespace kw
