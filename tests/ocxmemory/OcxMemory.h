#pragma once

#include "tests/windows/ImportPatch.h"

namespace kw::test {

// While it lives, the requests for memory that the control's library makes on this thread are counted, from 1 on, and
// one of them fails: those of the run time, for texts, for a task or for a medium, for bitmaps and contexts of devices.
// Those of the system, of the test and of other threads do not count.
class OcxMemory {
public:
  // 0: none fails.
  explicit OcxMemory(long failing);
  OcxMemory(const OcxMemory&) = delete;
  OcxMemory& operator=(const OcxMemory&) = delete;
  ~OcxMemory();

  long Requests() const;

private:
  ImportPatch malloc;
  ImportPatch calloc;
  ImportPatch realloc;
  ImportPatch text;
  ImportPatch task;
  ImportPatch global;
  ImportPatch bitmap;
  ImportPatch context;
};

}  // namespace kw::test
