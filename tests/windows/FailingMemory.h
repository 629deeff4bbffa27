#pragma once

namespace kw::test {

// While it lives, one of this thread's requests for memory fails: the one of that number, from 1 on.
class FailingMemory {
public:
  explicit FailingMemory(long which);
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;
  ~FailingMemory();

  // Whether there were as many requests.
  bool HasFailed() const;
};

}  // namespace kw::test
