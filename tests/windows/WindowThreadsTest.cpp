// Several threads with windows of their own, which share the window class.

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "windows/ControlView.h"
#include "windows/TestForm.h"

namespace kw::test {
namespace {

TEST(WindowThreads, OpenAndCloseTheirWindowsSideBySide) {
  constexpr int threads = 4;
  constexpr int rounds = 25;
  std::atomic<int> whole = 0;
  std::vector<std::thread> users;
  for (int i = 0; i < threads; ++i) {
    users.emplace_back([&] {
      for (int round = 0; round < rounds; ++round) {
        const TestForm form;
        wchar_t name[64] = {};
        GetClassNameW(WindowOf(form.canvas), static_cast<wchar_t*>(name), 64);
        if (std::wstring(static_cast<const wchar_t*>(name)) == windows::OwnWindowClass::Name) ++whole;
        TestForm::PumpOnce();
      }
    });
  }
  for (std::thread& user : users) user.join();
  EXPECT_EQ(whole, threads * rounds);
}

}  // namespace
}  // namespace kw::test
