#pragma once

#include <windows.h>

namespace kw::windows {

// The system's wait pointer, shown while a callback of the system or of a host works for more than `Delay` without
// handling messages. It is the windows' own: the pointers of the models stay what they are, and show again afterwards.
//
// No other thread is needed for it, and none is asked: the pointer belongs to the message queue of the thread that
// works, so this thread looks at the clock itself whenever the work calls NoteWork.
namespace WaitPointer {

constexpr ULONGLONG Delay = 100;  // milliseconds

bool IsShown();

// Stands around each callback (see Guard). A callback within a callback has a clock of its own, since the system may
// have handled messages in between; the pointer goes at the end of the outermost one.
class Work {
public:
  Work() noexcept;
  Work(const Work&) = delete;
  Work& operator=(const Work&) = delete;
  ~Work();

private:
  ULONGLONG outerBegin;
};

// Stands around what waits for the user, handles messages or calls the host: the thread is not at work meanwhile, and
// its clock begins again behind it.
class Rest {
public:
  Rest() noexcept;
  Rest(const Rest&) = delete;
  Rest& operator=(const Rest&) = delete;
  ~Rest();

private:
  int depth;
};

}  // namespace WaitPointer
}  // namespace kw::windows
