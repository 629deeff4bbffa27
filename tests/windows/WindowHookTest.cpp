#include "windows/base/WindowHook.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace kw::windows {
namespace {

HWND MakeEdit() {
  const HWND made =
      CreateWindowExW(0, WC_EDITW, L"text", 0, 0, 0, 50, 20, HWND_MESSAGE, nullptr, GetModuleHandleW(nullptr), nullptr);
  EXPECT_NE(nullptr, made) << GetLastError();
  return made;
}

std::wstring TextIn(HWND window) {
  wchar_t text[32] = {};
  SendMessageW(window, WM_GETTEXT, 32, reinterpret_cast<LPARAM>(text));
  return text;
}

// Counts what comes and hands it on.
struct Counter {
  explicit Counter(HWND window) : window(window) { hook.Hook(window, &Receive, this); }

  static LRESULT Receive(void* self, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* const counter = static_cast<Counter*>(self);
    if (message == WM_NULL) ++counter->count;
    if (message == WM_APP + 1) throw std::runtime_error("of a receiver");
    if (message == WM_APP) {
      counter->hook.Unhook();
      return 7;
    }
    if (message == WM_NCDESTROY) counter->hook.Unhook();
    return counter->hook.Default(message, wParam, lParam);
  }

  HWND window;
  WindowHook hook;
  int count = 0;
};

WNDPROC foreignBefore = nullptr;
int foreignCalls = 0;

LRESULT CALLBACK Foreign(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NULL) ++foreignCalls;
  return CallWindowProcW(foreignBefore, window, message, wParam, lParam);
}

void PutForeignInFrontOf(HWND window) {
  foreignCalls = 0;
  foreignBefore =
      reinterpret_cast<WNDPROC>(SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Foreign)));
}

LRESULT CALLBACK CountSubclass(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR /*id*/,
                               DWORD_PTR count) {
  if (message == WM_NULL) ++*reinterpret_cast<int*>(count);
  return DefSubclassProc(window, message, wParam, lParam);
}

TEST(WindowHook, GetsTheMessagesAndTheWindowStaysWhatItIs) {
  const HWND window = MakeEdit();
  Counter counter(window);
  SendMessageW(window, WM_NULL, 0, 0);
  EXPECT_EQ(1, counter.count);
  EXPECT_EQ(L"text", TextIn(window));
  counter.hook.Unhook();
  SendMessageW(window, WM_NULL, 0, 0);
  EXPECT_EQ(1, counter.count);
  EXPECT_EQ(L"text", TextIn(window));
  DestroyWindow(window);
}

TEST(WindowHook, LeavesTheWindowsProcedureAsItWas) {
  const HWND window = MakeEdit();
  const LONG_PTR before = GetWindowLongPtrW(window, GWLP_WNDPROC);
  {
    const Counter counter(window);
    EXPECT_NE(before, GetWindowLongPtrW(window, GWLP_WNDPROC));
  }
  EXPECT_EQ(before, GetWindowLongPtrW(window, GWLP_WNDPROC));
  DestroyWindow(window);
}

TEST(WindowHook, LeavesANullWindowAlone) {
  for (int i = 0; i < 2; ++i) const Counter counter(nullptr);
  const HWND window = MakeEdit();
  Counter counter(window);
  SendMessageW(window, WM_NULL, 0, 0);
  EXPECT_EQ(1, counter.count);
  DestroyWindow(window);
}

TEST(WindowHook, IsForOneWindowEach) {
  const HWND one = MakeEdit();
  const HWND other = MakeEdit();
  Counter ofOne(one);
  Counter ofOther(other);
  SendMessageW(one, WM_NULL, 0, 0);
  SendMessageW(one, WM_NULL, 0, 0);
  SendMessageW(other, WM_NULL, 0, 0);
  EXPECT_EQ(2, ofOne.count);
  EXPECT_EQ(1, ofOther.count);
  DestroyWindow(one);
  SendMessageW(other, WM_NULL, 0, 0);
  EXPECT_EQ(2, ofOther.count);
  DestroyWindow(other);
}

