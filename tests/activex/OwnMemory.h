#pragma once

#include <atomic>

#include "tests/activex/Ocx.h"
#include "tests/windows/ImportPatch.h"

namespace kw::test {

// Counts, while it lives, what the control's library takes from the C runtime and gives back.
class OwnMemory {
public:
  static long long Bytes() { return bytes; }
  static long Blocks() { return blocks; }
  // The most bytes at once since ForgetPeak; near enough if several threads take memory.
  static long long Peak() { return peak; }
  static void ForgetPeak() { peak = bytes.load(); }

private:
  static void* Count(void* memory);
  static void Forget(void* memory);
  static void* Allocate(std::size_t size);
  static void* AllocateCleared(std::size_t count, std::size_t size);
  static void* Resize(void* memory, std::size_t size);
  static void Free(void* memory);
  static char* Duplicate(const char* text);

  static inline std::atomic<long long> bytes = 0;
  static inline std::atomic<long long> peak = 0;
  static inline std::atomic<long> blocks = 0;
  ImportPatch allocate{Ocx::Library(), "malloc", &Allocate};
  ImportPatch allocateCleared{Ocx::Library(), "calloc", &AllocateCleared};
  ImportPatch resize{Ocx::Library(), "realloc", &Resize};
  ImportPatch duplicate{Ocx::Library(), "_strdup", &Duplicate};
  ImportPatch free{Ocx::Library(), "free", &Free};
};

}  // namespace kw::test
