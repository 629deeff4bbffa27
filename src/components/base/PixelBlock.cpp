#include "components/base/PixelBlock.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <utility>

#include "components/base/RowPadding.h"
#include "components/base/SystemMemory.h"

namespace kw {
namespace {

// Of one process there are few pages at a time. Blocks beyond that many are no reason to spare one.
constexpr std::size_t MostNoted = 32;

std::mutex poolLock;
// The sizes of the large blocks in use; 0 for none.
std::array<std::size_t, MostNoted> living{};
PixelBlock spare;

bool IsLarge(std::size_t bytes) { return bytes >= PixelBlock::LeastSpared; }

// A picture that takes a larger block than it needs keeps the rest from others; so only a little larger a one.
bool Serves(const PixelBlock& block, std::size_t bytes) {
  return block.begin != nullptr && block.bytes >= bytes && block.bytes - bytes <= bytes / 4;
}

bool IsWanted(const PixelBlock& block) {
  return block.bytes <= PixelBlock::MostSpared &&
         std::ranges::any_of(living, [&](std::size_t bytes) { return bytes != 0 && Serves(block, bytes); });
}

// Notes a block that was taken, if `former` is 0, or given back, if `bytes` is 0.
void Note(std::size_t former, std::size_t bytes) {
  if (auto* const place = std::ranges::find(living, former); place != living.end()) *place = bytes;
}

void Free(const PixelBlock& block) noexcept {
  AllowBytes(block.begin, block.bytes);
  std::free(block.begin);
}

// The spared block, if it serves; else it is freed.
PixelBlock TakeSpare(std::size_t bytes) noexcept {
  PixelBlock block;
  {
    const std::scoped_lock lock(poolLock);
    block = std::exchange(spare, {});
    if (Serves(block, bytes)) Note(0, block.bytes);
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
  if (block.begin == nullptr || !IsLarge(bytes)) return block;
  PreferLargePages(block.begin, bytes);
  const std::scoped_lock lock(poolLock);
  Note(0, bytes);
  return block;
}

}  // namespace

PixelBlock TakePixelBlock(std::size_t bytes) noexcept { return Take(bytes, false); }

PixelBlock TakeZeroedPixelBlock(std::size_t bytes) noexcept { return Take(bytes, true); }

void GiveBack(const PixelBlock& block) noexcept {
  if (!IsLarge(block.bytes)) return Free(block);
  PixelBlock given = block;
  PixelBlock former;
  {
    const std::scoped_lock lock(poolLock);
    Note(block.bytes, 0);
    if (IsWanted(given)) {
      // Who still reads a picture that is gone is found out.
      AllowBytes(given.begin, given.bytes);
      ForbidBytes(given.begin, given.bytes);
      std::swap(spare, given);
    }
    if (!IsWanted(spare)) former = std::exchange(spare, {});
  }
  Free(given);
  Free(former);
}

void FreeSparedBlock() noexcept {
  PixelBlock block;
  {
    const std::scoped_lock lock(poolLock);
    block = std::exchange(spare, {});
  }
  Free(block);
}

std::size_t SparedBytes() noexcept {
  const std::scoped_lock lock(poolLock);
  return spare.bytes;
}

}  // namespace kw
