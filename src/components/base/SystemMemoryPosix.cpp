#ifndef _WIN32
#include "components/base/SystemMemory.h"

#include <cstdint>

#include <sys/mman.h>

namespace kw {

void PreferLargePages(void* block, std::size_t bytes) noexcept {
#ifdef MADV_HUGEPAGE
  // The usual size. Where another one is in use, the system takes what fits.
  constexpr std::size_t page = std::size_t{2} << 20U;
  const std::size_t before = (page - reinterpret_cast<std::uintptr_t>(block) % page) % page;
  if (bytes < before + page) return;
  // A system without such pages refuses, and nothing is lost.
  static_cast<void>(madvise(static_cast<char*>(block) + before, (bytes - before) / page * page, MADV_HUGEPAGE));
#else
  static_cast<void>(block);
  static_cast<void>(bytes);
#endif
}

}  // namespace kw
#endif
