#pragma once

#include <cstdint>

namespace kw::test {

// While it lives, this thread's requests for memory are counted, from 1 on, and some fail: those of operator new in all
// its forms, and malloc, calloc and realloc, which the codecs, the C library and the system's threads use.
class FailingMemory {
public:
  enum class Failing { Never, Once, FromThenOn };
  // `which` is the first request that fails.
  FailingMemory(Failing kind, long which);
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;
  ~FailingMemory();

  long Requests() const;
  bool HasFailed() const;
};

// While it lives, the bytes are counted that all threads hold, by the same calls. One at a time.
class HeldMemory {
public:
  HeldMemory();
  HeldMemory(const HeldMemory&) = delete;
  HeldMemory& operator=(const HeldMemory&) = delete;
  ~HeldMemory();

  // The most bytes that were held beyond those at the beginning.
  std::int64_t Peak() const;
};

}  // namespace kw::test
