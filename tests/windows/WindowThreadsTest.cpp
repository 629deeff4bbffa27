// Several threads with windows of their own, which share the window class.

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "components/controls/UserControl.h"
#include "tests/windows/TestForm.h"
#include "windows/editor/EditorWindow.h"
#include "windows/views/ControlView.h"

namespace kw::test {
namespace {

// Whether the window came up and is of the class. Between two such windows a thread has none.
bool OpensAndCloses(HWND host) {
  UserControl root("root");
  const windows::EditorWindow window(root, host, {0, 0, 100, 80});
  wchar_t name[64] = {};
  GetClassNameW(WindowOf(root), static_cast<wchar_t*>(name), 64);
  return std::wstring(static_cast<const wchar_t*>(name)) == windows::OwnWindowClass::Name;
}

TEST(WindowThreads, OpenAndCloseTheirWindowsSideBySide) {
  constexpr int threads = 3;
  constexpr int rounds = 300;
  std::atomic<int> whole = 0;
  std::vector<std::thread> users;
  users.reserve(threads);
  for (int i = 0; i < threads; ++i) {
    users.emplace_back([&] {
      const HWND host = TestForm::HostWindow();
      for (int round = 0; round < rounds; ++round) {
        try {
          if (OpensAndCloses(host)) ++whole;
        } catch (const std::exception&) {
          continue;
        }
      }
      DestroyWindow(host);
    });
  }
  for (std::thread& user : users) user.join();
  EXPECT_EQ(whole, threads * rounds);
}

}  // namespace
}  // namespace kw::test
