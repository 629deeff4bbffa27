#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/ExpectedBoxes.h"

namespace kw::test {

// The message box or dialog that is up on a thread; null where there is none.
HWND BoxOf(DWORD thread);
// Presses OK or Cancel in it, once the thread gets there.
void AnswerBox(HWND box, bool isOk);
// "title: text", the lines of the text joined by a slash.
std::string WordsOf(HWND box);

// Closes the message boxes and dialogs of the thread that made it, as a user would, and keeps their titles and texts.
// One that is not `expected` is closed, too, and fails the test.
class BoxAnswerer {
public:
  // `beforeAnswer` runs on a thread of its own each time a box is up, before it is closed.
  explicit BoxAnswerer(std::vector<ExpectedBox> expected = {}, std::function<void(HWND box)> beforeAnswer = {});
  BoxAnswerer(const BoxAnswerer&) = delete;
  BoxAnswerer& operator=(const BoxAnswerer&) = delete;
  ~BoxAnswerer();

  // The words of each.
  std::vector<std::string> Boxes() const;

private:
  void Watch();

  DWORD owner;
  ExpectedBoxes expectedBoxes;
  std::function<void(HWND)> act;
  std::atomic<bool> stop = false;
  mutable std::mutex mutex;
  std::vector<std::string> boxes;
  std::thread watcher;
};

}  // namespace kw::test
