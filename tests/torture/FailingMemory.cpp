#include "tests/torture/FailingMemory.h"

#include <dlfcn.h>
#include <malloc.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>

#include "tests/support/Watched.h"

// The program's own malloc stands before that of the C library, and before that of the address sanitizer, which both
// keep another name for theirs.
#if defined(__SANITIZE_ADDRESS__) || KW_HAS_FEATURE(address_sanitizer)
#define KW_SYSTEM(name) __interceptor_##name
#else
#define KW_SYSTEM(name) __libc_##name
#endif

extern "C" {
void* KW_SYSTEM(malloc)(std::size_t size);
void* KW_SYSTEM(calloc)(std::size_t count, std::size_t size);
void* KW_SYSTEM(realloc)(void* memory, std::size_t size);
void* KW_SYSTEM(memalign)(std::size_t alignment, std::size_t size);
void KW_SYSTEM(free)(void* memory);
}

namespace kw::test {
namespace {

// Before the run time has begun, there is no thread's storage yet: `isArmed` is looked at first.
bool isArmed = false;
thread_local bool isCounted = false;
FailingMemory::Failing failing = FailingMemory::Failing::Never;
long firstFailing = 0;
long requests = 0;

// A place for a debugger to stop at.
__attribute__((noinline, no_sanitize("address", "undefined"))) bool Refuse() {
  errno = ENOMEM;
  return true;
}

// Runs before the sanitizers have begun, too.
__attribute__((no_sanitize("address", "undefined"))) bool IsRefused() {
  if (!isArmed || !isCounted) return false;
  ++requests;
  switch (failing) {
    case FailingMemory::Failing::Never:
      return false;
    case FailingMemory::Failing::Once:
      return requests == firstFailing && Refuse();
    case FailingMemory::Failing::FromThenOn:
      return requests >= firstFailing && Refuse();
  }
  return false;
}

// libtiff does not survive that it gets no larger list of tags, see TiffHandle.
__attribute__((no_sanitize("address", "undefined"))) bool IsRefusedTo(void* caller) {
  if (!isArmed || !isCounted) return false;
  Dl_info library{};
  const bool isKnown = dladdr(caller, &library) != 0 && library.dli_fname != nullptr;
  return !(isKnown && std::strstr(library.dli_fname, "libtiff") != nullptr) && IsRefused();
}

// Before the run time has begun, nothing but these may be touched.
bool isMeasured = false;
std::ptrdiff_t heldBytes = 0;
std::ptrdiff_t mostBytes = 0;

// Returns `memory`, which is held from now on, or for `sign` -1 no longer.
__attribute__((no_sanitize("address", "undefined", "thread"))) void* Count(void* memory, std::ptrdiff_t sign = 1) {
  if (!__atomic_load_n(&isMeasured, __ATOMIC_RELAXED) || memory == nullptr) return memory;
  const auto size = static_cast<std::ptrdiff_t>(malloc_usable_size(memory));
  const std::ptrdiff_t held = __atomic_add_fetch(&heldBytes, sign * size, __ATOMIC_RELAXED);
  std::ptrdiff_t most = __atomic_load_n(&mostBytes, __ATOMIC_RELAXED);
  while (held > most &&
         !__atomic_compare_exchange_n(&mostBytes, &most, held, false, __ATOMIC_RELAXED, __ATOMIC_RELAXED)) {
  }
  return memory;
}

void* Request(std::size_t size) noexcept {
  return IsRefused() ? nullptr : Count(KW_SYSTEM(malloc)(size == 0 ? 1 : size));
}

void* RequestAligned(std::size_t size, std::align_val_t alignment) noexcept {
  return IsRefused() ? nullptr : Count(KW_SYSTEM(memalign)(static_cast<std::size_t>(alignment), size == 0 ? 1 : size));
}

void* OrThrow(void* memory) {
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

FailingMemory::FailingMemory(Failing kind, long which) {
  failing = kind;
  firstFailing = which;
  requests = 0;
  isCounted = true;
  isArmed = true;
}

FailingMemory::~FailingMemory() {
  isArmed = false;
  isCounted = false;
}

long FailingMemory::Requests() const { return requests; }

bool FailingMemory::HasFailed() const { return failing != Failing::Never && requests >= firstFailing; }

HeldMemory::HeldMemory() {
  heldBytes = 0;
  mostBytes = 0;
  __atomic_store_n(&isMeasured, true, __ATOMIC_SEQ_CST);
}

HeldMemory::~HeldMemory() { __atomic_store_n(&isMeasured, false, __ATOMIC_SEQ_CST); }

std::int64_t HeldMemory::Peak() const { return __atomic_load_n(&mostBytes, __ATOMIC_SEQ_CST); }

}  // namespace kw::test

using kw::test::Count;
using kw::test::OrThrow;
using kw::test::Request;
using kw::test::RequestAligned;

extern "C" {
__attribute__((no_sanitize("address", "undefined"))) void* malloc(std::size_t size) {
  return kw::test::IsRefused() ? nullptr : Count(KW_SYSTEM(malloc)(size));
}
// The system's header has names for the arguments that only it may use.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
__attribute__((no_sanitize("address", "undefined"))) void* calloc(std::size_t count, std::size_t size) {
  return kw::test::IsRefused() ? nullptr : Count(KW_SYSTEM(calloc)(count, size));
}
__attribute__((no_sanitize("address", "undefined"))) void* realloc(void* memory, std::size_t size) {
  if (kw::test::IsRefusedTo(__builtin_return_address(0))) return nullptr;
  Count(memory, -1);
  void* const larger = KW_SYSTEM(realloc)(memory, size);
  Count(larger == nullptr && size != 0 ? memory : larger);
  return larger;
}
__attribute__((no_sanitize("address", "undefined"))) void free(void* memory) { KW_SYSTEM(free)(Count(memory, -1)); }
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
}

void* operator new(std::size_t size) { return OrThrow(Request(size)); }
void* operator new[](std::size_t size) { return OrThrow(Request(size)); }
void* operator new(std::size_t size, const std::nothrow_t& /*unused*/) noexcept { return Request(size); }
void* operator new[](std::size_t size, const std::nothrow_t& /*unused*/) noexcept { return Request(size); }
void* operator new(std::size_t size, std::align_val_t alignment) { return OrThrow(RequestAligned(size, alignment)); }
void* operator new[](std::size_t size, std::align_val_t alignment) { return OrThrow(RequestAligned(size, alignment)); }
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t& /*unused*/) noexcept {
  return RequestAligned(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t& /*unused*/) noexcept {
  return RequestAligned(size, alignment);
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t& /*unused*/) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t& /*unused*/) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept { std::free(memory); }
void operator delete[](void* memory, std::align_val_t /*alignment*/) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
  std::free(memory);
}