TEST(WindowHook, OfManyWindowsFindsEach) {
  std::vector<std::unique_ptr<Counter>> counters;
  counters.reserve(600);
  for (int i = 0; i < 600; ++i) counters.push_back(std::make_unique<Counter>(MakeEdit()));
  for (const auto& counter : counters) SendMessageW(counter->window, WM_NULL, 0, 0);
  for (std::size_t i = 0; i < counters.size(); i += 2) counters[i]->hook.Unhook();
  for (const auto& counter : counters) SendMessageW(counter->window, WM_NULL, 0, 0);
  for (std::size_t i = 0; i < counters.size(); ++i) {
    EXPECT_EQ(i % 2 == 0 ? 1 : 2, counters[i]->count) << i;
    DestroyWindow(counters[i]->window);
  }
}

TEST(WindowHook, MayGoDuringAMessage) {
  const HWND window = MakeEdit();
  Counter counter(window);
  EXPECT_EQ(7, SendMessageW(window, WM_APP, 0, 0));
  SendMessageW(window, WM_NULL, 0, 0);
  EXPECT_EQ(0, counter.count);
  EXPECT_EQ(L"text", TextIn(window));
  DestroyWindow(window);
}

TEST(WindowHook, LetsNoErrorOutToTheSystem) {
  const HWND window = MakeEdit();
  Counter counter(window);
  EXPECT_EQ(0, SendMessageW(window, WM_APP + 1, 0, 0));
  SendMessageW(window, WM_NULL, 0, 0);
  EXPECT_EQ(1, counter.count);
  DestroyWindow(window);
}

TEST(WindowHook, GoesUnderAProcedureThatSomebodyElsePutInFront) {
  const HWND window = MakeEdit();
  auto counter = std::make_unique<Counter>(window);
  PutForeignInFrontOf(window);
  SendMessageW(window, WM_NULL, 0, 0);
  EXPECT_EQ(1, foreignCalls);
  EXPECT_EQ(1, counter->count);
  counter.reset();
  SendMessageW(window, WM_NULL, 0, 0);
  EXPECT_EQ(2, foreignCalls);
  EXPECT_EQ(L"text", TextIn(window));
  DestroyWindow(window);
}

TEST(WindowHook, WorksBehindASubclassOfTheCommonControlsLibrary) {
  const HWND window = MakeEdit();
  Counter counter(window);
  int calls = 0;
  SetWindowSubclass(window, &CountSubclass, 1, reinterpret_cast<DWORD_PTR>(&calls));
  SendMessageW(window, WM_NULL, 0, 0);
  EXPECT_EQ(1, calls);
  EXPECT_EQ(1, counter.count);
  counter.hook.Unhook();
  SendMessageW(window, WM_NULL, 0, 0);
  RemoveWindowSubclass(window, &CountSubclass, 1);
  SendMessageW(window, WM_NULL, 0, 0);
  EXPECT_EQ(2, calls);
  EXPECT_EQ(1, counter.count);
  EXPECT_EQ(L"text", TextIn(window));
  DestroyWindow(window);
}

TEST(WindowHook, WorksInFrontOfASubclassOfTheCommonControlsLibrary) {
  const HWND window = MakeEdit();
  int calls = 0;
  SetWindowSubclass(window, &CountSubclass, 1, reinterpret_cast<DWORD_PTR>(&calls));
  Counter counter(window);
  SendMessageW(window, WM_NULL, 0, 0);
  EXPECT_EQ(1, calls);
  EXPECT_EQ(1, counter.count);
  DestroyWindow(window);
}

TEST(WindowHook, OfOtherThreadsDoNotMeet) {
  std::vector<std::thread> threads;
  threads.reserve(4);
  std::mutex oneAtATime;  // the display driver of Wine fails if threads make their first windows at once
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&oneAtATime] {
      HWND window = nullptr;
      {
        const std::lock_guard lock(oneAtATime);
        window = MakeEdit();
      }
      for (int turn = 0; turn < 250; ++turn) {
        Counter counter(window);
        SendMessageW(window, WM_NULL, 0, 0);
        EXPECT_EQ(1, counter.count);
      }
      const std::lock_guard lock(oneAtATime);
      DestroyWindow(window);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace kw::windows
