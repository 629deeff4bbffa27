#pragma once

#include <atomic>
#include <cstdint>
#include <functional>

#include "picture/formats/TiffLayout.h"

namespace kw {

// Reads the rows of a page whose samples are stored as they are, piece by piece, so that a piece moves to its place
// while it is in the caches. Several threads may share the pieces: while one reads, another one moves.
class PlainRows {
public:
  explicit PlainRows(const TiffPage& page);

  // Whether the page's rows are stored in that way, byte by byte, and are short enough for a piece.
  static bool Suits(const TiffPage& page);

  // Takes pieces until none is left, and calls take(bytes, y) for each of their rows. `own` is the page in a handle of
  // the calling thread. Returns false if bytes are missing; the rows of other threads may still come.
  bool Read(const TiffPage& own, const std::function<void(const std::uint8_t* bytes, std::uint32_t y)>& take);

private:
  static constexpr std::size_t PieceBytes = std::size_t{128} << 10U;

  bool IsWhole(const TiffPage& own) const;

  std::uint32_t height;
  std::uint32_t rowsPerStrip;
  std::size_t rowBytes;
  std::uint32_t rowsPerPiece;
  std::atomic<std::uint32_t> nextPiece{0};
};

}  // namespace kw
