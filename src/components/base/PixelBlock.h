#pragma once

#include <cstddef>

namespace kw {

// Memory for the pixels of a picture. Owned by who took it, until it is given back.
//
// The system provides a large block page by page, and fills each of them with zeros first. For a scanned page that
// takes longer than most effects. So the last large block that was given back is spared for the next picture, as long
// as a picture lives that is of its size or a little smaller. It is freed before another large block is made, so a
// change from one page to the next holds no more than two copies of the page.
struct PixelBlock {
  // Smaller ones are not spared, because the system has them at hand; larger ones are not, because the host needs its
  // memory itself. In bytes.
  static constexpr std::size_t LeastSpared = std::size_t{1} << 20U;
  static constexpr std::size_t MostSpared = std::size_t{1} << (sizeof(void*) > 4 ? 26U : 25U);

  void* begin = nullptr;
  std::size_t bytes = 0;
};

// A block of at least that many bytes, which may be those of an earlier picture; `begin` is null if there is no memory.
// Any thread may call.
PixelBlock TakePixelBlock(std::size_t bytes) noexcept;
// As above, every byte 0.
PixelBlock TakeZeroedPixelBlock(std::size_t bytes) noexcept;
void GiveBack(const PixelBlock& block) noexcept;

// The bytes of the spared block; 0 if there is none.
std::size_t SparedBytes() noexcept;
// For work that needs much memory of its own, and no picture of the size of the one before.
void FreeSparedBlock() noexcept;

}  // namespace kw
