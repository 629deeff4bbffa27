#include "tests/activex/OwnMemory.h"

#include <malloc.h>

#include <cstdlib>
#include <cstring>

namespace kw::test {

void* OwnMemory::Count(void* memory) {
  if (memory == nullptr) return nullptr;
  const long long now = bytes += static_cast<long long>(_msize(memory));
  if (now > peak) peak = now;
  ++blocks;
  return memory;
}

// The block may be from before the count began; what matters is how much comes and goes.
void OwnMemory::Forget(void* memory) {
  if (memory == nullptr) return;
  bytes -= static_cast<long long>(_msize(memory));
  --blocks;
}

void* OwnMemory::Allocate(std::size_t size) { return Count(std::malloc(size)); }

void* OwnMemory::AllocateCleared(std::size_t count, std::size_t size) { return Count(std::calloc(count, size)); }

void* OwnMemory::Resize(void* memory, std::size_t size) {
  const long long before = memory == nullptr ? 0 : static_cast<long long>(_msize(memory));
  void* const resized = std::realloc(memory, size);
  if (resized == nullptr && size != 0) return nullptr;
  if (memory != nullptr) --blocks;
  bytes -= before;
  return Count(resized);
}

void OwnMemory::Free(void* memory) {
  Forget(memory);
  std::free(memory);
}

char* OwnMemory::Duplicate(const char* text) { return static_cast<char*>(Count(_strdup(text))); }

}  // namespace kw::test
