#pragma once

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

}  // namespace kw::test
