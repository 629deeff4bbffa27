#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>

namespace kw::test {

// Waits on a thread of its own for a window that the thread that made it shows with a loop of its own, a dialog or a
// menu, and deals with it while that loop runs.
class Bystander {
public:
  // The window's class; its title too, where that is not empty. `whatToDo` runs once and makes the window go.
  Bystander(std::wstring className, std::wstring title, std::function<void(HWND window)> whatToDo);
  Bystander(const Bystander&) = delete;
  Bystander& operator=(const Bystander&) = delete;
  // Fails the test when the window does not go.
  ~Bystander();

  // Whether the window has come.
  bool HasActed() const { return hasActed; }

  // For `act`: whether the condition came to hold within ten seconds.
  static bool WaitFor(const std::function<bool()>& condition);
  // For `act`: waits until the keyboard is in the window, then strikes the key.
  static void Strike(HWND window, WORD key);
  // The first field of a dialog that takes typing.
  static HWND FieldOf(HWND dialog);

private:
  void Watch();
  HWND Find() const;

  DWORD owner;
  std::wstring wantedClass;
  std::wstring wantedTitle;
  std::function<void(HWND)> act;
  std::atomic<bool> stop = false;
  std::atomic<bool> hasActed = false;
  std::thread watcher;
};

// The class of popup menus and that of the system's dialogs.
inline constexpr const wchar_t* MenuClass = L"#32768";
inline constexpr const wchar_t* DialogClass = L"#32770";

}  // namespace kw::test
