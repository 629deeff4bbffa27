#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <thread>
#include <utility>

#include "windows/WindowsDesktop.h"

namespace kw::test {

// Answers the next box or system dialog of that title from another thread, as a user does. Says what it held.
class Answerer {
public:
  Answerer(std::wstring title, WPARAM answer, std::function<void(HWND box)> beforeAnswer = {})
      : thread([this, title = std::move(title), answer, act = std::move(beforeAnswer)] {
          for (int i = 0; i < 500; ++i) {
            const HWND box = FindWindowW(L"#32770", title.c_str());
            if (box != nullptr && IsWindowVisible(box) != FALSE) {
              wasUp = true;
              owner = GetWindow(box, GW_OWNER);
              hasCancel = GetDlgItem(box, IDCANCEL) != nullptr;
              if (act) act(box);
              PostMessageW(box, WM_COMMAND, answer, 0);
              return;
            }
            Sleep(10);
          }
        }) {}
  Answerer(const Answerer&) = delete;
  Answerer& operator=(const Answerer&) = delete;
  ~Answerer() { thread.join(); }

  bool wasUp = false;
  HWND owner = nullptr;
  bool hasCancel = false;

private:
  std::thread thread;
};

// A desktop whose dialogs belong to a window.
class OwnedDesktop : public windows::WindowsDesktop {
public:
  explicit OwnedDesktop(HWND window) : owner(window) {}

protected:
  HWND DialogOwner() const override { return owner; }

private:
  HWND owner;
};

}  // namespace kw::test
