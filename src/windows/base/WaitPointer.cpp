#include "windows/base/WaitPointer.h"

#include <algorithm>
#include <utility>

#include "components/base/LongWork.h"
#include "windows/base/Mouse.h"

namespace kw::windows::WaitPointer {
namespace {

struct ThreadAtWork {
  ULONGLONG begin;   // of the innermost callback
  ULONGLONG rested;  // the end of the last rest, in whichever callback it was
  int depth;         // of callbacks; 0: not at work
  bool isShown;
  HCURSOR before;
};

constinit thread_local ThreadAtWork atWork = {};

void ShowIfLong() noexcept {
  ThreadAtWork& work = atWork;
  if (work.depth == 0 || work.isShown || GetTickCount64() - std::max(work.begin, work.rested) <= Delay) return;
  work.isShown = true;
  work.before = SetCursor(LoadCursorW(nullptr, IDC_WAIT));
}

// The former pointer may be out of date, and it may be another window's. So the window below the mouse is asked, too.
void TakeBack() noexcept {
  ThreadAtWork& work = atWork;
  if (!std::exchange(work.isShown, false)) return;
  SetCursor(work.before);
  RenewPointer();
}

[[maybe_unused]] const bool isWatching = [] {
  WatchWork(&ShowIfLong);
  return true;
}();

}  // namespace

bool IsShown() { return atWork.isShown; }

Work::Work() noexcept {
  ThreadAtWork& work = atWork;
  ++work.depth;
  outerBegin = std::exchange(work.begin, GetTickCount64());
}

Work::~Work() {
  ThreadAtWork& work = atWork;
  work.begin = outerBegin;
  if (--work.depth == 0) TakeBack();
}

Rest::Rest() noexcept : depth(std::exchange(atWork.depth, 0)) { TakeBack(); }

Rest::~Rest() {
  ThreadAtWork& work = atWork;
  work.depth = depth;
  work.rested = GetTickCount64();
}

}  // namespace kw::windows::WaitPointer
