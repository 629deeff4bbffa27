#include "components/base/PixelBlock.h"

#include <cstdlib>
#include <cstring>
#include <mutex>
#include <utility>

#include "components/base/RowPadding.h"
#include "components/base/SystemMemory.h"

namespace kw {
namespace {

struct Spare {
  std::mutex lock;
  int keepers = 0;
  PixelBlock block;
};

Spare spare;

bool IsLarge(std::size_t bytes) { return bytes >= SparePixelBlock::Least; }

// A picture that takes a larger block than it needs keeps the rest from others; so only a little larger a one.
bool Serves(const PixelBlock& block, std::size_t bytes) {
  return block.begin != nullptr && block.bytes >= bytes && block.bytes - bytes <= bytes / 4;
}

void Free(const PixelBlock& block) noexcept {
  AllowBytes(block.begin, block.bytes);
  std::free(block.begin);
}

// The spared block, if it serves; else it is freed.
PixelBlock TakeSpare(std::size_t bytes) noexcept {
  PixelBlock block;
  {
    const std::scoped_lock lock(spare.lock);
    block = std::exchange(spare.block, {});
  }
  if (Serves(block, bytes)) {
    AllowBytes(block.begin, block.bytes);
    return block;
  }
  Free(block);
  return {};
}

PixelBlock Take(std::size_t bytes, bool isZeroed) noexcept {
  if (IsLarge(bytes)) {
    if (const PixelBlock spared = TakeSpare(bytes); spared.begin != nullptr) {
      if (isZeroed) std::memset(spared.begin, 0, bytes);
      return spared;
    }
  }
  const PixelBlock block = {isZeroed ? std::calloc(bytes, 1) : std::malloc(bytes), bytes};
  if (block.begin != nullptr) PreferLargePages(block.begin, bytes);
  return block;
}

}  // namespace

PixelBlock TakePixelBlock(std::size_t bytes) noexcept { return Take(bytes, false); }

PixelBlock TakeZeroedPixelBlock(std::size_t bytes) noexcept { return Take(bytes, true); }

void GiveBack(const PixelBlock& block) noexcept {
  PixelBlock old = block;
  if (IsLarge(block.bytes) && block.bytes <= SparePixelBlock::Most) {
    const std::scoped_lock lock(spare.lock);
    if (spare.keepers > 0) {
      // Who still reads a picture that is gone is found out.
      AllowBytes(block.begin, block.bytes);
      ForbidBytes(block.begin, block.bytes);
      old = std::exchange(spare.block, block);
    }
  }
  Free(old);
}

SparePixelBlock::SparePixelBlock() noexcept {
  const std::scoped_lock lock(spare.lock);
  ++spare.keepers;
}

SparePixelBlock::~SparePixelBlock() {
  PixelBlock last;
  {
    const std::scoped_lock lock(spare.lock);
    if (--spare.keepers == 0) last = std::exchange(spare.block, {});
  }
  Free(last);
}

std::size_t SparePixelBlock::Bytes() noexcept {
  const std::scoped_lock lock(spare.lock);
  return spare.block.bytes;
}

}  // namespace kw
