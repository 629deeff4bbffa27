#pragma once

#include <cstddef>

namespace kw {

// Memory for the pixels of a picture. Owned by who took it, until it is given back.
struct PixelBlock {
  void* begin = nullptr;
  std::size_t bytes = 0;
};

// A block of at least that many bytes, which may be those of an earlier picture; `begin` is null if there is no memory.
// Any thread may call.
PixelBlock TakePixelBlock(std::size_t bytes) noexcept;
// As above, every byte 0.
PixelBlock TakeZeroedPixelBlock(std::size_t bytes) noexcept;
void GiveBack(const PixelBlock& block) noexcept;

// The system provides a large block page by page, and fills each of them with zeros first. For a scanned page that
// takes longer than most effects. So as long as one of these lives, the last large block that a picture gave back is
// spared for the next picture of about its size. It is freed before another large block is made, so that a change from
// one page to the next holds two copies of the page as without it; and with the last of these.
class SparePixelBlock {
public:
  // No block of less is spared, because the system has them at hand; none of more, because the host needs its memory
  // itself. In bytes.
  static constexpr std::size_t Least = std::size_t{1} << 20U;
  static constexpr std::size_t Most = std::size_t{1} << (sizeof(void*) > 4 ? 26U : 25U);

  SparePixelBlock() noexcept;
  SparePixelBlock(const SparePixelBlock&) = delete;
  SparePixelBlock& operator=(const SparePixelBlock&) = delete;
  ~SparePixelBlock();

  // The bytes of the spared block; 0 if there is none.
  static std::size_t Bytes() noexcept;
};

}  // namespace kw
