#include "tests/windows/FailingMemory.h"

#include <windows.h>

#include <cstdlib>
#include <new>

namespace kw::test {
namespace {

DWORD failingThread = 0;
long requestsLeft = 0;

}  // namespace

FailingMemory::FailingMemory(long which) {
  requestsLeft = which;
  failingThread = GetCurrentThreadId();
}

FailingMemory::~FailingMemory() { failingThread = 0; }

bool FailingMemory::HasFailed() const { return requestsLeft <= 0; }

// The program's memory, so that a request can be refused.
static void* Request(std::size_t size) {
  const bool isRefused = failingThread == GetCurrentThreadId() && --requestsLeft == 0;
  void* const memory = isRefused ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace kw::test

void* operator new(std::size_t size) { return kw::test::Request(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
