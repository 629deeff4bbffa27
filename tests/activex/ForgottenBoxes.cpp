// A message box that no test expects would hold up all of them: after a minute it is a failure and is closed.

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <thread>

#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

class ForgottenBoxes : public testing::Environment {
public:
  void SetUp() override {
    owner = GetCurrentThreadId();
    watcher = std::thread([this] { Watch(); });
  }
  void TearDown() override {
    {
      const std::lock_guard lock(mutex);
      isOver = true;
    }
    over.notify_all();
    watcher.join();
  }

private:
  void Watch() {
    constexpr int Patience = 60;
    HWND last = nullptr;
    int seconds = 0;
    std::unique_lock lock(mutex);
    while (!over.wait_for(lock, std::chrono::seconds(1), [this] { return isOver; })) {
      const HWND box = BoxOf(owner);
      seconds = box != nullptr && box == last ? seconds + 1 : 0;
      last = box;
      if (seconds != Patience) continue;
      ADD_FAILURE() << "a box that nobody answers: " << WordsOf(box);
      AnswerBox(box, true);
      seconds = 0;
    }
  }

  DWORD owner = 0;
  std::mutex mutex;
  std::condition_variable over;
  bool isOver = false;
  std::thread watcher;
};

// The test framework owns it.
const testing::Environment* const watch = testing::AddGlobalTestEnvironment(new ForgottenBoxes);

}  // namespace
}  // namespace kw::test
