#include "picture/Stream.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "components/base/RunTimeError.h"

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

std::size_t MemoryFile::Read(void* to, std::size_t count) noexcept {
  MemoryReader reader(bytes);
  reader.Seek(position);
  const std::size_t taken = reader.Read(to, count);
  position += taken;
  return taken;
}

std::size_t MemoryFile::Write(const void* from, std::size_t count) noexcept {
  if (count == 0 || position > bytes.max_size() - count) return 0;
  const auto at = static_cast<std::size_t>(position);
  try {
    if (at + count > bytes.size()) bytes.resize(at + count);
  } catch (const std::bad_alloc&) {
    hasFailed = true;
    return 0;
  }
  std::memcpy(bytes.data() + at, from, count);
  position += count;
  return count;
}

bool MemoryFile::Seek(std::uint64_t to) noexcept {
  position = to;
  return true;
}

void MemoryFile::RaiseFailure() const {
  if (hasFailed) Raise(ErrorNumber::OutOfMemory);
}

}  // namespace kw
