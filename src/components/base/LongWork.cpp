#include "components/base/LongWork.h"

#include <atomic>

namespace kw {
namespace {

constinit std::atomic<void (*)() noexcept> watcher = nullptr;

}  // namespace

void NoteWork() noexcept {
  if (const auto watch = watcher.load(std::memory_order_relaxed)) watch();
}

void WatchWork(void (*watch)() noexcept) noexcept { watcher = watch; }

}  // namespace kw
