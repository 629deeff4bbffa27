#pragma once

#include <initializer_list>

#include "picture/PictureDocument.h"
#include "picture/effects/ParallelRows.h"
#include "tests/picture/Scratch.h"

namespace kw {

// Everything that reading a picture tells.
struct ReadOutcome {
  bool isRead = false;
  std::string error;
  std::string warning;
  Bitmap picture;
};

// Reads pictures with several threads, however small they are.
class ThreadsTest : public ScratchTest {
protected:
  ThreadsTest() { SetLeastWork(1); }
  ~ThreadsTest() override {
    SetLeastWork(0);
    SetMostThreads(0);
  }

  ReadOutcome Read(const Bytes& bytes, unsigned threads) {
    SetMostThreads(threads);
    ReadOutcome outcome;
    PictureDocument engine;
    outcome.isRead = engine.Load(Put("picture", bytes));
    outcome.error = engine.LastLoadError();
    outcome.warning = engine.Warning();
    if (outcome.isRead) outcome.picture = engine.Current();
    return outcome;
  }

  // Whether so many threads make of a file what one makes of it, which is given to `outcome`.
  testing::AssertionResult IsReadTheSame(const Bytes& bytes, std::initializer_list<unsigned> threads,
                                         ReadOutcome* outcome = nullptr) {
    const ReadOutcome plain = Read(bytes, 1);
    if (outcome != nullptr) *outcome = plain;
    for (const unsigned count : threads) {
      const ReadOutcome shared = Read(bytes, count);
      if (plain.isRead != shared.isRead || plain.error != shared.error || plain.warning != shared.warning) {
        return testing::AssertionFailure() << plain.error << plain.warning << " / " << shared.error << shared.warning;
      }
      if (!SamePicture(plain.picture, shared.picture)) return testing::AssertionFailure() << "other pixels";
    }
    return testing::AssertionSuccess();
  }
};

}  // namespace kw
