#include "picture/Stream.h"

#include <algorithm>
#include <cstring>

namespace kw {

std::size_t MemoryReader::Read(void* to, std::size_t count) noexcept {
  if (position >= bytes.size()) return 0;
  const std::size_t taken = std::min(count, bytes.size() - static_cast<std::size_t>(position));
  if (taken != 0) std::memcpy(to, bytes.data() + position, taken);
  position += taken;
  return taken;
}

std::size_t MemoryReader::Write(const void* /*from*/, std::size_t /*count*/) noexcept { return 0; }

bool MemoryReader::Seek(std::uint64_t to) noexcept {
  position = to;
  return true;
}

}  // namespace kw
