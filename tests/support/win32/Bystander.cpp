#include "tests/support/win32/Bystander.h"

#include <gtest/gtest.h>

#include <iterator>
#include <utility>

#include "tests/support/win32/ChildWindows.h"

namespace kw::test {
namespace {

struct WindowSearch {
  const std::wstring& className;
  const std::wstring& title;
  HWND found = nullptr;
};

BOOL CALLBACK IsWanted(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<WindowSearch*>(parameter);
  if (IsWindowVisible(window) == FALSE) return TRUE;
  wchar_t text[128] = {};
  GetClassNameW(window, text, static_cast<int>(std::size(text)));
  if (search.className != text) return TRUE;
  GetWindowTextW(window, text, static_cast<int>(std::size(text)));
  if (!search.title.empty() && search.title != text) return TRUE;
  search.found = window;
  return FALSE;
}

BOOL CALLBACK IsField(HWND window, LPARAM found) {
  wchar_t name[16] = {};
  GetClassNameW(window, name, static_cast<int>(std::size(name)));
  if (std::wstring(L"Edit") != name || IsWindowVisible(window) == FALSE) return TRUE;
  *reinterpret_cast<HWND*>(found) = window;
  return FALSE;
}

}  // namespace

Bystander::Bystander(std::wstring className, std::wstring title, std::function<void(HWND)> whatToDo)
    : owner(GetCurrentThreadId()),
      wantedClass(std::move(className)),
      wantedTitle(std::move(title)),
      act(std::move(whatToDo)),
      watcher([this] { Watch(); }) {}

Bystander::~Bystander() {
  stop = true;
  watcher.join();
}

HWND Bystander::Find() const {
  WindowSearch search{wantedClass, wantedTitle};
  EnumThreadWindows(owner, &IsWanted, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

bool Bystander::WaitFor(const std::function<bool()>& condition) {
  for (const DWORD start = GetTickCount(); GetTickCount() - start < 10000; Sleep(5)) {
    if (condition()) return true;
  }
  return false;
}

void Bystander::Strike(HWND window, WORD key) {
  const DWORD thread = GetWindowThreadProcessId(window, nullptr);
  EXPECT_TRUE(WaitFor([=] {
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    return GetGUIThreadInfo(thread, &info) != FALSE && GetForegroundWindow() == GetAncestor(info.hwndFocus, GA_ROOT) &&
           (info.hwndFocus == window || IsChild(window, info.hwndFocus) != FALSE);
  }));
  SendKey(key, false);
  SendKey(key, true);
}

HWND Bystander::FieldOf(HWND dialog) {
  HWND found = nullptr;
  EnumChildWindows(dialog, &IsField, reinterpret_cast<LPARAM>(&found));
  return found;
}

void Bystander::Watch() {
  HWND window = nullptr;
  while (!stop && (window = Find()) == nullptr) Sleep(5);
  if (window == nullptr) return;
  act(window);
  hasActed = true;
  if (WaitFor([this] { return Find() == nullptr; })) return;
  ADD_FAILURE() << "a window is still up";
  // Whatever went wrong, the test goes on.
  PostMessageW(window, WM_CLOSE, 0, 0);
  PostMessageW(window, WM_CANCELMODE, 0, 0);
}

}  // namespace kw::test
